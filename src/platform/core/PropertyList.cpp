#include "PropertyList.h"

#include <QDateTime>
#include <QFile>
#include <QSaveFile>

#include <cstdlib>
#include <limits>
#include <memory>
#include <plist/plist.h>

namespace {

using Node = std::unique_ptr<void, decltype(&plist_free)>;

// Seconds from 1970-01-01 to 2001-01-01, from which property lists count their dates.
constexpr qint64 secondsTo2001 = 978307200;
constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");
constexpr int microsecondsPerSecond = 1000000;

// A text that libplist allocated.
QString takeText(char *text)
{
    const QString result = QString::fromUtf8(text);
    std::free(text); // NOLINT: allocated by a C library
    return result;
}

QVariant toVariant(plist_t node);

QVariantMap toMap(plist_t node)
{
    QVariantMap map;
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    for (;;) {
        char *key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, iterator, &key, &item);
        if (!item)
            break;
        map.insert(takeText(key), toVariant(item));
    }
    std::free(iterator); // NOLINT: allocated by a C library
    return map;
}

QVariantList toList(plist_t node)
{
    QVariantList list;
    for (uint32_t i = 0; i < plist_array_get_size(node); ++i)
        list.append(toVariant(plist_array_get_item(node, i)));
    return list;
}

QVariant toScalar(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return value != 0;
    }
    case PLIST_UINT: {
        uint64_t value = 0;
        plist_get_uint_val(node, &value);
        return static_cast<qint64>(value);
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return value;
    }
    case PLIST_DATE: {
        int32_t seconds = 0;
        int32_t microseconds = 0;
        plist_get_date_val(node, &seconds, &microseconds);
        return QDateTime::fromSecsSinceEpoch(secondsTo2001 + seconds, Qt::UTC);
    }
    case PLIST_DATA: {
        uint64_t length = 0;
        const char *data = plist_get_data_ptr(node, &length);
        return QByteArray(data, static_cast<qsizetype>(length));
    }
    case PLIST_STRING: {
        char *text = nullptr;
        plist_get_string_val(node, &text);
        return takeText(text);
    }
    default:
        return {};
    }
}

QVariant toVariant(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_DICT:
        return toMap(node);
    case PLIST_ARRAY:
        return toList(node);
    default:
        return toScalar(node);
    }
}

plist_t toNode(const QVariant &value);

plist_t fromMap(const QVariantMap &map)
{
    plist_t node = plist_new_dict();
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        plist_dict_set_item(node, it.key().toUtf8().constData(), toNode(it.value()));
    return node;
}

plist_t fromList(const QVariantList &list)
{
    plist_t node = plist_new_array();
    for (const QVariant &item : list)
        plist_array_append_item(node, toNode(item));
    return node;
}

plist_t toNode(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QVariantMap:
        return fromMap(value.toMap());
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return fromList(value.toList());
    case QMetaType::Bool:
        return plist_new_bool(value.toBool() ? 1 : 0);
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return plist_new_uint(value.toULongLong());
    case QMetaType::Float:
    case QMetaType::Double:
        return plist_new_real(value.toDouble());
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return plist_new_data(bytes.constData(), static_cast<uint64_t>(bytes.size()));
    }
    case QMetaType::QDateTime: {
        const QDateTime time = value.toDateTime();
        const int microseconds = time.time().msec() * (microsecondsPerSecond / 1000);
        return plist_new_date(static_cast<int32_t>(time.toSecsSinceEpoch() - secondsTo2001),
                              microseconds);
    }
    default:
        return plist_new_string(value.toString().toUtf8().constData());
    }
}

}

Result<QVariant> PropertyList::read(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Failure{QStringLiteral("%1: %2").arg(path, file.errorString())};
    QByteArray bytes = file.readAll();
    if (bytes.startsWith(byteOrderMark)) // libplist takes it for neither form
        bytes.remove(0, byteOrderMark.size());
    plist_t raw = nullptr;
    if (bytes.size() <= std::numeric_limits<int>::max())
        plist_from_memory(bytes.constData(), static_cast<uint32_t>(bytes.size()), &raw);
    const Node node(raw, &plist_free);
    if (!node)
        return Failure{QStringLiteral("%1: not a property list").arg(path)};
    return toVariant(node.get());
}

QVariantMap PropertyList::readMap(const QString &path)
{
    const Result<QVariant> content = read(path);
    return content ? content.value().toMap() : QVariantMap();
}

Result<> PropertyList::write(const QString &path, const QVariant &value)
{
    const Node node(toNode(value), &plist_free);
    char *text = nullptr;
    uint32_t length = 0;
    plist_to_xml(node.get(), &text, &length);
    const std::unique_ptr<char, decltype(&plist_to_xml_free)> xml(text, &plist_to_xml_free);
    QSaveFile file(path);
    // Flushed apart, since commit() overlooks that what was kept in memory found no room on the
    // disk, and would put an empty list in the place of the old one.
    if (!xml || !file.open(QIODevice::WriteOnly) || file.write(xml.get(), length) != length
        || !file.flush() || !file.commit())
        return Failure{QStringLiteral("%1: %2").arg(path, file.errorString())};
    return Done{};
}
