// What is shown for the states of a burn or an erase (DRStatusState…). Main thread.
#pragma once

#include "DeviceLabels.h"

class DRStatus
{
public:
    // The label table's text for a state, the state itself where it has none. Not localized.
    [[nodiscard]] QString valueForKey(const QString &state) const
    {
        return m_statusDict.valueForKey(state);
    }

    // The localized title of a page whose job is in that state. Null for DRStatusStateDone and for
    // what is no state: the title then stays as it was.
    [[nodiscard]] static std::optional<QString> titleOfState(const QString &state);

private:
    DeviceLabels m_statusDict{QStringLiteral("DRStatus")};
};
