#include "AudioChecks.h"

#include "Checks.h"
#include "DRKeys.h"
#include "Localized.h"

namespace {

Check noDevice(const DRDevice &device)
{
    return {[&device] { return !device.isValid(); }, localized("NoDevice"),
            localized("BurnAudio", "Please connect a burning device.")};
}

Check noMedium(const DRDevice &device, const char *informativeText)
{
    return {[&device] { return !device.mediaIsPresent(); },
            localized("BurnAudio", "The media is not present."),
            localized("BurnAudio", informativeText)};
}

Check notBlank(const DRDevice &device)
{
    return {[&device] { return !device.mediaIsBlank(); },
            localized("BurnAudio", "The media is not blank."),
            localized("BurnAudio", "Please insert blank media.")};
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
        noMedium(device, QT_TRANSLATE_NOOP("BurnAudio", "Please wait or re-insert the media")),
        {[&] { return !isCD(device); }, localized("BurnAudio", "The media is not CD."),
         localized("BurnAudio", "Burning music only supports CD.")},
        notBlank(device),
    });
}

bool AudioChecks::beforeWritingText(const DRDevice &device, bool hasTracks)
{
    return runChecks({
        {[&] { return !writesText(device); },
         localized("BurnAudio",
                   "The burning device doesn't have the capability of writing CD-Text"),
         localized("BurnAudio", "Please change the burning device that can write CD-Text")},
        {[&] { return !hasTracks; }, localized("BurnAudio", "Please add tracks first"),
         localized("BurnAudio", "Only after added tracks,you can set CD-Text")},
    });
}

bool AudioChecks::verify(const DRDevice &device, bool hasTracks, quint64 level)
{
    return runChecks({
        noDevice(device),
        {[&] { return !device.writesCD() && !device.writesDVD(); },
         localized("BurnAudio", "The device has no capability of write."),
         localized("BurnAudio", "Please change a device that have capability of write.")},
        noMedium(device, QT_TRANSLATE_NOOP("BurnAudio", "Please insert blank media.")),
        notBlank(device),
        {[&] { return !hasTracks; }, localized("BurnAudio", "Tracks cannot be null"),
         localized("BurnAudio", "Please select one or more tracks")},
        {[&] { return level > 100; },
         localized("BurnAudio", "Tracks duration is more than disc duration"),
         localized("BurnAudio", "Please remove some tracks")},
    });
}
