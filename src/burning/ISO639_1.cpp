#include "ISO639_1.h"

#include "PropertyList.h"

void ISO639_1::load()
{
    if (m_table.isEmpty())
        m_table = PropertyList::readMap(QStringLiteral(":/burning/ISO639_1.plist"));
}

QStringList ISO639_1::allKeys()
{
    load();
    return m_table.keys();
}

QString ISO639_1::valueForKey(const QString &name)
{
    load();
    return m_table.value(name, QString()).toString();
}
