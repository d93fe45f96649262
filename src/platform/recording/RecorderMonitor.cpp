#include "RecorderMonitor.h"

#include "RecordingService.h"

#include <QSocketNotifier>
#include <QTimer>

#include <libudev.h>

namespace {

// No event tells that a medium has been spun up, or that a program has let go of a drive.
constexpr std::chrono::seconds spinningUp(1);
constexpr std::chrono::seconds inUse(3);

// Asking a drive keeps it from others: a desktop that mounts what is put in goes first.
constexpr std::chrono::seconds mounting(4);

// A drive that takes long to say what it is is shown as the system knows it meanwhile.
constexpr std::chrono::seconds firstAnswer(5);

struct Unref
{
    void operator()(udev_device *device) const { udev_device_unref(device); }
    void operator()(udev_enumerate *enumerate) const { udev_enumerate_unref(enumerate); }
};

QString text(const char *bytes)
{
    return QString::fromLocal8Bit(bytes);
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
        m_notifier = std::make_unique<QSocketNotifier>(udev_monitor_get_fd(m_monitor),
                                                       QSocketNotifier::Read);
        connect(m_notifier.get(), &QSocketNotifier::activated, this, &RecorderMonitor::receive);
    }
    if (m_udev)
        enumerate();
}

RecorderMonitor::~RecorderMonitor()
{
    m_thread->shutDown(); // whose jobs call this
    m_notifier.reset();
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
    if (!device)
        return;
    const QString path = text(udev_device_get_devnode(device.get()));
    if (text(udev_device_get_action(device.get())) == QLatin1String("remove"))
        return remove(path);
    if (text(udev_device_get_property_value(device.get(), "ID_CDROM")) != QLatin1String("1"))
        return;
    if (!m_entries.contains(path))
        return add(device.get());
    Entry &entry = m_entries[path];
    const UdevDescription told(device.get());
    const bool changed = entry.recorder->setTold(told);
    if (entry.recorder->isAtWork())
        return;
    const bool isWritten = told.medium && !told.medium->blank;
    if (changed && (isWritten || m_thread->hasJobsBeside(nullptr))) {
        entry.recorder->takeForTold();
        show(entry.recorder);
    }
    if (isWritten)
        refreshAfter(mounting, entry);
    else
        refresh(entry.recorder);
}

// It is shown once it was asked what it is.
void RecorderMonitor::add(udev_device *device)
{
    const QString path = text(udev_device_get_devnode(device));
    if (path.isEmpty() || m_entries.contains(path))
        return;
    const auto recorder =
        std::make_shared<LibburnRecorder>(path, UdevDescription(device), m_thread);
    Entry &entry = *m_entries.insert(path, {recorder, {}, std::make_shared<QTimer>()});
    entry.timer->setSingleShot(true);
    connect(entry.timer.get(), &QTimer::timeout, this, [this, weak = std::weak_ptr(recorder)] {
        if (const auto later = weak.lock(); later && !later->isAtWork())
            refresh(later);
    });
    recorder->setChanged([this, weak = std::weak_ptr(recorder)] {
        QMetaObject::invokeMethod(this, [this, weak] {
            if (const auto changed = weak.lock())
                show(changed);
        });
    });
    QTimer::singleShot(m_thread->hasJobsBeside(nullptr) ? std::chrono::seconds(0) : firstAnswer,
                       this, [this, recorder] { show(recorder); });
    refresh(recorder);
}

void RecorderMonitor::remove(const QString &devicePath)
{
    const auto recorder = m_entries.take(devicePath).recorder;
    tellApart();
    if (recorder)
        m_service.detach(recorder);
}

// Two drives of one model must not be taken for each other.
void RecorderMonitor::tellApart()
{
    QMap<QString, int> counts;
    for (const Entry &entry : std::as_const(m_entries))
        ++counts[entry.recorder->modelName()];
    for (const Entry &entry : std::as_const(m_entries))
        entry.recorder->setOneOfSeveral(counts.value(entry.recorder->modelName()) > 1);
}

RecorderMonitor::Entry *RecorderMonitor::entryOf(const std::shared_ptr<LibburnRecorder> &recorder)
{
    const auto found = m_entries.find(recorder->devicePath());
    return found != m_entries.end() && found->recorder == recorder ? &*found : nullptr;
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

// Observers read all of it again each time: they are told of what has changed only.
void RecorderMonitor::show(const std::shared_ptr<LibburnRecorder> &recorder)
{
    Entry *entry = entryOf(recorder);
    if (!entry)
        return;
    tellApart();
    QVariantMap known = recorder->info();
    known.insert(recorder->status());
    const bool changed = known != std::exchange(entry->shown, known);
    if (recorder->isToBeAskedAgain())
        refreshAfter(DRDevice(recorder).mediaIsTransitioning() ? spinningUp : inUse, *entry);
    if (!m_service.devices().contains(DRDevice(recorder)))
        m_service.attach(recorder);
    else if (changed)
        m_service.statusChanged(recorder);
}

// The latest of several times counts.
void RecorderMonitor::refreshAfter(std::chrono::milliseconds time, const Entry &entry)
{
    if (entry.timer->remainingTimeAsDuration() < time)
        entry.timer->start(time);
}
