#include "Companies.h"

#include "BLSync.h"

QVariantMap makeCompany(const QString &name, const QString &continent, const QString &country)
{
    CompanyJson company;
    company.Email = name;
    company.Namex = name.toUpper();
    company.BusinessContinent = continent;
    company.Country = country;
    if (!BLSyncCompany().insert(company))
        qFatal("no company");
    UserxJson user;
    user.CompanyID =
        idOf(BLSyncCompany().select(QStringLiteral("Email='") + name + u'\'')->first());
    user.Userx = name;
    user.FirstName = QStringLiteral("First");
    user.LastName = name;
    user.IsEnabled = QStringLiteral("1");
    if (!BLSyncUserx().insert(user))
        qFatal("no user");
    return BLSyncUserx().select(QStringLiteral("Userx='") + name + u'\'')->first();
}

QString idOf(const QVariantMap &row)
{
    return row.value(QStringLiteral("ID")).toString();
}
