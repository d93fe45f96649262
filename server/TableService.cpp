#include "TableService.h"

#include "Database.h"
#include "TextTools.h"
#include "WhereClause.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlError>

#include <algorithm>
#include <limits>
#include <optional>

namespace {

constexpr qsizetype longestReply = 64 << 20; // bytes: what the clients take

QString clock(const QDateTime &time)
{
    return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

// What a record's member means; null where it is no text or does not decode.
QString decoded(const QJsonValue &member, const QDateTime &now)
{
    const QString text = member.toString();
    if (!member.isString() || MiscTool::isDateTime(text))
        return text;
    QString value = MiscTool::decodeFromUTF8(text);
    if (!value.isNull())
        value = MiscTool::getDescapedString(value);
    if (value == QLatin1StringView("${SERVER_NOW}"))
        return clock(now);
    if (value == QLatin1StringView("${SERVER_NOW_AFTER_ONE_YEAR}"))
        return clock(now.addYears(1));
    return value;
}

// The columns that a record fills, padded times included, and their values.
struct Row
{
    QStringList columns;
    QVariantList values;
};

std::optional<Row> rowOf(const Table &table, const QJsonObject &record)
{
    const QDateTime now = QDateTime::currentDateTime();
    Row row;
    for (const QString &column : table.columns.sliced(1)) {
        const QString value = decoded(record.value(column), now);
        if (value.isNull())
            return std::nullopt;
        row.columns.append(column);
        row.values.append(value);
        if (Table::isTime(column)) {
            row.columns.append(Table::paddedColumn(column));
            row.values.append(Table::padded(value));
        }
    }
    return row;
}

// A record that lacks members is filled up.
bool insert(const Table &table, QJsonObject record)
{
    for (const QString &column : table.columns)
        if (!record.contains(column))
            record.insert(column, QString());
    const std::optional<Row> row = rowOf(table, record);
    if (!row)
        return false;
    const QStringList places(row->columns.size(), QStringLiteral("?"));
    return Database::forThisThread().run(
               QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                   .arg(table.name, row->columns.join(u','), places.join(u',')),
               row->values)
           != nullptr;
}

// One that lacks members would empty what the row holds, and is refused.
bool update(const Table &table, const QJsonObject &record)
{
    std::optional<Row> row = rowOf(table, record);
    bool isNumber = false;
    const qlonglong id = record.value(QLatin1StringView("ID")).toString().toLongLong(&isNumber);
    if (!row || !isNumber)
        return false;
    row->values.append(id);
    const QSqlQuery *query = Database::forThisThread().run(
        QStringLiteral("UPDATE %1 SET %2=? WHERE ID=?")
            .arg(table.name, row->columns.join(QStringLiteral("=?,"))),
        row->values);
    return query && query->numRowsAffected() > 0;
}

bool remove(const Table &table, const Condition &condition)
{
    return Database::forThisThread().run(
               QStringLiteral("DELETE FROM %1 WHERE %2").arg(table.name, condition.sql),
               condition.values)
           != nullptr;
}

QByteArray count(const Table &table, const Condition &condition)
{
    QSqlQuery *query = Database::forThisThread().run(
        QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2").arg(table.name, condition.sql),
        condition.values);
    if (!query || !query->next())
        return "false";
    return QByteArray::number(query->value(0).toLongLong());
}

// The number that a text of digits is; null for any other text.
std::optional<qint64> wholeNumber(const QString &text)
{
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber);
    return isNumber && std::ranges::all_of(text, isDigit) ? std::optional(number) : std::nullopt;
}

// The text of a member; empty without one, null where it is no text.
QString textOf(const QJsonObject &query, const char *name)
{
    const QJsonValue member = query.value(QLatin1StringView(name));
    return member.isUndefined() ? QStringLiteral("") : member.toString();
}

struct Page
{
    qint64 first;
    std::optional<qint64> rows; // null for all that follow
};

// 0 and 1 both mean the first row, others are zero-based; an empty step means all rows.
std::optional<Page> paging(const QJsonObject &query)
{
    const QString index = textOf(query, "Index");
    const QString step = textOf(query, "Step");
    if (index.isNull() || step.isNull())
        return std::nullopt;
    const std::optional<qint64> first = index.isEmpty() ? 0 : wholeNumber(index);
    const std::optional<qint64> rows = wholeNumber(step);
    if (!first || (!rows && !step.isEmpty()))
        return std::nullopt;
    return Page{*first == 1 ? 0 : *first, rows};
}

// The rows of a page are found by their IDs first, which an index can give without the rows that
// stand before them; all rows are read in one go.
QSqlQuery *runSelect(const Table &table, const Condition &condition, const Page &page)
{
    const QString columns = table.columns.join(u',');
    const QString wanted = condition.sql + condition.order + QStringLiteral(" LIMIT ? OFFSET ?");
    const QString sql =
        page.rows ? QStringLiteral("SELECT %1 FROM %2 WHERE ID IN (SELECT ID FROM %2 WHERE %3)%4")
                        .arg(columns, table.name, wanted, condition.order)
                  : QStringLiteral("SELECT %1 FROM %2 WHERE %3").arg(columns, table.name, wanted);
    return Database::forThisThread().run(
        sql,
        condition.values
            + QVariantList{page.rows.value_or(std::numeric_limits<qint64>::max()), page.first});
}

QByteArray select(const Table &table, const Condition &condition, const Page &page)
{
    QSqlQuery *query = runSelect(table, condition, page);
    if (!query)
        return "false";
    QByteArray rows;
    while (query->next()) {
        rows += rows.isEmpty() ? "{" : ",{";
        for (int i = 0; i < table.columns.size(); ++i) {
            rows += (i == 0 ? "\"" : ",\"") + table.columns.at(i).toLatin1() + "\":\""
                    + MiscTool::encode2UTF8(query->value(i).toString()).toLatin1() + '"';
        }
        rows += '}';
        if (rows.size() > longestReply) {
            qWarning().noquote() << "SELECT" << table.name + u':' << "more rows than a reply holds";
            return "false";
        }
    }
    if (query->lastError().isValid()) {
        qWarning().noquote() << "database:" << query->lastError().text();
        return "false";
    }
    return rows.isEmpty() ? QByteArray("false") : QByteArray("{\"Result\":[" + rows + "]}");
}

QByteArray truth(bool value)
{
    return value ? "true" : "false";
}

QByteArray answerTo(const Table &table, const QByteArray &operation, const QByteArray &body)
{
    static const QByteArrayList operations{"INSERT", "UPDATE", "DELETE", "GET_COUNT", "SELECT"};
    const QJsonDocument document = QJsonDocument::fromJson(body);
    if (!document.isObject() || !operations.contains(operation))
        return "false";
    const QJsonObject object = document.object();
    if (operation == "INSERT")
        return truth(insert(table, object));
    if (operation == "UPDATE")
        return truth(update(table, object));
    const Result<Condition> condition =
        parseWhereClause(object.value(QLatin1StringView("WhereClause")).toString(), table);
    if (!condition) {
        qWarning().noquote() << operation << table.name + u':' << "where-clause"
                             << condition.error();
        return "false";
    }
    if (operation == "DELETE")
        return truth(remove(table, condition.value()));
    if (operation == "GET_COUNT")
        return count(table, condition.value());
    const std::optional<Page> page = paging(object);
    return page ? select(table, condition.value(), *page) : "false";
}

}

QByteArray TableService::answer(const Table &table, const QByteArray &operation,
                                const QByteArray &body)
{
    const QByteArray result = answerTo(table, operation, body);
    Database::forThisThread().forgetValues();
    return result;
}
