// How fields look. Main thread.
#pragma once

class QColor;
class QWidget;

namespace Fields {

// Gives a field a background of its own, with text that can be read on it.
void setBackground(QWidget *field, const QColor &background);

// Hiding and showing it moves nothing else.
void keepPlaceWhenHidden(QWidget *widget);

}
