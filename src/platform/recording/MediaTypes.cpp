#include "MediaTypes.h"

#include "DRKeys.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// KB per second at 1x: CD of 2,352-byte sectors (75 a second), DVD 11.08 Mbit/s (ECMA-267),
// BD 35.965 Mbit/s, HD DVD 36.55 Mbit/s.
constexpr double cdSpeed = 176.4;
constexpr double dvdSpeed = 1385.0;
constexpr double bdSpeed = 4495.625;
constexpr double hdDvdSpeed = 4568.75;

constexpr std::array cdFactors{4.0, 8.0, 16.0, 24.0, 32.0, 48.0, 52.0};
constexpr std::array cdRwFactors{4.0, 8.0, 10.0, 12.0, 16.0, 24.0};
constexpr std::array dvdFactors{2.4, 4.0, 6.0, 8.0, 12.0, 16.0};
constexpr std::array dvdMinusFactors{2.0, 4.0, 6.0, 8.0, 12.0, 16.0};
constexpr std::array dvdRwFactors{2.4, 4.0, 6.0, 8.0};
constexpr std::array dvdMinusRwFactors{1.0, 2.0, 4.0, 6.0};
constexpr std::array dvdRamFactors{2.0, 3.0, 5.0};
constexpr std::array bdFactors{1.0, 2.0, 4.0, 6.0, 8.0};
constexpr std::array bdReFactors{1.0, 2.0};
constexpr std::array hdDvdFactors{1.0, 2.0};

// Blocks of a whole empty medium: 80 minutes on CD (79:59:74 less the lead-in's two seconds), the
// sizes that drives report for DVD and BD; DVD-RAM formatted with its spare areas; HD DVD by its
// nominal 15, 20 and 30 thousand million bytes.
constexpr qint64 cdBlocks = 359849;
constexpr qint64 dvdPlusBlocks = 2295104;
constexpr qint64 dvdMinusBlocks = 2298496;
constexpr qint64 dvdPlusDoubleBlocks = 4173824;
constexpr qint64 dvdMinusDoubleBlocks = 4171712;
constexpr qint64 dvdRamBlocks = 2236704;
constexpr qint64 bdBlocks = 12219392;
constexpr qint64 hdDvdBlocks = 7324218;
constexpr qint64 hdDvdDoubleBlocks = 14648437;
constexpr qint64 hdDvdRamBlocks = 9765625;

using V = QLatin1StringView;
constexpr auto cd = DRDeviceMediaClassCD;
constexpr auto dvd = DRDeviceMediaClassDVD;
constexpr auto bd = DRDeviceMediaClassBD;
constexpr auto hd = DRDeviceMediaClassHDDVD;

