#include "DriveDescription.h"

#include "DRKeys.h"
#include "MmcProfile.h"

#include <QFileInfo>
#include <QSet>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <span>
#include <sys/types.h>

#include <libburn/libburn.h>

namespace {

constexpr qint64 blockSize = 2048;

// The data of a feature of MMC, and whether the drive has it.
std::optional<QByteArray> feature(const LibburnDrive &drive, unsigned code, int *version = nullptr)
{
    unsigned char flags = 0;
    unsigned char length = 0;
    unsigned char *data = nullptr;
    if (burn::burn_drive_get_feature(drive.handle(), code, &flags, &length, &data, nullptr) <= 0)
        return std::nullopt;
    const std::unique_ptr<unsigned char, decltype(&std::free)> owner(data, &std::free);
    if (version)
        *version = flags >> 2 & 0xf;
    return QByteArray(reinterpret_cast<const char *>(data), length);
}

bool hasBit(const std::optional<QByteArray> &data, qsizetype byte, int bit)
{
    return data && data->size() > byte && (data->at(byte) & 1 << bit) != 0;
}

// Feature 0003h, removable medium. Its first version had no bit for loading: a tray then does.
bool canLoad(const LibburnDrive &drive)
{
    constexpr int tray = 1;
    int version = 0;
    const std::optional<QByteArray> removable = feature(drive, 0x03, &version);
    if (!removable || removable->isEmpty() || version != 0)
        return hasBit(removable, 0, 4);
    return static_cast<quint8>(removable->front()) >> 5 == tray;
}

// Feature 0001h, physical interface standard.
QString interconnect(const LibburnDrive &drive)
{
    const std::optional<QByteArray> core = feature(drive, 0x01);
    switch (core && core->size() >= 4 ? core->at(3) : 0) {
    case 1:
        return QStringLiteral("SCSI");
    case 2:
        return QStringLiteral("ATAPI");
    case 3:
    case 4:
    case 6:
        return QStringLiteral("FireWire");
    case 7:
        return QStringLiteral("SATA");
    case 8:
        return QStringLiteral("USB");
    default:
        return QStringLiteral("Unknown");
    }
}

QVariantMap capabilities(const LibburnDrive &drive)
{
    std::array<int, 64> numbers{};
    std::array<char, 64> current{};
    int count = 0;
    burn::burn_drive_get_all_profiles(drive.handle(), &count, numbers.data(), current.data());
    QVariantMap result = MmcProfile::writeCapabilities(
        std::span<const int>(numbers).first(static_cast<size_t>(count)));
    // Feature 002Eh, disc-at-once, with the sub-channels in which CD-Text lies.
    const std::optional<QByteArray> mastering = feature(drive, 0x2e);
    result[DRDeviceCanWriteCDTextKey] = hasBit(mastering, 0, 5) && hasBit(mastering, 0, 0);
    return result;
}

QString serialNumber(const LibburnDrive &drive)
{
    char *number = nullptr;
    int length = 0;
    if (burn::burn_drive_get_serial_no(drive.handle(), &number, &length) <= 0)
        return {};
    const std::unique_ptr<char, decltype(&std::free)> owner(number, &std::free);
    return QString::fromLatin1(number, length).trimmed();
}

// The drive's list has repetitions, and speeds of reading.
QList<double> speeds(const LibburnDrive &drive)
{
    burn::burn_speed_descriptor *list = nullptr;
    QSet<double> found;
    if (burn::burn_drive_get_speedlist(drive.handle(), &list) > 0)
        for (const auto *speed = list; speed; speed = speed->next)
            if (speed->write_speed > 0)
                found.insert(speed->write_speed);
    burn::burn_drive_free_speedlist(&list);
    QList<double> sorted(found.cbegin(), found.cend());
    std::ranges::sort(sorted);
    return sorted;
}

bool isZero(const QByteArray &bytes)
{
    return std::ranges::all_of(bytes, [](char byte) { return byte == 0; });
}

// In blocks, of what a medium begins with; at least 1. Null where that is no ISO 9660 volume.
std::optional<qint64> isoVolumeSize(const QByteArray &start)
{
    constexpr qint64 primaryVolume = 16 * blockSize;
    constexpr qint64 volumeSize = primaryVolume + 80;
    if (!start.mid(primaryVolume).startsWith(QByteArrayView("\1CD001")))
        return std::nullopt;
    return std::max<qint64>(qFromLittleEndian<quint32>(start.constData() + volumeSize), 1);
}

// How much of a medium that can be overwritten is in use: what the ISO 9660 volume on it says, all
// of it where something else is on it or it cannot be read, and nothing where all that every
// file system writes is zero or unwritten.
qint64 usedOfOverwritable(LibburnDrive &drive, qint64 capacity)
{
    using DriveDescription::volumeStart;
    constexpr qint64 readAtOnce = 32; // libburn's own limit, one command
    QByteArray chunk(readAtOnce * blockSize, Qt::Uninitialized);
    for (qint64 first = 0; first + readAtOnce <= std::min(volumeStart, capacity);
         first += readAtOnce) {
        if (!drive.readBlocks(first, readAtOnce, chunk.data()))
            return drive.foundNothingWritten() ? 0 : capacity;
        if (!isZero(chunk))
            return first == 0 ? std::min(isoVolumeSize(chunk).value_or(capacity), capacity)
                              : capacity;
    }
    return 0;
}

MediumDescription::Track track(burn::burn_track *written)
{
    constexpr int dataBit = 4;
    burn::burn_toc_entry entry = {};
    burn::burn_track_get_entry(written, &entry);
    MediumDescription::Track track;
    track.session = entry.session;
    track.audio = (entry.control & dataBit) == 0;
    track.start = (entry.extensions_valid & 1)
                      ? entry.start_lba
                      : burn::burn_msf_to_lba(entry.pmin, entry.psec, entry.pframe);
    track.length = (entry.extensions_valid & 1) ? entry.track_blocks : 0;
    return track;
}

QList<MediumDescription::Track> writtenTracks(const LibburnDrive &drive)
{
    QList<MediumDescription::Track> tracks;
    burn::burn_disc *disc = burn::burn_drive_get_disc(drive.handle());
    int sessionCount = 0;
    burn::burn_session **sessions =
        disc ? burn::burn_disc_get_sessions(disc, &sessionCount) : nullptr;
    for (int session = 0; session < sessionCount; ++session) {
        int count = 0;
        burn::burn_track **written = burn::burn_session_get_tracks(sessions[session], &count);
        for (int i = 0; i < count; ++i)
            tracks.append(track(written[i]));
    }
    if (disc)
        burn::burn_disc_free(disc);
    return tracks;
}

}

