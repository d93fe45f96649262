#include "FormScrollArea.h"

#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QEvent>
#include <QScrollBar>

FormScrollArea::FormScrollArea(QWidget *parent)
    : QScrollArea(parent)
{
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget *, QWidget *now) { reveal(now); });
}

// Moving the focus by the keyboard would show it anyway; a check that moves it would not.
void FormScrollArea::reveal(QWidget *focused)
{
    if (focused && widget() && widget()->isAncestorOf(focused))
        ensureWidgetVisible(focused);
}

void FormScrollArea::showEvent(QShowEvent *event)
{
    QScrollArea::showEvent(event);
    if (!widget())
        return;
    for (QWidget *control : widget()->findChildren<QWidget *>())
        if (qobject_cast<QComboBox *>(control) || qobject_cast<QDateEdit *>(control))
            control->installEventFilter(this);
}

bool FormScrollArea::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() != QEvent::Wheel)
        return QScrollArea::eventFilter(object, event);
    event->ignore(); // left to what holds the control
    return true;
}

QSize FormScrollArea::withBar(const QSize &form) const
{
    return {form.width() + verticalScrollBar()->sizeHint().width(), form.height()};
}

// As large as the form; where the screen is smaller, the window makes it so.
QSize FormScrollArea::sizeHint() const
{
    return widget() ? withBar(widget()->sizeHint()) : QScrollArea::sizeHint();
}

QSize FormScrollArea::minimumSizeHint() const
{
    const QSize least = QScrollArea::minimumSizeHint();
    if (!widget())
        return least;
    return {withBar(widget()->minimumSizeHint()).width(), least.height()};
}
