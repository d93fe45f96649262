// The where-clauses of the clients. They are never pasted into SQL: what is understood becomes a
// condition with placeholders and the values for them; anything else is refused. Any thread.
#pragma once

#include "Result.h"
#include "Table.h"

#include <QVariantList>

struct Condition
{
    QString sql; // without WHERE
    QVariantList values;
    QString order; // " ORDER BY …"; by ID where the clause names nothing
};

// columns of that table, = != > < >= <= LIKE, quoted texts and numbers, AND before OR,
// parentheses, 1=1, ORDER BY column [ASC|DESC]. The client sends "%" as "~": in a LIKE pattern "~"
// is "%", in another text it means either. The error names the position and no literal, since
// literals hold passwords.
[[nodiscard]] Result<Condition> parseWhereClause(const QString &clause, const Table &table);
