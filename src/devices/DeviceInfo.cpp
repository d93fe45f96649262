#include "DeviceInfo.h"

#include "DRKeys.h"
#include "Localized.h"

#include <algorithm>
#include <array>

namespace {

// How the value of a key is shown.
enum class Form {
    Unlisted, // kept, but in no row
    Unchanged,
    YesNo,
    LocalizedLabel,
    Capabilities
};

struct Property
{
    QLatin1StringView key;
    Form form;
};

constexpr std::array properties{
    Property{DRDeviceFirmwareRevisionKey, Form::Unlisted},
    Property{DRDeviceIORegistryEntryPathKey, Form::Unchanged},
    Property{DRDeviceLoadingMechanismCanEjectKey, Form::YesNo},
    Property{DRDeviceLoadingMechanismCanInjectKey, Form::YesNo},
    Property{DRDeviceLoadingMechanismCanOpenKey, Form::YesNo},
    Property{DRDevicePhysicalInterconnectKey, Form::Unchanged},
    Property{DRDevicePhysicalInterconnectLocationKey, Form::LocalizedLabel},
    Property{DRDeviceProductNameKey, Form::Unchanged},
    Property{DRDeviceProfilePathKey, Form::Unchanged},
    Property{DRDeviceSerialNumberKey, Form::Unchanged},
    Property{DRDeviceSupportLevelKey, Form::LocalizedLabel},
    Property{DRDeviceVendorNameKey, Form::Unchanged},
    Property{DRDeviceWriteBufferSizeKey, Form::Unchanged},
    Property{DRDeviceWriteCapabilitiesKey, Form::Capabilities},
};

}

DeviceInfo DeviceInfo::initWithDevice(const DRDevice &device)
{
    DeviceInfo info;
    if (!device.isNull())
        info.toDictionary(device);
    return info;
}

void DeviceInfo::toDictionary(const DRDevice &device)
{
    clearRows();
    const QVariantMap info = device.info(); // in the order of its keys, as the rows are
    for (auto it = info.cbegin(); it != info.cend(); ++it)
        addProperty(it.key(), it.value());
}

void DeviceInfo::addProperty(const QString &key, const QVariant &value)
{
    const auto *property = std::ranges::find(properties, key, &Property::key);
    if (property == properties.end())
        return;
    const QString label = localized(valueForKey(key));
    switch (property->form) {
    case Form::Unlisted:
        m_dict->insert(label, value);
        break;
    case Form::Unchanged:
        addRow(label, value);
        break;
    case Form::YesNo:
        addRow(label, localizedYesNo(value.toBool()));
        break;
    case Form::LocalizedLabel:
        addRow(label, localized(valueForKey(value.toString())));
        break;
    case Form::Capabilities:
        addRow(label, QString());
        addCapabilities(value.toMap());
        break;
    }
}

void DeviceInfo::addCapabilities(const QVariantMap &capabilities)
{
    for (auto it = capabilities.cbegin(); it != capabilities.cend(); ++it)
        addRow(u'\t' + localized(valueForKey(it.key())), localizedYesNo(it.value().toBool()));
}
