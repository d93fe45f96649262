// Holds a form that may be taller than its window. A control that gets the focus comes into sight,
// the wheel scrolls and changes no control that it passes over, and the window is never narrower
// than the form, unless the form scrolls to the sides too. Main thread.
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

private:
    void reveal(QWidget *focused);
    [[nodiscard]] bool holds(const QObject *object) const;
    [[nodiscard]] bool isWidthOfForm() const;
    [[nodiscard]] QSize withBar(const QSize &form) const;
};
