#include "DeviceRows.h"

#include "FormatTools.h"

QString DeviceRows::displayText(const QVariant &value)
{
    // QVariant's own text of 100000.0 is "1e+05".
    if (value.typeId() == QMetaType::Double)
        return MiscTool::shortestDecimal(value.toDouble());
    return value.toString();
}

void DeviceRows::clearRows()
{
    m_dict.emplace();
    m_sortedKeys.emplace();
}

void DeviceRows::addRow(const QString &label, const QVariant &value)
{
    m_sortedKeys->append(label);
    if (value.isValid())
        m_dict->insert(label, value);
    else
        m_dict->remove(label);
}
