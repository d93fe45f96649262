// The recorders of this machine and the center that carries their notifications. Exactly one
// lives at a time, on the main thread; it is made before the first page and outlives the last.
#pragma once

#include "DRDevice.h"
#include "DRNotificationCenter.h"
#include "Recorder.h"

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(recordingLog)

class RecordingService : public QObject
{
    Q_OBJECT

public:
    RecordingService();
    // Cancels every job and waits for its end.
    ~RecordingService() override;

    [[nodiscard]] static RecordingService &instance();

    [[nodiscard]] DRNotificationCenter &notificationCenter() { return m_center; }
    [[nodiscard]] QList<DRDevice> devices() const { return m_devices; }

    // Tell the observers that a recorder has come, has gone, or has another medium or state.
    void attach(const std::shared_ptr<Recorder> &recorder);
    void detach(const std::shared_ptr<Recorder> &recorder);
    void statusChanged(const std::shared_ptr<Recorder> &recorder);

private:
    DRNotificationCenter m_center;
    QList<DRDevice> m_devices;

    // Every recorder that was ever attached: a handle may be let go by a job, on the job's own
    // thread, which could not wait for itself.
    std::vector<std::shared_ptr<Recorder>> m_recorders;
};
