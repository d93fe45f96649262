// Labelled rows about a device, in display order; the base of the classes that build them.
// Leading tabs of a label are its indentation. A snapshot; main thread.
#pragma once

#include <QStringList>
#include <QVariantMap>

#include <optional>

class DeviceRows
{
public:
    // The value of each label; a label without one has an empty value. Null before any rows were
    // built.
    [[nodiscard]] const std::optional<QVariantMap> &getDict() const { return m_dict; }

    // The labels, top to bottom; one may occur more than once. Null before any rows were built.
    [[nodiscard]] const std::optional<QStringList> &getSortedKeys() const { return m_sortedKeys; }

    // What is shown for a row's value: a number in its shortest decimal form, a DRMSF as its text.
    [[nodiscard]] static QString displayText(const QVariant &value);

protected:
    DeviceRows() = default;
    ~DeviceRows() = default;
    DeviceRows(const DeviceRows &) = default;
    DeviceRows &operator=(const DeviceRows &) = default;

    void clearRows();

    // An invalid value leaves the label without one, also where an earlier row gave it one.
    void addRow(const QString &label, const QVariant &value);

    std::optional<QVariantMap> m_dict;
    std::optional<QStringList> m_sortedKeys;
};
