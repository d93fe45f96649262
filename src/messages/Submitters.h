// The people who ask and answer, and their companies. Each is looked up once, until cleared: their
// names stand in many rows. Main thread; looking up calls the service.
#pragma once

#include "BLSync.h"

#include <QHash>

class Submitters
{
public:
    // "" each, where there is no such user or company.
    struct Submitter
    {
        QString name;
        QString company;

        [[nodiscard]] QString nameAndCompany() const;
    };

    [[nodiscard]] Submitter submitter(const QString &userID);
    void clear() { m_submitters.clear(); }

private:
    [[nodiscard]] Submitter lookUp(const QString &userID) const;

    BLSyncUserx m_blSyncUser;
    BLSyncCompany m_blSyncCompany;
    QHash<QString, Submitter> m_submitters; // by the user's ID
};
