// Attaches the real drives of this machine to the recording service as they come, detaches them as
// they go, and has them looked at when their media change. It is told of all that by libudev; no
// drive is ever polled, and none that is at work is touched. Main thread.
#pragma once

#include "LibburnRecorder.h"

#include <QMap>
#include <QObject>

#include <memory>

class QSocketNotifier;
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
    void enumerate();
    void receive();
    void add(udev_device *device);
    void remove(const QString &devicePath);
    void refresh(const std::shared_ptr<LibburnRecorder> &recorder);
    void show(const std::shared_ptr<LibburnRecorder> &recorder);

    RecordingService &m_service;
    std::shared_ptr<JobThread> m_thread = std::make_shared<JobThread>();
    QMap<QString, std::shared_ptr<LibburnRecorder>> m_recorders; // by device path
    udev *m_udev = nullptr;
    udev_monitor *m_monitor = nullptr;
};
