// How fields look. Main thread.
#pragma once

#include <QGuiApplication>
#include <QPalette>

class QColor;
class QLineEdit;
class QWidget;

namespace Fields {

// Gives a field a background of its own, with text that can be read on it.
void setBackground(QWidget *field, const QColor &background);

// A text field that may not be edited stays readable, and looks it.
template <typename TextField>
void setEditable(TextField *field, bool editable)
{
    field->setReadOnly(!editable);
    setBackground(field,
                  QGuiApplication::palette().color(editable ? QPalette::Base : QPalette::Window));
}

// Gives a field that can only be read the background of its window.
void setReadOnly(QLineEdit *field, bool readOnly);

// Hiding and showing it moves nothing else.
void keepPlaceWhenHidden(QWidget *widget);

}