bool DriveDescription::isOverwritable(int profile)
{
    const MmcProfile *known = MmcProfile::find(profile);
    return known && known->overwritable;
}

bool DriveDescription::isUnformatted(const LibburnDrive &drive)
{
    int status = 0;
    off_t size = 0;
    unsigned spare = 0;
    int count = 0;
    return burn::burn_disc_get_formats(drive.handle(), &status, &size, &spare, &count) > 0
           && status == BURN_FORMAT_IS_UNFORMATTED;
}

bool DriveDescription::needsFormatting(const LibburnDrive &drive)
{
    constexpr int blurayRewritable = 0x43;
    return drive.profile() == blurayRewritable && isUnformatted(drive);
}

qint64 DriveDescription::freeBlocks(const LibburnDrive &drive)
{
    return burn::burn_disc_available_space(drive.handle(), nullptr) / blockSize;
}

double DriveDescription::maximumSpeed(const LibburnDrive &drive)
{
    return burn::burn_drive_get_write_speed(drive.handle());
}

QVariantMap DriveDescription::derivedInfo(const QString &interconnect, const QVariantMap &writes)
{
    const bool external =
        interconnect == QLatin1String("USB") || interconnect == QLatin1String("FireWire");
    const QLatin1StringView location = interconnect == QLatin1String("Unknown")
                                           ? DRDevicePhysicalInterconnectLocationUnknown
                                       : external ? DRDevicePhysicalInterconnectLocationExternal
                                                  : DRDevicePhysicalInterconnectLocationInternal;
    const bool supported = writes.value(DRDeviceCanWriteKey).toBool();
    return {{DRDevicePhysicalInterconnectKey, interconnect},
            {DRDevicePhysicalInterconnectLocationKey, QString(location)},
            {DRDeviceSupportLevelKey,
             QString(supported ? DRDeviceSupportLevelSupported : DRDeviceSupportLevelUnsupported)},
            {DRDeviceWriteCapabilitiesKey, writes}};
}

