#include "BLSync.h"

#include "Replies.h"
#include "ServiceAddress.h"
#include "ServiceCall.h"
#include "WhereClauseJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

// More than any page asks for.
constexpr qsizetype mostRows = 200'000;
constexpr qsizetype mostMembers = 8'000'000;

QString query(const QString &where, const QString &index = {}, const QString &step = {})
{
    WhereClauseJson clause;
    clause.WhereClause = where;
    clause.Index = index;
    clause.Step = step;
    return clause.toJsonStr();
}

}

bool BLSyncAbstract::insert(AbstractJson &record) const
{
    return MiscTool::toBOOL(sendSyncRequest(record.toJsonStr(), MiscTool::insertURL(getService())));
}

bool BLSyncAbstract::update(AbstractJson &record) const
{
    return MiscTool::toBOOL(sendSyncRequest(record.toJsonStr(), MiscTool::updateURL(getService())));
}

bool BLSyncAbstract::remove(const QString &where) const
{
    return MiscTool::toBOOL(sendSyncRequest(query(where), MiscTool::deleteURL(getService())));
}

qint64 BLSyncAbstract::getCount(const QString &where) const
{
    return MiscTool::leadingNumber(
        sendSyncRequest(query(where), MiscTool::getCountURL(getService())));
}

std::optional<QList<QVariantMap>> BLSyncAbstract::select(const QString &where, const QString &index,
                                                         const QString &step) const
{
    std::optional<QList<QVariantMap>> rows = selectAny(where, index, step);
    if (rows && rows->isEmpty())
        rows.reset();
    return rows;
}

std::optional<QList<QVariantMap>>
BLSyncAbstract::selectAny(const QString &where, const QString &index, const QString &step) const
{
    const QByteArray reply =
        sendSyncRequest(query(where, index, step), MiscTool::selectURL(getService())).toLatin1();
    QList<QVariantMap> rows;
    if (reply == "false")
        return rows;
    // A parsed row takes some fifty times the bytes of its text.
    if (reply.count('{') > mostRows || reply.count(',') > mostMembers)
        return std::nullopt;
    const QJsonValue result =
        QJsonDocument::fromJson(reply).object().value(QLatin1StringView("Result"));
    if (!result.isArray())
        return std::nullopt;
    for (const QJsonValue &row : result.toArray()) {
        if (!row.isObject())
            return std::nullopt;
        rows.append(row.toObject().toVariantMap());
    }
    return rows;
}

QString BLSyncAbstract::getService() const
{
    constexpr qsizetype prefixLength = sizeof("BLSync") - 1;
    return QString::fromLatin1(m_className).sliced(prefixLength) + QStringLiteral("Service");
}

// The service reads as many bytes as the text has UTF-16 units, and answers in ASCII.
QString BLSyncAbstract::sendSyncRequest(const QString &json, const QUrl &url)
{
    return MiscTool::replyText(
        ServiceCall::send(MiscTool::getURLRequest(url, json.toUtf8().left(json.size()))));
}
