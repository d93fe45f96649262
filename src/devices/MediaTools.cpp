#include "MediaTools.h"

#include "DRKeys.h"

#include <algorithm>
#include <array>

namespace {

struct MediaImage
{
    QLatin1StringView type;
    QLatin1StringView name;
};

using V = QLatin1StringView;

// Media of two layers share the picture of their kind.
constexpr std::array images{
    MediaImage{DRDeviceMediaTypeCDR, V("CD-R")},
    MediaImage{DRDeviceMediaTypeCDRW, V("CD-RW")},
    MediaImage{DRDeviceMediaTypeCDROM, V("CD-ROM")},
    MediaImage{DRDeviceMediaTypeBDR, V("BD-R")},
    MediaImage{DRDeviceMediaTypeBDRE, V("BD-RE")},
    MediaImage{DRDeviceMediaTypeBDROM, V("BD")},
    MediaImage{DRDeviceMediaTypeDVDPlusR, V("DVD+R")},
    MediaImage{DRDeviceMediaTypeDVDPlusRDoubleLayer, V("DVD+R")},
    MediaImage{DRDeviceMediaTypeDVDPlusRW, V("DVD+RW")},
    MediaImage{DRDeviceMediaTypeDVDPlusRWDoubleLayer, V("DVD+RW")},
    MediaImage{DRDeviceMediaTypeDVDR, V("DVD-R")},
    MediaImage{DRDeviceMediaTypeDVDRDualLayer, V("DVD-R")},
    MediaImage{DRDeviceMediaTypeDVDRAM, V("DVD-RAM")},
    MediaImage{DRDeviceMediaTypeDVDROM, V("DVD")},
    MediaImage{DRDeviceMediaTypeDVDRW, V("DVD-RW")},
    MediaImage{DRDeviceMediaTypeDVDRWDualLayer, V("DVD-RW")},
    MediaImage{DRDeviceMediaTypeHDDVDR, V("HD-DVD-R")},
    MediaImage{DRDeviceMediaTypeHDDVDRDualLayer, V("HD-DVD-R")},
    MediaImage{DRDeviceMediaTypeHDDVDRAM, V("HD-DVD-RAM")},
    MediaImage{DRDeviceMediaTypeHDDVDROM, V("HD-DVD")},
    MediaImage{DRDeviceMediaTypeHDDVDRW, V("HD-DVD-RW")},
    MediaImage{DRDeviceMediaTypeHDDVDRWDualLayer, V("HD-DVD-RW")},
};

}

qint64 MiscTool::getDiscSize(const DRDevice &device)
{
    const QVariantMap medium = device.status().value(DRDeviceMediaInfoKey).toMap();
    const QVariantList references = medium.value(DRDeviceTrackRefsKey).toList();
    if (!medium.value(DRDeviceMediaIsBlankKey).toBool() || references.isEmpty())
        return 0;
    const QVariantMap track =
        medium.value(DRDeviceTrackInfoKey).toMap().value(references.first().toString()).toMap();
    return track.value(DRTrackLengthKey).toLongLong() * track.value(DRBlockSizeKey).toLongLong();
}

std::optional<DRMSF> MiscTool::getDiscSizeInMSF(const DRDevice &device)
{
    return device.mediaSpaceFree();
}

QString MiscTool::mediaImageName(const QString &mediaType)
{
    const auto *found = std::ranges::find(images, mediaType, &MediaImage::type);
    return found == images.end() ? QStringLiteral("CD-ROM") : QString(found->name);
}

QIcon MiscTool::getMediaImage(const DRDevice &device)
{
    return QIcon(QStringLiteral(":/media/%1.svg").arg(mediaImageName(device.mediaType())));
}
