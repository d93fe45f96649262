// The clients of the service's tables: one blocking call per operation. They hold no state; make
// one where it is needed. Main thread.
#pragma once

#include "Records.h"

#include <QUrl>

#include <optional>

class BLSyncAbstract
{
public:
    // Whether the service did it. An update finds its row by the record's ID.
    bool insert(AbstractJson &record) const;
    bool update(AbstractJson &record) const;
    // DELETE of the rows that the clause meets.
    bool remove(const QString &where) const;

    // Number of the rows that the clause meets; 0 also where the service does not tell.
    [[nodiscard]] qint64 getCount(const QString &where) const;

    // The rows that the clause meets, at least one; null where there are none or the call failed.
    // Index is the number of the first row, Step that of the rows; null leaves each to the service.
    [[nodiscard]] std::optional<QList<QVariantMap>>
    select(const QString &where, const QString &index = {}, const QString &step = {}) const;
    // The same; where the service says that there are none, an empty list.
    [[nodiscard]] std::optional<QList<QVariantMap>>
    selectAny(const QString &where, const QString &index = {}, const QString &step = {}) const;

    // Its name at the service: that of the class with "Service" for the "BLSync" before it.
    [[nodiscard]] QString getService() const;

    // The reply to the JSON text; null where none came.
    [[nodiscard]] static QString sendSyncRequest(const QString &json, const QUrl &url);

protected:
    explicit BLSyncAbstract(const char *className)
        : m_className(className)
    {
    }

private:
    const char *m_className;
};

template <typename Record>
class BLSyncTable : public BLSyncAbstract
{
public:
    bool deleteByID(const QString &id) const { return remove(QStringLiteral("ID=") + id); }

    // The row of that ID; null where there is none or the call failed.
    [[nodiscard]] std::optional<Record> getJson(const QString &id) const
    {
        const auto rows = select(QStringLiteral("ID=") + id);
        if (!rows)
            return std::nullopt;
        return Record::getJson(rows->first());
    }

protected:
    using BLSyncAbstract::BLSyncAbstract;
};

class BLSyncCompany : public BLSyncTable<CompanyJson>
{
public:
    BLSyncCompany()
        : BLSyncTable("BLSyncCompany")
    {
    }
};

class BLSyncUserx : public BLSyncTable<UserxJson>
{
public:
    BLSyncUserx()
        : BLSyncTable("BLSyncUserx")
    {
    }
};

class BLSyncUserGroup : public BLSyncTable<UserGroupJson>
{
public:
    BLSyncUserGroup()
        : BLSyncTable("BLSyncUserGroup")
    {
    }
};

class BLSyncFeedback : public BLSyncTable<FeedbackJson>
{
public:
    BLSyncFeedback()
        : BLSyncTable("BLSyncFeedback")
    {
    }
};

class BLSyncNotification : public BLSyncTable<NotificationJson>
{
public:
    BLSyncNotification()
        : BLSyncTable("BLSyncNotification")
    {
    }
};

class BLSyncNotificationReadStatus : public BLSyncTable<NotificationReadStatusJson>
{
public:
    BLSyncNotificationReadStatus()
        : BLSyncTable("BLSyncNotificationReadStatus")
    {
    }
};
