#include "DRErase.h"

#include "DRKeys.h"
#include "JobThread.h"

struct DRErase::Data : DRJob
{
    using DRJob::DRJob;

    EraseType type = EraseType::Quick;
};

DRErase DRErase::initWithDevice(const DRDevice &device)
{
    DRErase erase;
    erase.m_data = std::make_shared<Data>(device);
    return erase;
}

DRDevice DRErase::device() const
{
    return m_data ? m_data->device() : DRDevice();
}

void DRErase::setEraseType(EraseType type)
{
    m_data->type = type;
}

void DRErase::start()
{
    const Recorder *const asked = m_data->device().recorder().get();
    // It may wait long for a job on another recorder, and somebody may change the medium meanwhile.
    const bool waits = asked && m_data->device().recorder()->jobs().hasJobsBeside(asked);
    const int changes = asked ? asked->mediumChanges() : 0;
    DRJob::start(
        m_data, QVariant::fromValue(*this), DREraseStatusChangedNotification,
        // Behind a burn it would take the disc that was just made.
        m_data->isRecorderBusy() ? QStringLiteral("The recorder is busy.") : QString(),
        [type = m_data->type, waits, changes](Recorder &recorder, JobReport &report) -> Result<> {
            if (waits && recorder.mediumChanges() != changes)
                return Failure{QStringLiteral("The medium was changed while this waited "
                                              "for another recorder.")};
            return recorder.erase(type, report);
        });
}

void DRErase::abort()
{
    if (m_data)
        m_data->abort();
}

QString DRErase::errorText() const
{
    return m_data ? m_data->errorText() : QString();
}
