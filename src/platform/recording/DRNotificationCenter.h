// Brings the notifications of the recording service to their observers. Notifications are posted
// from any thread and delivered on the main thread, in the order in which they were posted.
#pragma once

#include <QObject>
#include <QPointer>
#include <QVariantMap>

#include <functional>
#include <vector>

struct DRNotification
{
    QString name;    // one of DR…Notification
    QVariant object; // the DRDevice, DRBurn or DRErase that it is about
    QVariantMap userInfo;
};

class DRNotificationCenter : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<void(const DRNotification &)>;

    // The center of the recording service that runs now.
    [[nodiscard]] static DRNotificationCenter &currentRunLoop();

    // Has handler called for every notification of that name about the object (about any object
    // where it is null) as long as the observer lives. A second call with the same observer, name
    // and object replaces the handler. Main thread.
    void addObserver(QObject *observer, const Handler &handler, const QString &name,
                     const QVariant &object = {});

    // Ends what addObserver began, at once, also while a notification is being delivered; a null
    // object stands for all objects. Main thread.
    void removeObserver(QObject *observer, const QString &name, const QVariant &object = {});

    // Any thread.
    void postNotification(const DRNotification &notification);

private:
    struct Observation
    {
        QPointer<QObject> observer;
        QString name;
        QVariant object;
        Handler handler;

        [[nodiscard]] bool isSameAs(const Observation &other) const
        {
            return observer == other.observer && name == other.name && object == other.object;
        }
    };

    void deliver(const DRNotification &notification);

    std::vector<Observation> m_observations;
};
