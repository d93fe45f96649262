#include "DeviceStatus.h"

#include "DRKeys.h"
#include "Localized.h"

#include <algorithm>
#include <array>

struct DeviceStatus::Row
{
    enum class Form {
        Unchanged,
        Text,
        YesNo,
        // Looked up under the row's label, where no medium has anything, so the row reads NO. It
        // has always been so and is kept; the General tab shows these flags as they are.
        YesNoUnderLabel,
        Label,
        LocalizedLabel
    };

    QLatin1StringView key;
    Form form = Form::Unchanged;

    static const std::array<Row, 5> ofDevice;
    static const std::array<Row, 16> ofMedium;
    static const std::array<Row, 10> ofTrack;
};

constexpr std::array<DeviceStatus::Row, 5> DeviceStatus::Row::ofDevice{{
    {DRDeviceCurrentWriteSpeedKey, Form::Unchanged},
    {DRDeviceIsBusyKey, Form::YesNo},
    {DRDeviceIsTrayOpenKey, Form::YesNo},
    {DRDeviceMaximumWriteSpeedKey, Form::Unchanged},
    {DRDeviceMediaStateKey, Form::LocalizedLabel},
}};

constexpr std::array<DeviceStatus::Row, 16> DeviceStatus::Row::ofMedium{{
    {DRDeviceMediaBSDNameKey, Form::Unchanged},
    {DRDeviceMediaBlocksFreeKey, Form::Unchanged},
    {DRDeviceMediaBlocksOverwritableKey, Form::Unchanged},
    {DRDeviceMediaBlocksUsedKey, Form::Unchanged},
    {DRDeviceMediaClassKey, Form::Label},
    {DRDeviceMediaFreeSpaceKey, Form::Text},
    {DRDeviceMediaIsAppendableKey, Form::YesNoUnderLabel},
    {DRDeviceMediaIsBlankKey, Form::YesNoUnderLabel},
    {DRDeviceMediaIsErasableKey, Form::YesNoUnderLabel},
    {DRDeviceMediaIsOverwritableKey, Form::YesNo},
    {DRDeviceMediaIsReservedKey, Form::YesNoUnderLabel},
    {DRDeviceMediaOverwritableSpaceKey, Form::Text},
    {DRDeviceMediaSessionCountKey, Form::Unchanged},
    {DRDeviceMediaTrackCountKey, Form::Unchanged},
    {DRDeviceMediaTypeKey, Form::Label},
    {DRDeviceMediaUsedSpaceKey, Form::Text},
}};

constexpr std::array<DeviceStatus::Row, 10> DeviceStatus::Row::ofTrack{{
    {DRBlockSizeKey, Form::Unchanged},
    {DRBlockTypeKey, Form::Unchanged},
    {DRFreeBlocksKey, Form::Unchanged},
    {DRSessionFormatKey, Form::Unchanged},
    {DRSessionNumberKey, Form::Unchanged},
    {DRTrackIsEmptyKey, Form::YesNo},
    {DRTrackLengthKey, Form::Unchanged},
    {DRTrackNumberKey, Form::Unchanged},
    {DRTrackStartAddressKey, Form::Unchanged},
    {DRTrackTypeKey, Form::LocalizedLabel},
}};

DeviceStatus DeviceStatus::initWithDevice(const DRDevice &device)
{
    DeviceStatus status;
    if (!device.isNull())
        status.toDictionary(device);
    return status;
}

QString DeviceStatus::label(const QString &key, int tabs) const
{
    return QString(tabs, QLatin1Char('\t')) + localized(valueForKey(key));
}

QVariant DeviceStatus::valueOf(const Row &row, const QString &label,
                               const QVariantMap &properties) const
{
    QVariant value = properties.value(row.key);
    if (row.form == Row::Form::YesNo)
        return localizedYesNo(value.toBool());
    if (row.form == Row::Form::YesNoUnderLabel)
        return localizedYesNo(properties.value(label).toBool());
    if (!value.isValid() || row.form == Row::Form::Unchanged)
        return value;
    if (row.form == Row::Form::Text)
        return displayText(value);
    const QString known = valueForKey(value.toString());
    return row.form == Row::Form::Label ? known : localized(known);
}

void DeviceStatus::addRows(std::span<const Row> rows, int tabs, const QVariantMap &properties)
{
    for (const Row &row : rows) {
        const QString rowLabel = label(row.key, tabs);
        addRow(rowLabel, valueOf(row, rowLabel, properties));
    }
}

void DeviceStatus::toDictionary(const DRDevice &device)
{
    clearRows();
    const QVariantMap status = device.status(); // in the order of its keys, as the rows are
    for (auto it = status.cbegin(); it != status.cend(); ++it) {
        if (it.key() == DRDeviceMediaInfoKey)
            addMedium(it.value().toMap());
        const auto *row = std::ranges::find(Row::ofDevice, it.key(), &Row::key);
        if (row != Row::ofDevice.end())
            addRows({row, 1}, 0, status);
    }
}

void DeviceStatus::addMedium(const QVariantMap &medium)
{
    addRow(label(DRDeviceMediaInfoKey), QString());
    QStringList speeds;
    for (const QVariant &speed : medium.value(DRDeviceBurnSpeedsKey).toList())
        speeds.append(displayText(speed));
    addRow(label(DRDeviceBurnSpeedsKey, 1), speeds.join(QLatin1Char(',')));
    addRows(Row::ofMedium, 1, medium);
    addTracks(medium);
}

void DeviceStatus::addTracks(const QVariantMap &medium)
{
    // The heading's own label is looked up once more, so that the table may replace the value's
    // key; the list keeps the heading itself.
    const QString heading = label(DRDeviceTrackInfoKey, 1);
    m_sortedKeys->append(heading);
    m_dict->insert(valueForKey(heading), QString());

    const QVariantMap tracks = medium.value(DRDeviceTrackInfoKey).toMap();
    for (const QVariant &reference : medium.value(DRDeviceTrackRefsKey).toList()) {
        const QString name = reference.toString();
        addRow(label(DRDeviceTrackRefsKey, 2), name);
        addRows(Row::ofTrack, 3, tracks.value(name).toMap());
    }
}
