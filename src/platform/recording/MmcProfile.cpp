#include "MmcProfile.h"

#include "DRKeys.h"
#include "MediaTypes.h"

#include <algorithm>
#include <array>

namespace {

// clang-format off
constexpr std::array profiles{
    MmcProfile{0x08, DRDeviceMediaTypeCDROM, DRDeviceMediaClassCD, {}, false, false},
    MmcProfile{0x09, DRDeviceMediaTypeCDR, DRDeviceMediaClassCD, DRDeviceCanWriteCDRKey, false, false},
    MmcProfile{0x0a, DRDeviceMediaTypeCDRW, DRDeviceMediaClassCD, DRDeviceCanWriteCDRWKey, true, false},
    MmcProfile{0x10, DRDeviceMediaTypeDVDROM, DRDeviceMediaClassDVD, {}, false, false},
    MmcProfile{0x11, DRDeviceMediaTypeDVDR, DRDeviceMediaClassDVD, DRDeviceCanWriteDVDRKey, false, false},
    MmcProfile{0x12, DRDeviceMediaTypeDVDRAM, DRDeviceMediaClassDVD, DRDeviceCanWriteDVDRAMKey, true, true},
    MmcProfile{0x13, DRDeviceMediaTypeDVDRW, DRDeviceMediaClassDVD, DRDeviceCanWriteDVDRWKey, true, true},
    MmcProfile{0x14, DRDeviceMediaTypeDVDRW, DRDeviceMediaClassDVD, DRDeviceCanWriteDVDRWKey, true, false},
    MmcProfile{0x15, DRDeviceMediaTypeDVDRDualLayer, DRDeviceMediaClassDVD, DRDeviceCanWriteDVDRDualLayerKey, false, false},
    MmcProfile{0x16, DRDeviceMediaTypeDVDRDualLayer, DRDeviceMediaClassDVD, DRDeviceCanWriteDVDRDualLayerKey, false, false},
    MmcProfile{0x17, DRDeviceMediaTypeDVDRWDualLayer, DRDeviceMediaClassDVD, DRDeviceCanWriteDVDRWDualLayerKey, true, false},
    MmcProfile{0x1a, DRDeviceMediaTypeDVDPlusRW, DRDeviceMediaClassDVD, DRDeviceCanWriteDVDPlusRWKey, true, true},
    MmcProfile{0x1b, DRDeviceMediaTypeDVDPlusR, DRDeviceMediaClassDVD, DRDeviceCanWriteDVDPlusRKey, false, false},
    MmcProfile{0x2a, DRDeviceMediaTypeDVDPlusRWDoubleLayer, DRDeviceMediaClassDVD, DRDeviceCanWriteDVDPlusRWDoubleLayerKey, true, true},
    MmcProfile{0x2b, DRDeviceMediaTypeDVDPlusRDoubleLayer, DRDeviceMediaClassDVD, DRDeviceCanWriteDVDPlusRDoubleLayerKey, false, false},
    MmcProfile{0x40, DRDeviceMediaTypeBDROM, DRDeviceMediaClassBD, {}, false, false},
    MmcProfile{0x41, DRDeviceMediaTypeBDR, DRDeviceMediaClassBD, DRDeviceCanWriteBDRKey, false, false},
    MmcProfile{0x42, DRDeviceMediaTypeBDR, DRDeviceMediaClassBD, DRDeviceCanWriteBDRKey, false, false},
    MmcProfile{0x43, DRDeviceMediaTypeBDRE, DRDeviceMediaClassBD, DRDeviceCanWriteBDREKey, true, true},
    MmcProfile{0x50, DRDeviceMediaTypeHDDVDROM, DRDeviceMediaClassHDDVD, {}, false, false},
    MmcProfile{0x51, DRDeviceMediaTypeHDDVDR, DRDeviceMediaClassHDDVD, DRDeviceCanWriteHDDVDRKey, false, false},
    MmcProfile{0x52, DRDeviceMediaTypeHDDVDRAM, DRDeviceMediaClassHDDVD, DRDeviceCanWriteHDDVDRAMKey, true, true},
    MmcProfile{0x53, DRDeviceMediaTypeHDDVDRW, DRDeviceMediaClassHDDVD, DRDeviceCanWriteHDDVDRWKey, true, false},
    MmcProfile{0x58, DRDeviceMediaTypeHDDVDRDualLayer, DRDeviceMediaClassHDDVD, DRDeviceCanWriteHDDVDRDualLayerKey, false, false},
    MmcProfile{0x5a, DRDeviceMediaTypeHDDVDRWDualLayer, DRDeviceMediaClassHDDVD, DRDeviceCanWriteHDDVDRWDualLayerKey, true, false},
};
// clang-format on

QLatin1StringView capabilityOf(QLatin1StringView mediaClass)
{
    return mediaClass == DRDeviceMediaClassCD    ? DRDeviceCanWriteCDKey
           : mediaClass == DRDeviceMediaClassDVD ? DRDeviceCanWriteDVDKey
           : mediaClass == DRDeviceMediaClassBD  ? DRDeviceCanWriteBDKey
                                                 : DRDeviceCanWriteHDDVDKey;
}

}

const MmcProfile *MmcProfile::find(int number)
{
    const auto found = std::ranges::find(profiles, number, &MmcProfile::number);
    return found == profiles.end() ? nullptr : &*found;
}

QVariantMap MmcProfile::writeCapabilities(std::span<const int> numbers)
{
    QVariantMap result = MediaTypes::writeCapabilities();
    for (QVariant &value : result)
        value = false;
    for (const int number : numbers) {
        const MmcProfile *profile = find(number);
        if (!profile || profile->capability.isEmpty())
            continue;
        for (const QLatin1StringView key :
             {profile->capability, capabilityOf(profile->mediaClass), DRDeviceCanWriteKey})
            result[key] = true;
    }
    return result;
}
