#include "Database.h"

#include "Table.h"

#include <QDir>
#include <QHash>
#include <QSqlError>

#include <atomic>
#include <memory>

namespace {

constexpr int mostPrepared = 200; // statements kept; clients send a few dozen kinds

QString databaseFile;

// What the clauses of the pages look for: columns of one index, separated by commas. Those of the
// directory of companies hold all that its filters and its order ask for, so that of the rows only
// those are read that are returned.
const QHash<QString, QStringList> &indexes()
{
    static const QHash<QString, QStringList> columns{
        {QStringLiteral("Company"),
         {QStringLiteral("Email"), QStringLiteral("RescueEmail"),
          QStringLiteral("RegisterTimePadded,ID,Email"),
          QStringLiteral("BusinessContinent,RegisterTimePadded,ID,Email,Country"),
          QStringLiteral("Country,RegisterTimePadded,ID,Email,BusinessContinent")}},
        {QStringLiteral("Userx"), {QStringLiteral("CompanyID")}},
        {QStringLiteral("UserGroup"), {QStringLiteral("CompanyID")}},
        {QStringLiteral("Feedback"),
         {QStringLiteral("UserID"), QStringLiteral("AskTimePadded"),
          QStringLiteral("AnswerTimePadded")}},
        {QStringLiteral("Notification"),
         {QStringLiteral("BusinessContinent"), QStringLiteral("Country"),
          QStringLiteral("IssuedTimePadded")}},
        {QStringLiteral("NotificationReadStatus"),
         {QStringLiteral("NotificationID"), QStringLiteral("UserxID")}},
    };
    return columns;
}

QString tableSql(const Table &table)
{
    QStringList columns{QStringLiteral("ID INTEGER PRIMARY KEY AUTOINCREMENT")};
    for (const QString &column : table.columns.sliced(1)) {
        columns.append(column + QStringLiteral(" TEXT NOT NULL DEFAULT ''"));
        if (Table::isTime(column))
            columns.append(Table::paddedColumn(column)
                           + QStringLiteral(" TEXT NOT NULL DEFAULT ''"));
    }
    return QStringLiteral("CREATE TABLE IF NOT EXISTS %1 (%2)")
        .arg(table.name, columns.join(QStringLiteral(", ")));
}

QString indexSql(const Table &table, const QString &columns, const char *kind = "INDEX")
{
    return QStringLiteral("CREATE %1 IF NOT EXISTS %2_%3 ON %2 (%4)")
        .arg(QLatin1StringView(kind), table.name, QString(columns).replace(u',', u'_'), columns);
}

QStringList schema()
{
    QStringList statements;
    for (const Table &table : Tables::all()) {
        statements.append(tableSql(table));
        for (const QString &columns : indexes().value(table.name))
            statements.append(indexSql(table, columns));
        if (table.name == QLatin1StringView("Userx"))
            statements.append(indexSql(table, QStringLiteral("Userx"), "UNIQUE INDEX"));
    }
    return statements;
}

}

Result<> Database::prepare(const QString &folder)
{
    if (!QDir().mkpath(folder))
        return Failure{QStringLiteral("%1: the folder cannot be made").arg(folder)};
    databaseFile = QDir(folder).absoluteFilePath(QStringLiteral("maplorn-disc.sqlite"));
    Database database;
    if (const Result<> opened = database.open(); !opened)
        return opened;
    return database.makeSchema();
}

Database &Database::forThisThread()
{
    thread_local const std::unique_ptr<Database> database(new Database);
    return *database;
}

Database::Database()
{
    static std::atomic_int last = 0;
    m_name = QString::number(++last);
    m_connection = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
    m_connection.setDatabaseName(databaseFile);
    m_connection.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=10000"));
}

Database::~Database()
{
    m_prepared.clear();
    m_connection = {};
    QSqlDatabase::removeDatabase(m_name);
}

Result<> Database::open()
{
    if (m_connection.isOpen())
        return Done{};
    if (!m_connection.open())
        return Failure{QStringLiteral("%1: %2").arg(databaseFile, m_connection.lastError().text())};
    for (const char *pragma : {"PRAGMA journal_mode=WAL", "PRAGMA synchronous=FULL"}) {
        QSqlQuery query(m_connection);
        if (!query.exec(QLatin1StringView(pragma)))
            return Failure{QStringLiteral("%1: %2").arg(databaseFile, query.lastError().text())};
    }
    return Done{};
}

Result<> Database::makeSchema()
{
    m_connection.transaction(); // the disk is waited for once
    for (const QString &statement : schema()) {
        QSqlQuery query(m_connection);
        if (query.exec(statement))
            continue;
        const QString reason = query.lastError().text();
        m_connection.rollback();
        return Failure{QStringLiteral("%1: %2").arg(databaseFile, reason)};
    }
    if (!m_connection.commit())
        return Failure{QStringLiteral("%1: %2").arg(databaseFile, m_connection.lastError().text())};
    return Done{};
}

QSqlQuery *Database::run(const QString &sql, const QVariantList &values)
{
    if (const Result<> opened = open(); !opened) {
        qWarning().noquote() << opened.error();
        return nullptr;
    }
    auto prepared = m_prepared.find(sql);
    if (prepared == m_prepared.end()) {
        if (m_prepared.size() == mostPrepared) {
            m_last = nullptr;
            m_prepared.clear();
        }
        QSqlQuery query(m_connection);
        query.setForwardOnly(true);
        if (!query.prepare(sql)) {
            qWarning().noquote() << "database:" << query.lastError().text();
            return nullptr;
        }
        prepared = m_prepared.emplace(sql, std::move(query)).first;
    }
    QSqlQuery &query = prepared->second;
    m_last = &query;
    for (int i = 0; i < values.size(); ++i)
        query.bindValue(i, values.at(i));
    if (query.exec())
        return &query;
    qWarning().noquote() << "database:" << query.lastError().text();
    return nullptr;
}

void Database::forgetValues()
{
    if (!m_last)
        return;
    m_last->finish();
    const auto count = static_cast<int>(m_last->boundValues().size());
    for (int i = 0; i < count; ++i)
        m_last->bindValue(i, QVariant());
    m_last = nullptr;
}
