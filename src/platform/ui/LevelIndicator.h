// How full something is, as a bar. It keeps any value, however far above the maximum, and paints
// no more than full, in another colour when it is too much. Main thread.
#pragma once

#include <QWidget>

class LevelIndicator : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(quint64 value READ value WRITE setValue)
    Q_PROPERTY(quint64 maximum READ maximum WRITE setMaximum)

public:
    explicit LevelIndicator(QWidget *parent = nullptr);

    [[nodiscard]] quint64 value() const { return m_value; }
    void setValue(quint64 value);

    [[nodiscard]] quint64 maximum() const { return m_maximum; }
    void setMaximum(quint64 maximum);

    // For what is to be high: little is in the colour of too much, and full is as it should be.
    void setFullIsGood(bool fullIsGood);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] double part() const; // that is full, at most 1
    [[nodiscard]] QColor colour() const;
    void tellLevel();

    quint64 m_value = 0;
    quint64 m_maximum = 100;
    bool m_fullIsGood = false;
};
