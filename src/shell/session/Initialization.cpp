#include "Initialization.h"

#include "DateTools.h"
#include "ServiceAddress.h"

namespace {

const QString rootName = QStringLiteral("root");

QString deploymentText(const char *key)
{
    return MiscTool::getConfigText(QLatin1StringView(key));
}

CompanyJson rootCompany()
{
    CompanyJson company;
    company.Email = rootName;
    company.RescueEmail = deploymentText("RootRescueEmail");
    company.FirstName = deploymentText("RootFirstName");
    company.LastName = deploymentText("RootLastName");
    company.Title = QStringLiteral("Mr.");
    company.Birthdate = deploymentText("RootBirthdate");
    company.Namex = QStringLiteral("Maplorn Ltd.");
    company.JobTitle = QStringLiteral("CTO");
    company.Tel = QStringLiteral("400-000-0000");
    company.Mobile = deploymentText("RootMobile");
    company.WeChat = QStringLiteral("maplorn");
    company.Industry = QStringLiteral("Technology");
    company.BusinessContinent = QStringLiteral("Asia Pacific");
    company.Country = QStringLiteral("China");
    company.Currency = QStringLiteral("CNY");
    company.Website = deploymentText("RootWebsite");
    company.Question1 =
        QStringLiteral("What is the first name of your best friend in high school?");
    company.Question2 = QStringLiteral("What was the model of your first car?");
    company.Question3 = QStringLiteral("What was the first name of your first boss?");
    company.Answer1 = deploymentText("RootAnswer1");
    company.Answer2 = deploymentText("RootAnswer2");
    company.Answer3 = deploymentText("RootAnswer3");
    company.ReceiveAds = QStringLiteral("1");
    company.RegisterTime = MiscTool::getServerNow();
    company.ExpireTime = MiscTool::getServerNowAfterOneYear();
    company.MaxUsers = QStringLiteral("1");
    company.IsEnabled = QStringLiteral("1");
    return company;
}

UserxJson rootUser(const CompanyJson &company)
{
    UserxJson user;
    user.CompanyID = company.ID;
    user.UserGroupID = QStringLiteral("0");
    user.ParentID = QStringLiteral("0");
    user.IsAdmin = QStringLiteral("1");
    user.Userx = rootName;
    user.Passwordx = QStringLiteral("kvex");
    user.FirstName = deploymentText("RootFirstName");
    user.LastName = deploymentText("RootLastName");
    user.IsEnabled = QStringLiteral("1");
    return user;
}

}

void Initialization::initCompany()
{
    if (m_blSyncCompany.select(QStringLiteral("Email='root'")))
        return;
    CompanyJson company = rootCompany();
    m_blSyncCompany.insert(company);
}

void Initialization::initRootUser()
{
    const auto companies = m_blSyncCompany.select(QStringLiteral("Email='root'"));
    if (!companies || m_blSyncUserx.select(QStringLiteral("Userx='root'")))
        return;
    UserxJson user = rootUser(CompanyJson::getJson(companies->first()));
    m_blSyncUserx.insert(user);
}

void Initialization::initAll()
{
    initCompany();
    initRootUser();
}
