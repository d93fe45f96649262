// How the list of modules looks. Main thread.
#pragma once

#include <QIcon>

class QWidget;

namespace ModuleListLook {

// The picture as it is in a chosen row too, where the style would tint it.
[[nodiscard]] QIcon icon(const QString &imageName);

// The chosen row in a pale tone of the highlight, on which the coloured icons can be told apart.
void paleHighlight(QWidget *list);

}
