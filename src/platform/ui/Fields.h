// How fields look. Main thread.
#pragma once

#include <QPalette>

class QColor;
class QWidget;

namespace Fields {

// Gives a field a background of its own, with text that can be read on it.
void setBackground(QWidget *field, const QColor &background);

// A text field that may not be edited stays readable, and has the background of its window.
template <typename TextField>
void setEditable(TextField *field, bool editable)
{
    field->setReadOnly(!editable);
    field->setPalette({});
    if (!editable)
        setBackground(field, field->palette().color(QPalette::Window));
}

// Hiding and showing it moves nothing else.
void keepPlaceWhenHidden(QWidget *widget);

}
