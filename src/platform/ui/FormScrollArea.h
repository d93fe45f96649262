// Holds a form that may be taller than its window. The control with the focus is always in sight,
// the wheel scrolls and changes no control that it passes over, and the form is never narrower than
// it needs. Main thread.
#pragma once

#include <QScrollArea>

class FormScrollArea : public QScrollArea
{
    Q_OBJECT

public:
    explicit FormScrollArea(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool eventFilter(QObject *object, QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void reveal(QWidget *focused);
    [[nodiscard]] QSize withBar(const QSize &form) const;
};
