#include "DRDevice.h"

#include "DRKeys.h"
#include "RecordingService.h"

QList<DRDevice> DRDevice::devices()
{
    return RecordingService::instance().devices();
}

bool DRDevice::isValid() const
{
    return m_recorder && m_recorder->isAttached();
}

QString DRDevice::displayName() const
{
    return m_recorder ? m_recorder->displayName() : QString();
}

QVariantMap DRDevice::info() const
{
    return m_recorder ? m_recorder->info() : QVariantMap();
}

QVariantMap DRDevice::status() const
{
    return m_recorder ? m_recorder->status() : QVariantMap();
}

QVariantMap DRDevice::mediaInfo() const
{
    return status().value(DRDeviceMediaInfoKey).toMap();
}

QString DRDevice::ioRegistryEntryPath() const
{
    return info().value(DRDeviceIORegistryEntryPathKey).toString();
}

bool DRDevice::writesCD() const
{
    return info().value(DRDeviceWriteCapabilitiesKey).toMap().value(DRDeviceCanWriteCDKey).toBool();
}

bool DRDevice::writesDVD() const
{
    return info()
        .value(DRDeviceWriteCapabilitiesKey)
        .toMap()
        .value(DRDeviceCanWriteDVDKey)
        .toBool();
}

bool DRDevice::trayIsOpen() const
{
    return status().value(DRDeviceIsTrayOpenKey).toBool();
}

bool DRDevice::mediaIsPresent() const
{
    return status().value(DRDeviceMediaStateKey) == DRDeviceMediaStateMediaPresent;
}

bool DRDevice::mediaIsTransitioning() const
{
    return status().value(DRDeviceMediaStateKey) == DRDeviceMediaStateInTransition;
}

bool DRDevice::mediaIsBusy() const
{
    return status().value(DRDeviceIsBusyKey).toBool();
}

bool DRDevice::mediaIsBlank() const
{
    return mediaInfo().value(DRDeviceMediaIsBlankKey).toBool();
}

bool DRDevice::mediaIsAppendable() const
{
    return mediaInfo().value(DRDeviceMediaIsAppendableKey).toBool();
}

bool DRDevice::mediaIsErasable() const
{
    return mediaInfo().value(DRDeviceMediaIsErasableKey).toBool();
}

bool DRDevice::mediaIsOverwritable() const
{
    return mediaInfo().value(DRDeviceMediaIsOverwritableKey).toBool();
}

bool DRDevice::mediaIsReserved() const
{
    return mediaInfo().value(DRDeviceMediaIsReservedKey).toBool();
}

QString DRDevice::mediaType() const
{
    return mediaInfo().value(DRDeviceMediaTypeKey).toString();
}

QString DRDevice::bsdName() const
{
    return mediaInfo().value(DRDeviceMediaBSDNameKey).toString();
}

std::optional<DRMSF> DRDevice::space(QLatin1StringView key) const
{
    const QVariant value = mediaInfo().value(key);
    if (!value.canConvert<DRMSF>())
        return std::nullopt;
    return value.value<DRMSF>();
}

std::optional<DRMSF> DRDevice::mediaSpaceFree() const
{
    return space(DRDeviceMediaFreeSpaceKey);
}

std::optional<DRMSF> DRDevice::mediaSpaceUsed() const
{
    return space(DRDeviceMediaUsedSpaceKey);
}

std::optional<DRMSF> DRDevice::mediaSpaceOverwritable() const
{
    return space(DRDeviceMediaOverwritableSpaceKey);
}

bool DRDevice::acquireExclusiveAccess() const
{
    return m_recorder && m_recorder->acquireExclusiveAccess();
}

void DRDevice::releaseExclusiveAccess() const
{
    if (m_recorder)
        m_recorder->releaseExclusiveAccess();
}

bool DRDevice::acquireMediaReservation() const
{
    return m_recorder && m_recorder->acquireMediaReservation();
}

void DRDevice::releaseMediaReservation() const
{
    if (m_recorder)
        m_recorder->releaseMediaReservation();
}

bool DRDevice::ejectMedia() const
{
    if (!isValid())
        return false;
    const Result<> ejected = m_recorder->eject();
    if (!ejected)
        qCWarning(recordingLog) << displayName() << "did not eject:" << ejected.error();
    return static_cast<bool>(ejected);
}

QStringList DRDevice::insertableMedia() const
{
    return m_recorder ? m_recorder->insertableMedia() : QStringList();
}

Result<> DRDevice::insertBlankMedium(const QString &type) const
{
    if (!isValid())
        return Failure{QStringLiteral("The recorder is not attached any more.")};
    return m_recorder->insertBlankMedium(type);
}
