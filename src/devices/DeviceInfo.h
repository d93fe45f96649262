// What never changes about a recorder, as labelled rows. Main thread.
#pragma once

#include "DRDevice.h"
#include "DeviceLabels.h"
#include "DeviceRows.h"

class DeviceInfo : public DeviceRows
{
public:
    // Without a device: no rows.
    [[nodiscard]] static DeviceInfo initWithDevice(const DRDevice &device = {});

    // Builds the rows afresh.
    void toDictionary(const DRDevice &device);

    // The label of a key, location, support level or capability; the key itself where none is
    // known. Not localized.
    [[nodiscard]] QString valueForKey(const QString &key) const
    {
        return m_plistDict.valueForKey(key);
    }

private:
    void addProperty(const QString &key, const QVariant &value);
    void addCapabilities(const QVariantMap &capabilities);

    DeviceLabels m_plistDict{QStringLiteral("DeviceInfo")};
};
