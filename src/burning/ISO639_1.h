// The languages that CD-Text can name, by the name that people read. Loaded at first use. Main
// thread.
#pragma once

#include <QStringList>
#include <QVariantMap>

class ISO639_1
{
public:
    // All names, sorted.
    [[nodiscard]] QStringList allKeys();

    // The ISO 639-1 code of a name; empty for one that is not in the table.
    [[nodiscard]] QString valueForKey(const QString &name);

private:
    void load();

    QVariantMap m_table;
};
