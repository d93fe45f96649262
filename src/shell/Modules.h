// The modules of the main window, in order: a table of name, icon and page. Main thread.
#pragma once

#include <QVariantMap>

class Page;

// One row of the module list.
struct ModuleItem
{
    QString name;               // localized
    QString imageName;          // of an icon resource
    Page *controller = nullptr; // owned by whoever made the list
};

namespace Modules {

// Of the group's title.
inline constexpr const char *groupKey = QT_TRANSLATE_NOOP("ViewController", "Root Node");

// All modules with newly made pages.
[[nodiscard]] QList<ModuleItem> make();

}
