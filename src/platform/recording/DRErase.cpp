#include "DRErase.h"

#include "DRKeys.h"

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
    DRJob::start(m_data, QVariant::fromValue(*this), DREraseStatusChangedNotification,
                 // Behind a burn it would take the disc that was just made.
                 m_data->isRecorderBusy() ? QStringLiteral("The recorder is busy.") : QString(),
                 [type = m_data->type](Recorder &recorder, JobReport &report) {
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
