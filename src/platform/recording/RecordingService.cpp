#include "RecordingService.h"

#include "DRKeys.h"
#include "JobThread.h"

#include <algorithm>

Q_LOGGING_CATEGORY(recordingLog, "maplorn.recording")

namespace {

RecordingService *current = nullptr;

}

RecordingService::RecordingService()
{
    Q_ASSERT(!current);
    current = this;
}

RecordingService::~RecordingService()
{
    for (const auto &recorder : m_recorders)
        recorder->jobs().shutDown(); // their last notifications still find the center
    current = nullptr;
}

RecordingService &RecordingService::instance()
{
    Q_ASSERT(current);
    return *current;
}

void RecordingService::attach(const std::shared_ptr<Recorder> &recorder)
{
    recorder->setAttached(true);
    if (std::ranges::find(m_recorders, recorder) == m_recorders.end())
        m_recorders.push_back(recorder);
    const DRDevice device(recorder);
    const auto firstVirtual =
        std::find_if(m_devices.cbegin(), m_devices.cend(),
                     [](const DRDevice &other) { return other.recorder()->isVirtual(); });
    m_devices.insert(recorder->isVirtual() ? m_devices.cend() : firstVirtual, device);
    m_center.postNotification({DRDeviceAppearedNotification, QVariant::fromValue(device), {}});
}

void RecordingService::detach(const std::shared_ptr<Recorder> &recorder)
{
    recorder->setAttached(false);
    const DRDevice device(recorder);
    m_devices.removeAll(device);
    m_center.postNotification({DRDeviceDisappearedNotification, QVariant::fromValue(device), {}});
}

void RecordingService::statusChanged(const std::shared_ptr<Recorder> &recorder)
{
    m_center.postNotification(
        {DRDeviceStatusChangedNotification, QVariant::fromValue(DRDevice(recorder)), {}});
}
