// The state of a recorder and of the medium in it, as labelled rows: the recorder's properties,
// one tab deeper those of the medium, below them its tracks. Main thread.
#pragma once

#include "DRDevice.h"
#include "DeviceLabels.h"
#include "DeviceRows.h"

#include <span>

class DeviceStatus : public DeviceRows
{
public:
    // Without a device: no rows.
    [[nodiscard]] static DeviceStatus initWithDevice(const DRDevice &device = {});

    // Builds the rows afresh from the device's state of now.
    void toDictionary(const DRDevice &device);

    // The label of a key, media state, class, type or track type; the key itself where none is
    // known. Not localized.
    [[nodiscard]] QString valueForKey(const QString &key) const
    {
        return m_plistDict.valueForKey(key);
    }

private:
    struct Row;

    [[nodiscard]] QString label(const QString &key, int tabs = 0) const;
    [[nodiscard]] QVariant valueOf(const Row &row, const QString &label,
                                   const QVariantMap &properties) const;
    void addRows(std::span<const Row> rows, int tabs, const QVariantMap &properties);
    void addMedium(const QVariantMap &medium);
    void addTracks(const QVariantMap &medium);

    DeviceLabels m_plistDict{QStringLiteral("DeviceStatus")};
};
