// The tables of the service: one per record type, ID assigned by the database, all else texts.
// Any thread.
#pragma once

#include <QStringList>

struct Table
{
    QString name;
    QStringList columns; // as the records name them, ID first

    // The column of that name, whatever its case; null without one.
    [[nodiscard]] QString column(const QString &wanted) const;

    // A time stands as it was sent beside a padded copy, by which it is compared and sorted.
    [[nodiscard]] static bool isTime(const QString &column);
    [[nodiscard]] static QString paddedColumn(const QString &column);
    // "2016-3-5 9:5:3" as "2016-03-05 09:05:03"; any other text as it is.
    [[nodiscard]] static QString padded(const QString &time);
};

namespace Tables {

[[nodiscard]] const QList<Table> &all();
// Null where there is no such table.
[[nodiscard]] const Table *find(const QString &name);

}
