#include "DRBurn.h"

#include "DRCDTextKeys.h"
#include "DRKeys.h"
#include "Recorder.h"

struct DRBurn::Data : DRJob
{
    using DRJob::DRJob;

    BurnRequest request;
    QVariantMap properties;
};

namespace {

QList<DRCDTextBlock> cdTextOf(const QVariantMap &properties)
{
    const QVariant text = properties.value(DRCDTextKey);
    if (text.canConvert<DRCDTextBlock>())
        return {text.value<DRCDTextBlock>()};
    QList<DRCDTextBlock> blocks;
    for (const QVariant &block : text.toList())
        if (block.canConvert<DRCDTextBlock>())
            blocks.append(block.value<DRCDTextBlock>());
    return blocks;
}

}

DRBurn DRBurn::initWithDevice(const DRDevice &device)
{
    DRBurn burn;
    burn.m_data = std::make_shared<Data>(device);
    return burn;
}

QList<DRTrack> DRBurn::layoutForImageFile(const QString &path)
{
    return {DRTrack::trackForImageFile(path)};
}

DRDevice DRBurn::device() const
{
    return m_data ? m_data->device() : DRDevice();
}

void DRBurn::setRequestedBurnSpeed(float speed)
{
    m_data->request.speed = static_cast<double>(speed);
}

void DRBurn::setAppendable(bool appendable)
{
    m_data->request.appendable = appendable;
}

void DRBurn::setVerifyDisc(bool verify)
{
    m_data->request.verify = verify;
}

QVariantMap DRBurn::properties() const
{
    return m_data ? m_data->properties : QVariantMap();
}

void DRBurn::setProperties(const QVariantMap &properties)
{
    m_data->properties = properties;
}

void DRBurn::writeLayout(const QList<DRTrack> &tracks)
{
    BurnRequest request = m_data->request;
    request.tracks = tracks;
    request.cdText = cdTextOf(m_data->properties);
    DRJob::start(m_data, QVariant::fromValue(*this), DRBurnStatusChangedNotification, {},
                 [request](Recorder &recorder, JobReport &report) {
                     return recorder.burn(request, report);
                 });
}

void DRBurn::abort()
{
    if (m_data)
        m_data->abort();
}

QString DRBurn::errorText() const
{
    return m_data ? m_data->errorText() : QString();
}