QVariantMap DriveDescription::info(LibburnDrive &drive, const QString &systemPath)
{
    const burn::burn_drive_info &info = drive.info();
    const auto text = [](const char *bytes) { return QString::fromLatin1(bytes).trimmed(); };
    const std::optional<QByteArray> removable = feature(drive, 0x03); // how media are loaded
    QVariantMap result = derivedInfo(interconnect(drive), capabilities(drive));
    result.insert({{DRDeviceFirmwareRevisionKey, text(info.revision)},
                   {DRDeviceIORegistryEntryPathKey, systemPath},
                   {DRDeviceLoadingMechanismCanEjectKey, hasBit(removable, 0, 3)},
                   {DRDeviceLoadingMechanismCanInjectKey, canLoad(drive)},
                   {DRDeviceLoadingMechanismCanOpenKey, hasBit(removable, 0, 3)},
                   {DRDeviceProductNameKey, text(info.product)},
                   {DRDeviceProfilePathKey, drive.file().path()},
                   {DRDeviceSerialNumberKey, serialNumber(drive)},
                   {DRDeviceVendorNameKey, text(info.vendor)},
                   {DRDeviceWriteBufferSizeKey, info.buffer_size}});
    return result;
}

std::optional<MediumDescription> DriveDescription::medium(LibburnDrive &drive)
{
    using Track = MediumDescription::Track;
    const burn::burn_disc_status status = burn::burn_disc_get_status(drive.handle());
    const MmcProfile *profile = MmcProfile::find(drive.profile());
    if (status == burn::BURN_DISC_EMPTY || status == burn::BURN_DISC_UNREADY
        || (!profile && status == burn::BURN_DISC_UNSUITABLE && drive.profile() == 0))
        return std::nullopt;
    MediumDescription medium;
    medium.type = profile ? profile->type : DRDeviceMediaTypeUnknown;
    medium.mediaClass = profile ? profile->mediaClass : DRDeviceMediaClassUnknown;
    medium.bsdName = QFileInfo(drive.file().path()).fileName();
    medium.erasable = profile && profile->erasable;
    medium.speeds = speeds(drive);
    medium.blank = status == burn::BURN_DISC_BLANK;
    medium.freeBlocks = freeBlocks(drive);
    if (profile && profile->overwritable) {
        medium.overwritableBlocks = medium.freeBlocks;
        medium.usedBlocks =
            needsFormatting(drive) ? 0 : usedOfOverwritable(drive, medium.freeBlocks);
        medium.blank = medium.usedBlocks == 0;
        if (!medium.blank)
            medium.tracks = {{1, 0, medium.usedBlocks, false, Track::State::Complete}};
    } else if (!medium.blank) {
        medium.tracks = writtenTracks(drive);
        for (const Track &written : std::as_const(medium.tracks))
            medium.usedBlocks += written.length;
    }
    medium.appendable = medium.blank || status == burn::BURN_DISC_APPENDABLE;
    if (!medium.appendable || (profile && profile->overwritable && !medium.blank))
        medium.freeBlocks = 0;
    if (medium.blank) // one empty track of its whole capacity
        medium.tracks = {{1, 0, medium.freeBlocks, false, Track::State::Empty}};
    return medium;
}
