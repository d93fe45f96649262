// What pages ask about the medium in a recorder: how much it holds, and its picture. Main thread.
#pragma once

#include "DRDevice.h"

#include <QIcon>

namespace MiscTool {

// What the blank medium holds, in bytes; 0 where there is no blank medium.
[[nodiscard]] qint64 getDiscSize(const DRDevice &device);

// The free space on the medium; null where there is none.
[[nodiscard]] std::optional<DRMSF> getDiscSizeInMSF(const DRDevice &device);

// The name of the picture for a DRDeviceMediaType; "CD-ROM" for one that is not known.
[[nodiscard]] QString mediaImageName(const QString &mediaType);

// The picture of the medium in the recorder.
[[nodiscard]] QIcon getMediaImage(const DRDevice &device);

}
