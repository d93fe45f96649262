#include "MediumDescription.h"

#include "DRKeys.h"
#include "DRMSF.h"

#include <array>

namespace {

// Bytes of a block, and the data block type of MMC: mode 1, and audio.
constexpr int dataBlockSize = 2048;
constexpr int dataBlockType = 8;
constexpr int audioBlockSize = 2352;
constexpr int audioBlockType = 0;

QVariant msf(qint64 blocks)
{
    return QVariant::fromValue(DRMSF(blocks));
}

QVariantMap trackStatus(const MediumDescription::Track &track, int number)
{
    constexpr std::array types{DRTrackTypeInvisible, DRTrackTypeIncomplete, DRTrackTypeComplete};
    const bool empty = track.state == MediumDescription::Track::State::Empty;
    return {{DRBlockSizeKey, track.audio ? audioBlockSize : dataBlockSize},
            {DRBlockTypeKey, track.audio ? audioBlockType : dataBlockType},
            {DRFreeBlocksKey, empty ? track.length : 0},
            {DRSessionFormatKey, 0},
            {DRSessionNumberKey, track.session},
            {DRTrackIsEmptyKey, empty},
            {DRTrackLengthKey, msf(track.length)},
            {DRTrackNumberKey, number},
            {DRTrackStartAddressKey, msf(track.start)},
            {DRTrackTypeKey, QString(types.at(static_cast<size_t>(track.state)))}};
}

}

QVariantMap MediumDescription::status(bool reserved) const
{
    QVariantList speedList;
    for (const double speed : speeds)
        speedList.append(speed);
    QStringList references;
    QVariantMap infos;
    for (const Track &track : tracks) {
        const int number = static_cast<int>(references.size()) + 1;
        references.append(QStringLiteral("Track %1").arg(number));
        infos.insert(references.last(), trackStatus(track, number));
    }
    return {{DRDeviceBurnSpeedsKey, speedList},
            {DRDeviceMediaBSDNameKey, bsdName},
            {DRDeviceMediaBlocksFreeKey, freeBlocks},
            {DRDeviceMediaBlocksOverwritableKey, overwritableBlocks},
            {DRDeviceMediaBlocksUsedKey, usedBlocks},
            {DRDeviceMediaClassKey, mediaClass},
            {DRDeviceMediaFreeSpaceKey, msf(freeBlocks)},
            {DRDeviceMediaIsAppendableKey, appendable},
            {DRDeviceMediaIsBlankKey, blank},
            {DRDeviceMediaIsErasableKey, erasable},
            {DRDeviceMediaIsOverwritableKey, overwritableBlocks > 0},
            {DRDeviceMediaIsReservedKey, reserved},
            {DRDeviceMediaOverwritableSpaceKey, msf(overwritableBlocks)},
            {DRDeviceMediaSessionCountKey, tracks.isEmpty() ? 0 : tracks.last().session},
            {DRDeviceMediaTrackCountKey, tracks.size()},
            {DRDeviceMediaTypeKey, type},
            {DRDeviceMediaUsedSpaceKey, msf(usedBlocks)},
            {DRDeviceTrackRefsKey, references},
            {DRDeviceTrackInfoKey, infos}};
}
