// A label table of the application: from the names of the recording service's keys and values to
// something to read. Read from its resource at the first look. Main thread.
#pragma once

#include <QVariantMap>

#include <optional>

class DeviceLabels
{
public:
    // The table ":/labels/<name>.plist"; a missing one is an empty one.
    explicit DeviceLabels(const QString &name)
        : m_name(name)
    {
    }

    // The key itself where the table has no entry.
    [[nodiscard]] QString valueForKey(const QString &key) const;

private:
    QString m_name;
    mutable std::optional<QVariantMap> m_table;
};

// "YES" or "NO" in the user's language.
[[nodiscard]] QString localizedYesNo(bool value);
