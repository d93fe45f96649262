#include "DRNotificationCenter.h"

#include "RecordingService.h"

#include <algorithm>

DRNotificationCenter &DRNotificationCenter::currentRunLoop()
{
    return RecordingService::instance().notificationCenter();
}

void DRNotificationCenter::addObserver(QObject *observer, const Handler &handler,
                                       const QString &name, const QVariant &object)
{
    std::erase_if(m_observations, [&](const Observation &known) {
        return known.observer == observer && known.name == name && known.object == object;
    });
    m_observations.push_back({observer, name, object, handler});
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
        this, [this, notification] { deliver(notification); }, Qt::QueuedConnection);
}

void DRNotificationCenter::deliver(const DRNotification &notification)
{
    std::erase_if(m_observations, [](const Observation &known) { return !known.observer; });
    // Handlers add and remove observers, themselves included, so the walk is over a copy.
    const std::vector<Observation> observations = m_observations;
    for (const Observation &known : observations) {
        if (known.observer && known.name == notification.name
            && (known.object.isNull() || known.object == notification.object))
            known.handler(notification);
    }
}
