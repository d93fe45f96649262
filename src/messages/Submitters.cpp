#include "Submitters.h"

QString Submitters::Submitter::nameAndCompany() const
{
    return name + u' ' + company;
}

Submitters::Submitter Submitters::submitter(const QString &userID)
{
    const auto known = m_submitters.constFind(userID);
    if (known != m_submitters.cend())
        return *known;
    return *m_submitters.insert(userID, lookUp(userID));
}

Submitters::Submitter Submitters::lookUp(const QString &userID) const
{
    const std::optional<UserxJson> user = m_blSyncUser.getJson(userID);
    if (!user)
        return {};
    const std::optional<CompanyJson> company = m_blSyncCompany.getJson(user->CompanyID);
    return {user->FirstName + u' ' + user->LastName, company ? company->Namex : QString()};
}
