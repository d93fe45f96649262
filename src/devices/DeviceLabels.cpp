#include "DeviceLabels.h"

#include "Localized.h"
#include "PropertyList.h"

QString DeviceLabels::valueForKey(const QString &key) const
{
    if (!m_table)
        m_table = PropertyList::readMap(QStringLiteral(":/labels/%1.plist").arg(m_name));
    return m_table->value(key, key).toString();
}

QString localizedYesNo(bool value)
{
    return value ? localized("Localizable", "YES") : localized("Localizable", "NO");
}
