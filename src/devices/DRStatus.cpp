#include "DRStatus.h"

#include "DRKeys.h"
#include "Localized.h"

#include <algorithm>
#include <array>

namespace {

struct StateTitle
{
    QLatin1StringView state;
    const char *title;
};

constexpr std::array titles{
    StateTitle{DRStatusStateNone, QT_TRANSLATE_NOOP("Localizable", "None")},
    StateTitle{DRStatusStatePreparing, QT_TRANSLATE_NOOP("Localizable", "Preparing")},
    StateTitle{DRStatusStateSessionOpen, QT_TRANSLATE_NOOP("Localizable", "Session Open")},
    StateTitle{DRStatusStateTrackOpen, QT_TRANSLATE_NOOP("Localizable", "Track Open")},
    StateTitle{DRStatusStateTrackWrite, QT_TRANSLATE_NOOP("Localizable", "Write")},
    StateTitle{DRStatusStateTrackClose, QT_TRANSLATE_NOOP("Localizable", "Track Close")},
    StateTitle{DRStatusStateSessionClose, QT_TRANSLATE_NOOP("Localizable", "Session Close")},
    StateTitle{DRStatusStateFinishing, QT_TRANSLATE_NOOP("Localizable", "Finishing")},
    StateTitle{DRStatusStateVerifying, QT_TRANSLATE_NOOP("Localizable", "Verifying")},
    StateTitle{DRStatusStateErasing, QT_TRANSLATE_NOOP("Localizable", "Erasing")},
    StateTitle{DRStatusStateFailed, QT_TRANSLATE_NOOP("Localizable", "Failed")},
};

}

std::optional<QString> DRStatus::titleOfState(const QString &state)
{
    const auto *found = std::ranges::find(titles, state, &StateTitle::state);
    if (found == titles.end())
        return std::nullopt;
    return localized(QString::fromLatin1(found->title));
}
