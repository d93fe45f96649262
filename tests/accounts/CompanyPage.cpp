#include "CompanyPage.h"

#include "RecordingServer.h"

void CompanyPage::makeNew()
{
    preferService(m_service.port(), QStringLiteral("secret"));
    CompanyJson root = sample(QStringLiteral("root"));
    root.Email = QStringLiteral("root");
    if (!BLSyncCompany().remove(QStringLiteral("1=1"))
        || !BLSyncUserx().remove(QStringLiteral("1=1")) || !BLSyncCompany().insert(root))
        qFatal("the service cannot be emptied");
    signIn("root", stored("root").ID);
    m_page.reset(CompanyViewController::getViewController());
}

CompanyJson CompanyPage::sample(const QString &name, const QString &registered)
{
    CompanyJson company;
    company.Email = name + QStringLiteral("@example.com");
    company.RescueEmail = QStringLiteral("rescue@example.com");
    company.Namex = name;
    company.Industry = QStringLiteral("Technology");
    company.FirstName = QStringLiteral("Anna");
    company.LastName = QStringLiteral("O'Neil");
    company.Title = QStringLiteral("Mr.");
    company.JobTitle = QStringLiteral("CTO");
    company.BusinessContinent = QStringLiteral("Asia Pacific");
    company.Country = QStringLiteral("China");
    company.Tel = QStringLiteral("1");
    company.Mobile = QStringLiteral("2");
    company.WeChat = QStringLiteral("anna");
    company.Birthdate = QStringLiteral("5 March 1980");
    company.Answer1 = QStringLiteral("Rex");
    company.ReceiveAds = company.IsEnabled = QStringLiteral("1");
    company.RegisterTime = registered;
    return company;
}

CompanyJson CompanyPage::stored(const char *name)
{
    const auto rows =
        BLSyncCompany().select(QStringLiteral("Namex='") + QLatin1StringView(name) + u'\'');
    return rows ? CompanyJson::getJson(rows->first()) : CompanyJson();
}

UserxJson CompanyPage::userOf(const char *name, const QString &companyID)
{
    UserxJson user;
    user.Userx = QLatin1StringView(name);
    user.CompanyID = companyID;
    user.IsEnabled = QStringLiteral("1");
    return user;
}

void CompanyPage::signIn(const char *name, const QString &companyID)
{
    Session::setLoggedUserDict(userOf(name, companyID).toDictionary());
}

void CompanyPage::choose(const QString &popUp, int index) const
{
    auto *box = control<QComboBox>(popUp);
    box->setCurrentIndex(index);
    Q_EMIT box->activated(index);
}

void CompanyPage::choose(const char *popUp, const char *title) const
{
    choose(QLatin1StringView(popUp), control<QComboBox>(popUp)->findText(QLatin1StringView(title)));
}

bool CompanyPage::isReady(const char *name) const
{
    return QTest::qWaitFor([&] { return control<QWidget>(name)->isEnabled(); });
}

bool CompanyPage::show() const
{
    m_page->show();
    return QTest::qWaitForWindowActive(m_page.get()) && isReady("saveButton");
}

bool CompanyPage::openDirectory() const
{
    if (!show())
        return false;
    control<QTabWidget>("tabView")->setCurrentIndex(1);
    return isReady("pagePopUp");
}

QStringList CompanyPage::column(int column) const
{
    QStringList texts;
    const auto *table = control<QTableWidget>("table");
    for (int row = 0; row < table->rowCount(); ++row)
        texts.append(table->item(row, column)->text());
    return texts;
}

QDialog *CompanyPage::openPanel(int row) const
{
    auto *table = control<QTableWidget>("table");
    table->selectRow(row);
    QTest::keyClick(table, Qt::Key_Return);
    (void)QTest::qWaitFor([this] { return panel() != nullptr; });
    return panel();
}
