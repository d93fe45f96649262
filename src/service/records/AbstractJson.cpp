#include "AbstractJson.h"

#include "TextTools.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

QString onTheWire(const QString &value)
{
    return MiscTool::isDateTime(value) ? value : MiscTool::encode2UTF8(value);
}

// The second descaping turns the "&#39;" that percent-decoding brought back into "'".
QString fromTheWire(const QVariant &value)
{
    if (value.typeId() != QMetaType::QString)
        return {};
    const QString decoded = MiscTool::decodeFromUTF8(value.toString());
    return decoded.isNull() ? decoded : MiscTool::getDescapedString(decoded);
}

}

QStringList AbstractJson::getPropertyValues() const
{
    QStringList values;
    for (qsizetype i = 0; i < getProperties().size(); ++i)
        values.append(field(i).isNull() ? QStringLiteral("") : field(i));
    return values;
}

QVariantMap AbstractJson::toDictionary() const
{
    QVariantMap map;
    const QStringList names = getProperties();
    const QStringList values = getPropertyValues();
    for (qsizetype i = 0; i < names.size(); ++i)
        map.insert(names.at(i), values.at(i));
    return map;
}

QString AbstractJson::toJsonStr()
{
    QStringList members;
    const QStringList names = getProperties();
    const QStringList values = getPropertyValues();
    for (qsizetype i = 0; i < names.size(); ++i)
        members.append(u'"' + names.at(i) + QStringLiteral("\":\"") + onTheWire(values.at(i))
                       + u'"');
    return u'{' + members.join(u',') + u'}';
}

void AbstractJson::toJson(const QByteArray &jsonObj)
{
    toJson(QJsonDocument::fromJson(jsonObj).object().toVariantMap());
}

void AbstractJson::toJson(const QVariantMap &dict)
{
    const QStringList names = getProperties();
    for (qsizetype i = 0; i < names.size(); ++i)
        field(i) = fromTheWire(dict.value(names.at(i)));
}
