#include "DeviceGeneral.h"

#include "DeviceStatus.h"
#include "Localized.h"

#include <array>

namespace {

struct Flag
{
    const char *label;
    bool (DRDevice::*value)() const;
};

constexpr std::array mediumFlags{
    Flag{QT_TRANSLATE_NOOP("Localizable", "Appendable"), &DRDevice::mediaIsAppendable},
    Flag{QT_TRANSLATE_NOOP("Localizable", "Blank"), &DRDevice::mediaIsBlank},
    Flag{QT_TRANSLATE_NOOP("Localizable", "Busy"), &DRDevice::mediaIsBusy},
    Flag{QT_TRANSLATE_NOOP("Localizable", "Erasable"), &DRDevice::mediaIsErasable},
    Flag{QT_TRANSLATE_NOOP("Localizable", "Overwritable"), &DRDevice::mediaIsOverwritable},
    Flag{QT_TRANSLATE_NOOP("Localizable", "Present"), &DRDevice::mediaIsPresent},
    Flag{QT_TRANSLATE_NOOP("Localizable", "Reserved"), &DRDevice::mediaIsReserved},
    Flag{QT_TRANSLATE_NOOP("Localizable", "Transitioning"), &DRDevice::mediaIsTransitioning},
    Flag{QT_TRANSLATE_NOOP("Localizable", "TrayOpen"), &DRDevice::trayIsOpen},
};

struct Space
{
    const char *label;
    std::optional<DRMSF> (DRDevice::*value)() const;
};

constexpr std::array mediumSpaces{
    Space{QT_TRANSLATE_NOOP("Localizable", "Space Free"), &DRDevice::mediaSpaceFree},
    Space{QT_TRANSLATE_NOOP("Localizable", "Space Used"), &DRDevice::mediaSpaceUsed},
    Space{QT_TRANSLATE_NOOP("Localizable", "Space Overwritable"),
          &DRDevice::mediaSpaceOverwritable},
};

}

DeviceGeneral DeviceGeneral::initWithDevice(const DRDevice &device)
{
    DeviceGeneral general;
    if (!device.isNull())
        general.toDictionary(device);
    return general;
}

void DeviceGeneral::toDictionary(const DRDevice &device)
{
    clearRows();
    addRow(localized("Localizable", "Device"), device.displayName());
    addRow(localized("Localizable", "IO Registry"), device.ioRegistryEntryPath());
    addRow(localized("Localizable", "WritesCD"), localizedYesNo(device.writesCD()));
    addRow(localized("Localizable", "WritesDVD"), localizedYesNo(device.writesDVD()));
    if (device.mediaIsPresent())
        addMedium(device);
}

void DeviceGeneral::addMedium(const DRDevice &device)
{
    const DeviceStatus deviceStatus = DeviceStatus::initWithDevice(device);
    addRow(localized("Localizable", "BSD Name"), device.bsdName());
    addRow(localized("Localizable", "Media Type"), deviceStatus.valueForKey(device.mediaType()));
    for (const Space &space : mediumSpaces) {
        const std::optional<DRMSF> value = (device.*space.value)();
        addRow(localized(QLatin1StringView(space.label)),
               value ? QVariant(value->description()) : QVariant());
    }
    for (const Flag &flag : mediumFlags)
        addRow(localized(QLatin1StringView(flag.label)), localizedYesNo((device.*flag.value)()));
}
