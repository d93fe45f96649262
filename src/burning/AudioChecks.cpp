#include "AudioChecks.h"

#include "Checks.h"
#include "DRKeys.h"
#include "Localized.h"

namespace {

QString text(const char *key)
{
    return localized("BurnAudio", key);
}

Check noDevice(const DRDevice &device)
{
    return {[&device] { return !device.isValid(); }, localized("NoDevice"),
            text("Please connect a burning device.")};
}

Check noMedium(const DRDevice &device, const char *informativeText)
{
    return {[&device] { return !device.mediaIsPresent(); }, text("The media is not present."),
            text(informativeText)};
}

Check notBlank(const DRDevice &device)
{
    return {[&device] { return !device.mediaIsBlank(); }, text("The media is not blank."),
            text("Please insert blank media.")};
}

bool writesText(const DRDevice &device)
{
    const QVariantMap capabilities = device.info().value(DRDeviceWriteCapabilitiesKey).toMap();
    return capabilities.value(DRDeviceCanWriteCDTextKey).toBool();
}

}

bool AudioChecks::isCD(const DRDevice &device)
{
    const QVariantMap medium = device.status().value(DRDeviceMediaInfoKey).toMap();
    return medium.value(DRDeviceMediaClassKey) == QString(DRDeviceMediaClassCD);
}

bool AudioChecks::beforeAdding(const DRDevice &device)
{
    return runChecks({
        noDevice(device),
        noMedium(device, "Please wait or re-insert the media"),
        {[&] { return !isCD(device); }, text("The media is not CD."),
         text("Burning music only supports CD.")},
        notBlank(device),
    });
}

bool AudioChecks::beforeWritingText(const DRDevice &device, bool hasTracks)
{
    return runChecks({
        {[&] { return !writesText(device); },
         text("The burning device doesn't have the capability of writing CD-Text"),
         text("Please change the burning device that can write CD-Text")},
        {[&] { return !hasTracks; }, text("Please add tracks first"),
         text("Only after added tracks,you can set CD-Text")},
    });
}

bool AudioChecks::verify(const DRDevice &device, bool hasTracks, quint64 level)
{
    return runChecks({
        noDevice(device),
        {[&] { return !device.writesCD() && !device.writesDVD(); },
         text("The device has no capability of write."),
         text("Please change a device that have capability of write.")},
        noMedium(device, "Please insert blank media."),
        notBlank(device),
        {[&] { return !hasTracks; }, text("Tracks cannot be null"),
         text("Please select one or more tracks")},
        {[&] { return level > 100; }, text("Tracks duration is more than disc duration"),
         text("Please remove some tracks")},
    });
}
