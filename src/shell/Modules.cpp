#include "Modules.h"

#include "BurnDataViewController.h"
#include "ComingPage.h"
#include "Localized.h"

#include <array>

namespace {

struct Module
{
    const char *name;
    const char *imageName;
    Page *(*getViewController)(const QString &name);
};

template <typename Controller>
Page *made(const QString &)
{
    return Controller::getViewController();
}

Page *coming(const QString &name)
{
    return new ComingPage(name);
}

constexpr std::array modules{
    Module{"Home", "store32", &coming},
    Module{"Data", "burnData32", &made<BurnDataViewController>},
    Module{"Music", "burnMusic32", &coming},
    Module{"Erase", "eraseDisc32", &coming},
    Module{"DMG", "dmg32", &coming},
    Module{"ISO", "iso32", &coming},
    Module{"Password", "password32", &coming},
    Module{"Profile", "profile32", &coming},
    Module{"Notification", "inventory32", &coming},
    Module{"Support", "settings32", &coming},
    Module{"Rate", "businessContinent32", &coming},
    Module{"Logout", "logout32", &coming},
};

}

QList<ModuleItem> Modules::make()
{
    QList<ModuleItem> items;
    for (const Module &module : modules) {
        const QString name = localized("ViewController", module.name);
        items.append({name, QString::fromLatin1(module.imageName), module.getViewController(name)});
    }
    return items;
}
