#include "PageBurn.h"

#include "DRKeys.h"
#include "DRNotificationCenter.h"

DRBurn &PageBurn::make(const DRDevice &device)
{
    m_burn = DRBurn::initWithDevice(device);
    m_isRunning = false;
    return m_burn;
}

void PageBurn::watch()
{
    m_isRunning = true;
    DRNotificationCenter::currentRunLoop().addObserver(
        this, [this](const DRNotification &notification) { burnStatus(notification); },
        DRBurnStatusChangedNotification, QVariant::fromValue(m_burn));
}

// The end of an aborted burn may come when another one runs already: it gives back what it held
// and changes nothing else.
void PageBurn::burnStatus(const DRNotification &notification)
{
    const auto burn = notification.object.value<DRBurn>();
    const QString state = notification.userInfo.value(DRStatusStateKey).toString();
    const bool isDone = state == DRStatusStateDone;
    const bool hasEnded = isDone || state == DRStatusStateFailed;
    if (burn == m_burn) {
        m_isRunning = !hasEnded;
        if (hasEnded)
            Q_EMIT ended(isDone, burn.errorText());
        else
            Q_EMIT progressed(notification.userInfo);
    }
    if (hasEnded) {
        burn.device().releaseMediaReservation();
        burn.device().releaseExclusiveAccess();
    }
}
