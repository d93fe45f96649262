#include "FormScrollArea.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QScrollBar>

FormScrollArea::FormScrollArea(QWidget *parent)
    : QScrollArea(parent)
{
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    qApp->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget *, QWidget *now) { reveal(now); });
}

bool FormScrollArea::holds(const QObject *object) const
{
    const auto *control = qobject_cast<const QWidget *>(object);
    return control && widget() && widget()->isAncestorOf(control);
}

// Moving the focus by the keyboard would show it anyway; a check that moves it would not.
void FormScrollArea::reveal(QWidget *focused)
{
    if (holds(focused))
        ensureWidgetVisible(focused);
}

// Of the application, since pages come and go: a wheel event that is ignored goes on to what holds
// the control.
bool FormScrollArea::eventFilter(QObject *object, QEvent *event)
{
    const bool wouldChange =
        event->type() == QEvent::Wheel
        && (qobject_cast<QComboBox *>(object) || qobject_cast<QAbstractSpinBox *>(object))
        && holds(object);
    if (wouldChange)
        event->ignore();
    return wouldChange || QScrollArea::eventFilter(object, event);
}

bool FormScrollArea::isWidthOfForm() const
{
    return widget() && horizontalScrollBarPolicy() == Qt::ScrollBarAlwaysOff;
}

QSize FormScrollArea::withBar(const QSize &form) const
{
    return {form.width() + verticalScrollBar()->sizeHint().width(), form.height()};
}

// As large as the form; where the screen is smaller, the window makes it so.
QSize FormScrollArea::sizeHint() const
{
    return isWidthOfForm() ? withBar(widget()->sizeHint()) : QScrollArea::sizeHint();
}

QSize FormScrollArea::minimumSizeHint() const
{
    const QSize least = QScrollArea::minimumSizeHint();
    if (!isWidthOfForm())
        return least;
    return {withBar(widget()->minimumSizeHint()).width(), least.height()};
}
