#include "Modules.h"

#include "BurnAudioViewController.h"
#include "BurnDataViewController.h"
#include "ChangePwdViewController.h"
#include "CompanyViewController.h"
#include "DMGViewController.h"
#include "EraseViewController.h"
#include "FeedbackViewController.h"
#include "HomeViewController.h"
#include "ISOViewController.h"
#include "Localized.h"
#include "LogoutViewController.h"
#include "NotificationViewController.h"
#include "RateViewController.h"

#include <array>

namespace {

struct Module
{
    const char *name;
    const char *imageName;
    Page *(*getViewController)();
};

template <typename Controller>
Page *made()
{
    return Controller::getViewController();
}

constexpr std::array modules{
    Module{QT_TRANSLATE_NOOP("ViewController", "Home"), "store32", &made<HomeViewController>},
    Module{QT_TRANSLATE_NOOP("ViewController", "Data"), "burnData32",
           &made<BurnDataViewController>},
    Module{QT_TRANSLATE_NOOP("ViewController", "Music"), "burnMusic32",
           &made<BurnAudioViewController>},
    Module{QT_TRANSLATE_NOOP("ViewController", "Erase"), "eraseDisc32", &made<EraseViewController>},
    Module{QT_TRANSLATE_NOOP("ViewController", "DMG"), "dmg32", &made<DMGViewController>},
    Module{QT_TRANSLATE_NOOP("ViewController", "ISO"), "iso32", &made<ISOViewController>},
    Module{QT_TRANSLATE_NOOP("ViewController", "Password"), "password32",
           &made<ChangePwdViewController>},
    Module{QT_TRANSLATE_NOOP("ViewController", "Profile"), "profile32",
           &made<CompanyViewController>},
    Module{QT_TRANSLATE_NOOP("ViewController", "Notification"), "inventory32",
           &made<NotificationViewController>},
    Module{QT_TRANSLATE_NOOP("ViewController", "Support"), "settings32",
           &made<FeedbackViewController>},
    Module{QT_TRANSLATE_NOOP("ViewController", "Rate"), "businessContinent32",
           &made<RateViewController>},
    Module{QT_TRANSLATE_NOOP("ViewController", "Logout"), "logout32", &made<LogoutViewController>},
};

}

QList<ModuleItem> Modules::make()
{
    QList<ModuleItem> items;
    for (const Module &module : modules) {
        const QString name = localized("ViewController", module.name);
        items.append({name, QString::fromLatin1(module.imageName), module.getViewController()});
    }
    return items;
}
