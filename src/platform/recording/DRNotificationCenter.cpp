#include "DRNotificationCenter.h"

#include "MainQueue.h"
#include "RecordingService.h"

#include <algorithm>

DRNotificationCenter &DRNotificationCenter::currentRunLoop()
{
    return RecordingService::instance().notificationCenter();
}

void DRNotificationCenter::addObserver(QObject *observer, const Handler &handler,
                                       const QString &name, const QVariant &object)
{
    const Observation added{observer, name, object, handler};
    std::erase_if(m_observations, [&](const Observation &known) { return known.isSameAs(added); });
    m_observations.push_back(added);
}

void DRNotificationCenter::removeObserver(QObject *observer, const QString &name,
                                          const QVariant &object)
{
    std::erase_if(m_observations, [&](const Observation &known) {
        return known.observer == observer && known.name == name
               && (object.isNull() || known.object == object);
    });
}

void DRNotificationCenter::postNotification(const DRNotification &notification)
{
    QMetaObject::invokeMethod(
        this,
        [this, notification] {
            MainQueue::deliver(this, [this, notification] { deliver(notification); });
        },
        Qt::QueuedConnection);
}

void DRNotificationCenter::deliver(const DRNotification &notification)
{
    std::erase_if(m_observations, [](const Observation &known) { return !known.observer; });
    // Handlers add, replace and remove observers, themselves included, so the walk is over a copy,
    // and each is looked up again when its turn comes.
    const std::vector<Observation> observations = m_observations;
    for (const Observation &known : observations) {
        if (known.name != notification.name
            || (!known.object.isNull() && known.object != notification.object))
            continue;
        const auto found = std::ranges::find_if(
            m_observations, [&](const Observation &now) { return now.isSameAs(known); });
        if (!known.observer || found == m_observations.end())
            continue;
        const Handler handler = found->handler;
        handler(notification);
    }
}
