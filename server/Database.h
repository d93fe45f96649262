// The service's database: one connection per thread, the one place that knows which engine it is.
#pragma once

#include "Result.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariantList>

#include <unordered_map>

class Database
{
public:
    // Makes the folder, the file and what is missing of the schema. Once, before forThisThread.
    [[nodiscard]] static Result<> prepare(const QString &folder);

    // The connection of the thread that asks, which closes with the thread.
    [[nodiscard]] static Database &forThisThread();

    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;
    ~Database();

    // Runs a statement with its values, and keeps it prepared. Null, with a line in the log, where
    // it fails. Valid until the next call.
    [[nodiscard]] QSqlQuery *run(const QString &sql, const QVariantList &values = {});

    // Ends the last statement; it is kept prepared, but not what it was run with.
    void forgetValues();

private:
    Database();

    [[nodiscard]] Result<> open();
    [[nodiscard]] Result<> makeSchema();

    QString m_name;
    QSqlDatabase m_connection;
    QSqlQuery *m_last = nullptr;
    std::unordered_map<QString, QSqlQuery> m_prepared;
};
