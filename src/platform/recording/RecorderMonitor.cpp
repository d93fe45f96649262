#include "RecorderMonitor.h"

#include "RecordingService.h"

#include <QSocketNotifier>
#include <QTimer>

#include <libudev.h>

namespace {

// No event tells that a medium has been spun up.
constexpr std::chrono::seconds lookAgainAfter(1);

struct Unref
{
    void operator()(udev_device *device) const { udev_device_unref(device); }
    void operator()(udev_enumerate *enumerate) const { udev_enumerate_unref(enumerate); }
};

QString text(const char *bytes)
{
    return QString::fromLocal8Bit(bytes);
}

QString propertyOf(udev_device *device, const char *name)
{
    return text(udev_device_get_property_value(device, name));
}

}

// What comes while the drives are counted is heard afterwards, so that none is lost.
RecorderMonitor::RecorderMonitor(RecordingService &service)
    : m_service(service)
    , m_udev(udev_new())
    , m_monitor(m_udev ? udev_monitor_new_from_netlink(m_udev, "udev") : nullptr)
{
    if (!m_monitor
        || udev_monitor_filter_add_match_subsystem_devtype(m_monitor, "block", "disk") < 0
        || udev_monitor_enable_receiving(m_monitor) < 0) {
        qCWarning(recordingLog, "drives that come and go will not be seen");
    } else {
        auto *notifier =
            new QSocketNotifier(udev_monitor_get_fd(m_monitor), QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this, &RecorderMonitor::receive);
    }
    if (m_udev)
        enumerate();
}

RecorderMonitor::~RecorderMonitor()
{
    m_thread->shutDown(); // whose jobs call this
    if (m_monitor)
        udev_monitor_unref(m_monitor);
    if (m_udev)
        udev_unref(m_udev);
}

void RecorderMonitor::enumerate()
{
    const std::unique_ptr<udev_enumerate, Unref> list(udev_enumerate_new(m_udev));
    udev_enumerate_add_match_subsystem(list.get(), "block");
    udev_enumerate_add_match_property(list.get(), "ID_CDROM", "1");
    udev_enumerate_scan_devices(list.get());
    for (udev_list_entry *entry = udev_enumerate_get_list_entry(list.get()); entry;
         entry = udev_list_entry_get_next(entry)) {
        const std::unique_ptr<udev_device, Unref> device(
            udev_device_new_from_syspath(m_udev, udev_list_entry_get_name(entry)));
        if (device)
            add(device.get());
    }
}

void RecorderMonitor::receive()
{
    const std::unique_ptr<udev_device, Unref> device(udev_monitor_receive_device(m_monitor));
    if (!device || propertyOf(device.get(), "ID_CDROM") != QLatin1String("1"))
        return;
    const QString path = text(udev_device_get_devnode(device.get()));
    const QString action = text(udev_device_get_action(device.get()));
    if (action == QLatin1String("remove"))
        remove(path);
    else if (!m_recorders.contains(path))
        add(device.get());
    else if (const auto recorder = m_recorders.value(path); !recorder->isAtWork())
        refresh(recorder);
}

// It is shown once it was asked what it is.
void RecorderMonitor::add(udev_device *device)
{
    const QString path = text(udev_device_get_devnode(device));
    if (path.isEmpty() || m_recorders.contains(path))
        return;
    const QString model =
        propertyOf(device, "ID_MODEL").replace(QLatin1Char('_'), QLatin1Char(' '));
    const auto recorder = std::make_shared<LibburnRecorder>(
        path, text(udev_device_get_syspath(device)), model.isEmpty() ? path : model, m_thread);
    m_recorders.insert(path, recorder);
    recorder->setChanged([this, weak = std::weak_ptr(recorder)] {
        QMetaObject::invokeMethod(this, [this, weak] {
            if (const auto changed = weak.lock())
                show(changed);
        });
    });
    refresh(recorder);
}

void RecorderMonitor::remove(const QString &devicePath)
{
    const auto recorder = m_recorders.take(devicePath);
    if (recorder)
        m_service.detach(recorder);
}

void RecorderMonitor::refresh(const std::shared_ptr<LibburnRecorder> &recorder)
{
    m_thread->post([this, recorder](const std::stop_token &stop) {
        if (stop.stop_requested())
            return;
        recorder->refresh();
        QMetaObject::invokeMethod(this, [this, recorder] { show(recorder); });
    });
}

void RecorderMonitor::show(const std::shared_ptr<LibburnRecorder> &recorder)
{
    if (m_recorders.value(recorder->devicePath()) != recorder)
        return; // gone meanwhile
    if (m_service.devices().contains(DRDevice(recorder)))
        m_service.statusChanged(recorder);
    else
        m_service.attach(recorder);
    if (DRDevice(recorder).mediaIsTransitioning())
        QTimer::singleShot(lookAgainAfter, this, [this, recorder] {
            if (m_recorders.value(recorder->devicePath()) == recorder && !recorder->isAtWork())
                refresh(recorder);
        });
}
