// What a real drive and its medium are, as maps of the keys of DRKeys.h. The thread that serves
// libburn.
#pragma once

#include "LibburnDrive.h"
#include "MediumDescription.h"

#include <QVariantMap>

#include <optional>

namespace DriveDescription {

// What never changes. systemPath: where the system has the device.
[[nodiscard]] QVariantMap info(LibburnDrive &drive, const QString &systemPath);

// What follows of that from how the drive is connected ("USB", "SATA"; "Unknown") and from its
// write capabilities.
[[nodiscard]] QVariantMap derivedInfo(const QString &interconnect, const QVariantMap &writes);

// Null without a medium. Reads where volumes begin on media that can be overwritten, which libburn
// takes for blank always.
[[nodiscard]] std::optional<MediumDescription> medium(LibburnDrive &drive);

// The fastest that the medium, or without one the drive, can be written; KB per second.
[[nodiscard]] double maximumSpeed(const LibburnDrive &drive);

// Media that are overwritten in place, and those that have to be formatted before anything else.
[[nodiscard]] bool isOverwritable(int profile);
[[nodiscard]] bool needsFormatting(const LibburnDrive &drive);
[[nodiscard]] bool isUnformatted(const LibburnDrive &drive);

// Blocks in which every file system begins.
inline constexpr qint64 volumeStart = 512;

// Blocks that can be written now.
[[nodiscard]] qint64 freeBlocks(const LibburnDrive &drive);

}
