#include "Table.h"

#include "Records.h"

#include <QRegularExpression>

#include <algorithm>

QString Table::column(const QString &wanted) const
{
    const auto found = std::ranges::find_if(columns, [&](const QString &known) {
        return known.compare(wanted, Qt::CaseInsensitive) == 0;
    });
    return found == columns.end() ? QString() : *found;
}

bool Table::isTime(const QString &column)
{
    return column.endsWith(QLatin1StringView("Time"));
}

QString Table::paddedColumn(const QString &column)
{
    return column + QStringLiteral("Padded");
}

QString Table::padded(const QString &time)
{
    static const QRegularExpression parts(QStringLiteral(
        "\\A(\\d{4})-(\\d{1,2})-(\\d{1,2})(?: (\\d{1,2}):(\\d{1,2}):(\\d{1,2}))?\\z"));
    const QRegularExpressionMatch match = parts.match(time);
    if (!match.hasMatch())
        return time;
    const auto part = [&](int i) { return match.captured(i).rightJustified(2, u'0'); };
    const QString date = match.captured(1) + u'-' + part(2) + u'-' + part(3);
    return match.captured(4).isEmpty() ? date
                                       : date + u' ' + part(4) + u':' + part(5) + u':' + part(6);
}

const QList<Table> &Tables::all()
{
    static const QList<Table> tables{
        {QStringLiteral("Company"), CompanyJson::fieldNames()},
        {QStringLiteral("Userx"), UserxJson::fieldNames()},
        {QStringLiteral("UserGroup"), UserGroupJson::fieldNames()},
        {QStringLiteral("Feedback"), FeedbackJson::fieldNames()},
        {QStringLiteral("Notification"), NotificationJson::fieldNames()},
        {QStringLiteral("NotificationReadStatus"), NotificationReadStatusJson::fieldNames()},
    };
    return tables;
}

const Table *Tables::find(const QString &name)
{
    const auto found =
        std::ranges::find_if(all(), [&](const Table &table) { return table.name == name; });
    return found == all().end() ? nullptr : &*found;
}
