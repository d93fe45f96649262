// Attaches the real drives of this machine to the recording service as they come, detaches them as
// they go, and has them looked at when their media change. It is told of all that by libudev. A
// drive that could not be asked is asked again every few seconds; none that is at work, here or for
// another program, is touched. Main thread.
#pragma once

#include "LibburnRecorder.h"

#include <QMap>
#include <QObject>

#include <memory>

class QSocketNotifier;
class QTimer;
class RecordingService;
struct udev;
struct udev_device;
struct udev_monitor;

class RecorderMonitor : public QObject
{
    Q_OBJECT

public:
    explicit RecorderMonitor(RecordingService &service);
    ~RecorderMonitor() override;

private:
    struct Entry
    {
        std::shared_ptr<LibburnRecorder> recorder;
        QVariantMap shown;             // what its observers were told of last
        std::shared_ptr<QTimer> timer; // for asking it again
    };

    void enumerate();
    void receive();
    void add(udev_device *device);
    void remove(const QString &devicePath);
    void refresh(const std::shared_ptr<LibburnRecorder> &recorder);
    static void refreshAfter(std::chrono::milliseconds time, const Entry &entry);
    void show(const std::shared_ptr<LibburnRecorder> &recorder);
    void tellApart();
    [[nodiscard]] Entry *entryOf(const std::shared_ptr<LibburnRecorder> &recorder); // null: gone

    RecordingService &m_service;
    std::shared_ptr<JobThread> m_thread = std::make_shared<JobThread>();
    QMap<QString, Entry> m_entries; // by device path
    udev *m_udev = nullptr;
    udev_monitor *m_monitor = nullptr;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
