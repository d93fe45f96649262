#include "VirtualMedium.h"

#include "DRKeys.h"
#include "DRMSF.h"
#include "MediaTypes.h"
#include "PropertyList.h"

#include <QDir>
#include <QUuid>

#include <array>
#include <numeric>

namespace {

// Bytes of a block, and the data block type of MMC: mode 1, and audio.
constexpr int dataBlockSize = 2048;
constexpr int dataBlockType = 8;
constexpr int audioBlockSize = 2352;
constexpr int audioBlockType = 0;

constexpr std::array stateNames{QLatin1StringView("blank"), QLatin1StringView("incomplete"),
                                QLatin1StringView("complete")};

const QString identifierKey = QStringLiteral("Identifier");
const QString typeKey = QStringLiteral("Type");
const QString stateKey = QStringLiteral("State");
const QString appendableKey = QStringLiteral("Appendable");
const QString audioKey = QStringLiteral("Audio");
const QString capacityKey = QStringLiteral("Capacity");
const QString tracksKey = QStringLiteral("Tracks");

QString listPath(const QString &folder)
{
    return folder + QStringLiteral("/medium.plist");
}

QVariantMap trackStatus(const VirtualMedium &medium, int number, qint64 start, qint64 length)
{
    const bool empty = medium.isBlank();
    const bool complete = medium.state == VirtualMedium::State::Complete;
    const QLatin1StringView type = empty      ? DRTrackTypeInvisible
                                   : complete ? DRTrackTypeComplete
                                              : DRTrackTypeIncomplete;
    return {{DRBlockSizeKey, medium.audio ? audioBlockSize : dataBlockSize},
            {DRBlockTypeKey, medium.audio ? audioBlockType : dataBlockType},
            {DRFreeBlocksKey, empty ? length : 0},
            {DRSessionFormatKey, 0},
            {DRSessionNumberKey, 1},
            {DRTrackIsEmptyKey, empty},
            {DRTrackLengthKey, QVariant::fromValue(DRMSF(length))},
            {DRTrackNumberKey, number},
            {DRTrackStartAddressKey, QVariant::fromValue(DRMSF(start))},
            {DRTrackTypeKey, QString(type)}};
}

}

VirtualMedium VirtualMedium::blank(const MediaType &type)
{
    VirtualMedium medium;
    medium.identifier = QUuid::createUuid().toString(QUuid::WithoutBraces);
    medium.type = type.type;
    medium.state = State::Blank;
    medium.capacity = type.capacity;
    return medium;
}

void VirtualMedium::clear()
{
    state = State::Blank;
    appendable = false;
    audio = false;
    tracks.clear();
}

std::optional<VirtualMedium> VirtualMedium::load(const QString &folder)
{
    if (!QDir(folder).exists())
        return std::nullopt;
    const QVariantMap list = PropertyList::readMap(listPath(folder));
    VirtualMedium medium;
    medium.identifier = list.value(identifierKey).toString();
    medium.type = list.value(typeKey, QString(DRDeviceMediaTypeUnknown)).toString();
    const QString name = list.value(stateKey).toString();
    const auto found = std::ranges::find(stateNames, name);
    if (found != stateNames.end())
        medium.state = static_cast<State>(found - stateNames.begin());
    medium.appendable = list.value(appendableKey).toBool();
    medium.audio = list.value(audioKey).toBool();
    medium.capacity = list.value(capacityKey).toLongLong();
    for (const QVariant &length : list.value(tracksKey).toList())
        medium.tracks.append(length.toLongLong());
    return medium;
}

Result<> VirtualMedium::store(const QString &folder) const
{
    QVariantList lengths;
    for (const qint64 length : tracks)
        lengths.append(length);
    return PropertyList::write(
        listPath(folder),
        QVariantMap{{identifierKey, identifier},
                    {typeKey, type},
                    {stateKey, QString(stateNames.at(static_cast<size_t>(state)))},
                    {appendableKey, appendable},
                    {audioKey, audio},
                    {capacityKey, capacity},
                    {tracksKey, lengths}});
}

bool VirtualMedium::isErasable() const
{
    const MediaType *known = MediaTypes::find(type);
    return known && known->erasable;
}

qint64 VirtualMedium::usedBlocks() const
{
    return std::accumulate(tracks.cbegin(), tracks.cend(), qint64(0));
}

QVariantMap VirtualMedium::status(bool reserved) const
{
    const MediaType *known = MediaTypes::find(type);
    const bool writable = isBlank() || (state == State::Complete && appendable);
    const qint64 free = writable ? capacity - usedBlocks() : 0;
    const bool overwritable = known && known->overwritable;
    const qint64 overwritableBlocks = overwritable ? capacity : 0;

    QVariantList speeds;
    if (known)
        for (const double speed : known->speeds())
            speeds.append(speed);

    // A blank medium is one empty track of its whole capacity.
    const QList<qint64> lengths = isBlank() ? QList<qint64>{capacity} : tracks;
    QStringList references;
    QVariantMap infos;
    qint64 start = 0;
    for (const qint64 length : lengths) {
        const int number = static_cast<int>(references.size()) + 1;
        const QString reference = QStringLiteral("Track %1").arg(number);
        references.append(reference);
        infos.insert(reference, trackStatus(*this, number, start, length));
        start += length;
    }

    return {{DRDeviceBurnSpeedsKey, speeds},
            {DRDeviceMediaBSDNameKey, QStringLiteral("virtual")},
            {DRDeviceMediaBlocksFreeKey, free},
            {DRDeviceMediaBlocksOverwritableKey, overwritableBlocks},
            {DRDeviceMediaBlocksUsedKey, usedBlocks()},
            {DRDeviceMediaClassKey, QString(known ? known->mediaClass : DRDeviceMediaClassUnknown)},
            {DRDeviceMediaFreeSpaceKey, QVariant::fromValue(DRMSF(free))},
            {DRDeviceMediaIsAppendableKey, writable},
            {DRDeviceMediaIsBlankKey, isBlank()},
            {DRDeviceMediaIsErasableKey, known && known->erasable},
            {DRDeviceMediaIsOverwritableKey, overwritable},
            {DRDeviceMediaIsReservedKey, reserved},
            {DRDeviceMediaOverwritableSpaceKey, QVariant::fromValue(DRMSF(overwritableBlocks))},
            {DRDeviceMediaSessionCountKey, references.isEmpty() ? 0 : 1},
            {DRDeviceMediaTrackCountKey, references.size()},
            {DRDeviceMediaTypeKey, type},
            {DRDeviceMediaUsedSpaceKey, QVariant::fromValue(DRMSF(usedBlocks()))},
            {DRDeviceTrackRefsKey, references},
            {DRDeviceTrackInfoKey, infos}};
}
