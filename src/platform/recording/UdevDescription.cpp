#include "UdevDescription.h"

#include "DRKeys.h"
#include "DriveDescription.h"
#include "MmcProfile.h"

#include <QFileInfo>

#include <array>

#include <libudev.h>

namespace {

QString text(const char *bytes)
{
    return QString::fromLocal8Bit(bytes).trimmed();
}

QString property(udev_device *device, const QByteArray &name)
{
    return text(udev_device_get_property_value(device, name.constData()));
}

bool isSet(udev_device *device, const QByteArray &name)
{
    return property(device, name) == QLatin1String("1");
}

// Of a property "ID_CDROM_…", which tells what a drive writes, and of "ID_CDROM_MEDIA_…", which
// tells what is in it: the profile of MMC.
struct Kind
{
    const char *name;
    int profile;
};
constexpr std::array kinds{
    Kind{"CD", 0x08},       Kind{"CD_R", 0x09},           Kind{"CD_RW", 0x0a},
    Kind{"DVD", 0x10},      Kind{"DVD_R", 0x11},          Kind{"DVD_RAM", 0x12},
    Kind{"DVD_RW", 0x14},   Kind{"DVD_PLUS_RW", 0x1a},    Kind{"DVD_PLUS_R", 0x1b},
    Kind{"DVD_R_DL", 0x15}, Kind{"DVD_PLUS_RW_DL", 0x2a}, Kind{"DVD_PLUS_R_DL", 0x2b},
    Kind{"BD", 0x40},       Kind{"BD_R", 0x41},           Kind{"BD_RE", 0x43},
    Kind{"HDDVD", 0x50},    Kind{"HDDVD_R", 0x51},        Kind{"HDDVD_RW", 0x53},
};

QList<int> profilesOf(udev_device *device, const QByteArray &prefix)
{
    QList<int> profiles;
    for (const Kind &kind : kinds)
        if (isSet(device, prefix + kind.name))
            profiles.append(kind.profile);
    return profiles;
}

QVariantMap infoOf(udev_device *device)
{
    // The drive's own names are those of the device that the block device belongs to.
    udev_device *drive = udev_device_get_parent_with_subsystem_devtype(device, "scsi", nullptr);
    const auto told = [drive](const char *name) {
        return drive ? text(udev_device_get_sysattr_value(drive, name)) : QString();
    };
    const QString path = text(udev_device_get_devnode(device));
    const QString model = told("model");
    const QString bus = property(device, "ID_BUS");
    const QString interconnect = bus == QLatin1String("usb")    ? QStringLiteral("USB")
                                 : bus == QLatin1String("scsi") ? QStringLiteral("SCSI")
                                 : bus == QLatin1String("ata")  ? QStringLiteral("ATAPI")
                                                                : QStringLiteral("Unknown");
    QVariantMap result = DriveDescription::derivedInfo(
        interconnect, MmcProfile::writeCapabilities(profilesOf(device, "ID_CDROM_")));
    // What only the drive itself knows, its loading mechanism and its buffer, is left out.
    result.insert({{DRDeviceFirmwareRevisionKey, told("rev")},
                   {DRDeviceIORegistryEntryPathKey, text(udev_device_get_syspath(device))},
                   {DRDeviceProductNameKey, model.isEmpty() ? path : model},
                   {DRDeviceProfilePathKey, path},
                   {DRDeviceSerialNumberKey, property(device, "ID_SERIAL_SHORT")},
                   {DRDeviceVendorNameKey, told("vendor")}});
    return result;
}

// How much is on it and how much fits, the system does not know.
std::optional<MediumDescription> mediumOf(udev_device *device)
{
    if (!isSet(device, "ID_CDROM_MEDIA"))
        return std::nullopt;
    MediumDescription medium;
    const QList<int> profiles = profilesOf(device, "ID_CDROM_MEDIA_");
    const MmcProfile *profile = profiles.isEmpty() ? nullptr : MmcProfile::find(profiles.last());
    medium.type = profile ? profile->type : DRDeviceMediaTypeUnknown;
    medium.mediaClass = profile ? profile->mediaClass : DRDeviceMediaClassUnknown;
    medium.bsdName = QFileInfo(text(udev_device_get_devnode(device))).fileName();
    medium.erasable = profile && profile->erasable;
    const QString state = property(device, "ID_CDROM_MEDIA_STATE");
    medium.blank = state == QLatin1String("blank");
    medium.appendable = medium.blank || state == QLatin1String("appendable");
    return medium;
}

}

UdevDescription::UdevDescription(udev_device *device)
    : info(infoOf(device))
    , medium(mediumOf(device))
{
}