// clang-format off
constexpr std::array media{
    MediaType{DRDeviceMediaTypeCDR,  cd, V("CD-R"),  cdBlocks, cdSpeed, cdFactors,   false, false},
    MediaType{DRDeviceMediaTypeCDRW, cd, V("CD-RW"), cdBlocks, cdSpeed, cdRwFactors, true,  false},
    MediaType{DRDeviceMediaTypeDVDPlusR, dvd, V("DVD+R"), dvdPlusBlocks, dvdSpeed, dvdFactors, false, false},
    MediaType{DRDeviceMediaTypeDVDPlusRDoubleLayer, dvd, V("DVD+R DL"), dvdPlusDoubleBlocks, dvdSpeed, dvdRwFactors, false, false},
    MediaType{DRDeviceMediaTypeDVDPlusRW, dvd, V("DVD+RW"), dvdPlusBlocks, dvdSpeed, dvdRwFactors, true, true},
    MediaType{DRDeviceMediaTypeDVDPlusRWDoubleLayer, dvd, V("DVD+RW DL"), dvdPlusDoubleBlocks, dvdSpeed, dvdRwFactors, true, true},
    MediaType{DRDeviceMediaTypeDVDR, dvd, V("DVD-R"), dvdMinusBlocks, dvdSpeed, dvdMinusFactors, false, false},
    MediaType{DRDeviceMediaTypeDVDRDualLayer, dvd, V("DVD-R DL"), dvdMinusDoubleBlocks, dvdSpeed, dvdMinusRwFactors, false, false},
    MediaType{DRDeviceMediaTypeDVDRW, dvd, V("DVD-RW"), dvdMinusBlocks, dvdSpeed, dvdMinusRwFactors, true, false},
    MediaType{DRDeviceMediaTypeDVDRWDualLayer, dvd, V("DVD-RW DL"), dvdMinusDoubleBlocks, dvdSpeed, dvdMinusRwFactors, true, false},
    MediaType{DRDeviceMediaTypeDVDRAM, dvd, V("DVD-RAM"), dvdRamBlocks, dvdSpeed, dvdRamFactors, true, true},
    MediaType{DRDeviceMediaTypeBDR,  bd, V("BD-R"),  bdBlocks, bdSpeed, bdFactors,   false, false},
    MediaType{DRDeviceMediaTypeBDRE, bd, V("BD-RE"), bdBlocks, bdSpeed, bdReFactors, true,  true},
    MediaType{DRDeviceMediaTypeHDDVDR, hd, V("HD-DVD-R"), hdDvdBlocks, hdDvdSpeed, hdDvdFactors, false, false},
    MediaType{DRDeviceMediaTypeHDDVDRDualLayer, hd, V("HD-DVD-R DL"), hdDvdDoubleBlocks, hdDvdSpeed, hdDvdFactors, false, false},
    MediaType{DRDeviceMediaTypeHDDVDRW, hd, V("HD-DVD-RW"), hdDvdBlocks, hdDvdSpeed, hdDvdFactors, true, false},
    MediaType{DRDeviceMediaTypeHDDVDRWDualLayer, hd, V("HD-DVD-RW DL"), hdDvdDoubleBlocks, hdDvdSpeed, hdDvdFactors, true, false},
    MediaType{DRDeviceMediaTypeHDDVDRAM, hd, V("HD-DVD-RAM"), hdDvdRamBlocks, hdDvdSpeed, hdDvdFactors, true, true},
};
// clang-format on

const MediaType *findIf(const auto &matches)
{
    const auto found = std::ranges::find_if(media, matches);
    return found == media.end() ? nullptr : &*found;
}

}

QList<double> MediaType::speeds() const
{
    QList<double> result;
    for (const double factor : factors)
        // Drives report whole KB per second; a tenth keeps 4x on CD the 705.6 that it is.
        result.append(std::round(factor * singleSpeed * 10.0) / 10.0);
    return result;
}

QString MediaType::commandName() const
{
    return QString(name).toLower().replace(QLatin1Char(' '), QLatin1Char('-'));
}

std::span<const MediaType> MediaTypes::all()
{
    return media;
}

const MediaType *MediaTypes::find(const QString &type)
{
    return findIf([&](const MediaType &medium) { return medium.type == type; });
}

const MediaType *MediaTypes::findByCommandName(const QString &name)
{
    return findIf([&](const MediaType &medium) { return medium.commandName() == name.toLower(); });
}

QVariantMap MediaTypes::writeCapabilities()
{
    QVariantMap capabilities;
    for (const QLatin1StringView key : {DRDeviceCanWriteKey,
                                        DRDeviceCanWriteCDTextKey,
                                        DRDeviceCanWriteCDKey,
                                        DRDeviceCanWriteCDRKey,
                                        DRDeviceCanWriteCDRWKey,
                                        DRDeviceCanWriteDVDKey,
                                        DRDeviceCanWriteDVDRKey,
                                        DRDeviceCanWriteDVDRDualLayerKey,
                                        DRDeviceCanWriteDVDRWKey,
                                        DRDeviceCanWriteDVDRWDualLayerKey,
                                        DRDeviceCanWriteDVDRAMKey,
                                        DRDeviceCanWriteDVDPlusRKey,
                                        DRDeviceCanWriteDVDPlusRDoubleLayerKey,
                                        DRDeviceCanWriteDVDPlusRWKey,
                                        DRDeviceCanWriteDVDPlusRWDoubleLayerKey,
                                        DRDeviceCanWriteBDKey,
                                        DRDeviceCanWriteBDRKey,
                                        DRDeviceCanWriteBDREKey,
                                        DRDeviceCanWriteHDDVDKey,
                                        DRDeviceCanWriteHDDVDRKey,
                                        DRDeviceCanWriteHDDVDRDualLayerKey,
                                        DRDeviceCanWriteHDDVDRAMKey,
                                        DRDeviceCanWriteHDDVDRWKey,
                                        DRDeviceCanWriteHDDVDRWDualLayerKey})
        capabilities.insert(key, true);
    return capabilities;
}
