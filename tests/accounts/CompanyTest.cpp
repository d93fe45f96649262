// The page of the companies, over the real service.
#include "AlertRecorder.h"
#include "BLSync.h"
#include "CompanyViewController.h"
#include "FileStore.h"
#include "RecordingServer.h"
#include "ServiceFixture.h"
#include "Session.h"
#include "WindowTestMain.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTableWidget>

namespace {

CompanyJson sampleCompany(const QString &name, const QString &registered = {})
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

// The company as it is stored.
CompanyJson stored(const QString &name)
{
    const auto rows = BLSyncCompany().select(QStringLiteral("Namex='") + name + u'\'');
    return rows ? CompanyJson::getJson(rows->first()) : CompanyJson();
}

QString insertUser(const QString &name, const QString &companyID)
{
    UserxJson user;
    user.Userx = name;
    user.CompanyID = companyID;
    user.IsEnabled = QStringLiteral("1");
    return BLSyncUserx().insert(user) ? name : QString();
}

void signIn(const QString &name, const QString &companyID)
{
    UserxJson user;
    user.Userx = name;
    user.CompanyID = companyID;
    Session::setLoggedUserDict(user.toDictionary());
}

// A check of the form: what it says, where the focus goes, and what makes it fail.
struct FormCheck
{
    const char *message;
    const char *informativeText;
    const char *control;
};
constexpr std::array formChecks{
    FormCheck{"Company can not be null.", "Please enter your company.", "nameField"},
    FormCheck{"Select Industry", "Please select which industry belonged to.", "industryPopUp"},
    FormCheck{"First Name can not be null.", "Please enter your first name.", "firstNameField"},
    FormCheck{"Last Name can not be null.", "Please enter your last name.", "lastNameField"},
    FormCheck{"Title can not be null.", "Please choose your title.", "titlePopUp"},
    FormCheck{"Job Title can not be null.", "Please enter your job title.", "jobTitleField"},
    FormCheck{"Select Business Continent", "Please select your Business Continent.",
              "businessContinent0PopUp"},
    FormCheck{"Select Your Country.", "Please select your country or territory.", "countryPopUp"},
    FormCheck{"Tel and Mobile can not be null at the same time.", "Please enter Tel or Mobile.",
              "telField"},
    FormCheck{"WeChat can not be null.", "Please enter your WeChat.", "wechatField"},
};

}

class CompanyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_service = std::make_unique<ServiceFixture>(); }
    void init();
    void cleanup();

    void checks_data();
    void checks();
    void ownProfileIsKept();
    void failedSaveTells();
    void countryBringsItsTexts();
    void paging_data();
    void paging();
    void clausesAsSent();
    void panelSwitchesUsers();
    void panelOfOwnCompany();
    void directoryIsForRoot();

private:
    template <typename Control>
    [[nodiscard]] Control *control(const QString &name) const
    {
        return m_page->findChild<Control *>(name);
    }
    template <typename Control>
    [[nodiscard]] Control *control(const char *name) const
    {
        return control<Control>(QLatin1StringView(name));
    }
    void click(const char *name) const
    {
        QTest::mouseClick(control<QWidget>(name), Qt::LeftButton);
    }
    // As a person chooses it.
    void choose(const QString &popUp, int index) const;
    void show();
    void openDirectory();
    // Waits for what the page asks the service.
    [[nodiscard]] bool isReady(const char *button) const;
    [[nodiscard]] QStringList column(int column) const;
    [[nodiscard]] QDialog *openPanel(int row) const;

    std::unique_ptr<ServiceFixture> m_service;
    std::unique_ptr<CompanyViewController> m_page;
};

void CompanyTest::init()
{
    preferService(m_service->port(), QStringLiteral("secret"));
    QVERIFY(BLSyncCompany().remove(QStringLiteral("1=1")));
    QVERIFY(BLSyncUserx().remove(QStringLiteral("1=1")));
    CompanyJson root = sampleCompany(QStringLiteral("root"));
    root.Email = QStringLiteral("root");
    QVERIFY(BLSyncCompany().insert(root));
    signIn(QStringLiteral("root"), stored(QStringLiteral("root")).ID);
    m_page.reset(CompanyViewController::getViewController());
}

void CompanyTest::cleanup()
{
    m_page.reset();
}

void CompanyTest::choose(const QString &popUp, int index) const
{
    auto *box = control<QComboBox>(popUp);
    box->setCurrentIndex(index);
    Q_EMIT box->activated(index);
}

bool CompanyTest::isReady(const char *button) const
{
    return QTest::qWaitFor([&] { return control<QWidget>(button)->isEnabled(); });
}

void CompanyTest::show()
{
    m_page->show();
    QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
    QVERIFY(isReady("saveButton"));
}

void CompanyTest::openDirectory()
{
    show();
    control<QTabWidget>("tabView")->setCurrentIndex(1);
    QVERIFY(isReady("pagePopUp"));
}

QStringList CompanyTest::column(int column) const
{
    QStringList texts;
    const auto *table = control<QTableWidget>("table");
    for (int row = 0; row < table->rowCount(); ++row)
        texts.append(table->item(row, column)->text());
    return texts;
}

QDialog *CompanyTest::openPanel(int row) const
{
    auto *table = control<QTableWidget>("table");
    table->selectRow(row);
    QTest::keyClick(table, Qt::Key_Return);
    (void)QTest::qWaitFor([this] { return control<QDialog>("profilePanel") != nullptr; });
    return control<QDialog>("profilePanel");
}

void CompanyTest::checks_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<QString>("suffix");
    for (int i = 0; i < static_cast<int>(formChecks.size()); ++i)
        for (const char *suffix : {"", "2"})
            QTest::addRow("%s %s", formChecks.at(static_cast<std::size_t>(i)).control, suffix)
                << i << QString::fromLatin1(suffix);
}

// Of several that fail the first is told.
void CompanyTest::checks()
{
    QFETCH(const int, first);
    QFETCH(const QString, suffix);
    const bool isPanel = !suffix.isEmpty();
    CompanyJson company = sampleCompany(QStringLiteral("one"));
    QVERIFY(BLSyncCompany().insert(company));
    if (isPanel) {
        openDirectory();
        QVERIFY(openPanel(0));
    } else {
        show();
    }
    for (std::size_t i = static_cast<std::size_t>(first); i < formChecks.size(); ++i) {
        const QString name = QLatin1StringView(formChecks.at(i).control) + suffix;
        if (auto *field = control<QLineEdit>(name))
            field->clear();
        else
            choose(name, 0);
        if (name.startsWith(QLatin1StringView("telField")))
            control<QLineEdit>(QStringLiteral("mobileField") + suffix)->clear();
    }
    const FormCheck &check = formChecks.at(static_cast<std::size_t>(first));
    AlertRecorder recorder;
    recorder.expect(QLatin1StringView(check.message), QLatin1StringView(check.informativeText));
    click(isPanel ? "saveButton2" : "saveButton");
    QTRY_VERIFY(recorder.isDone());
    auto *focused = control<QWidget>(QLatin1StringView(check.control) + suffix);
    QCOMPARE(focused->window()->focusWidget(), focused);
    QCOMPARE(stored(isPanel ? QStringLiteral("one") : QStringLiteral("root")).JobTitle,
             QStringLiteral("CTO"));
}

void CompanyTest::ownProfileIsKept()
{
    show();
    QVERIFY(control<QLineEdit>("emailField")->isReadOnly());
    QCOMPARE(control<QLineEdit>("lastNameField")->text(), QStringLiteral("O'Neil"));
    QCOMPARE(control<QDateEdit>("datePicker")->date(), QDate(1980, 3, 5));
    // Meanwhile the security questions are changed on another page.
    CompanyJson company = stored(QStringLiteral("root"));
    company.Answer1 = QStringLiteral("Bello");
    QVERIFY(BLSyncCompany().update(company));

    control<QLineEdit>("nameField")->setText(QStringLiteral("中文 & \"Söhne\""));
    control<QLineEdit>("skypeField")->setText(QStringLiteral("anna's"));
    choose(QStringLiteral("businessContinent0PopUp"),
           control<QComboBox>("businessContinent0PopUp")->findText(QStringLiteral("Europe")));
    QCOMPARE(control<QLineEdit>("telCallingCodeField")->text(), QStringLiteral("+86"));
    choose(QStringLiteral("countryPopUp"),
           control<QComboBox>("countryPopUp")->findText(QStringLiteral("France")));
    control<QCheckBox>("receiveAdsCB")->setChecked(false);
    AlertRecorder recorder;
    recorder.expect(QStringLiteral("Saved Successfully."),
                    QStringLiteral("Succeed to update company profile."));
    click("saveButton");
    QTRY_VERIFY(recorder.isDone());

    const CompanyJson changed = *BLSyncCompany().getJson(company.ID);
    company.Namex = QStringLiteral("中文 & \"Söhne\"");
    company.Skype = QStringLiteral("anna's");
    company.BusinessContinent = QStringLiteral("Europe");
    company.Country = QStringLiteral("France");
    company.Currency = QStringLiteral("EUR");
    company.Birthdate = QStringLiteral("1980-03-05");
    company.ReceiveAds = QStringLiteral("0");
    QCOMPARE(changed.getPropertyValues(), company.getPropertyValues());
}

void CompanyTest::failedSaveTells()
{
    show();
    const QString id = stored(QStringLiteral("root")).ID;
    QVERIFY(BLSyncCompany().deleteByID(id));
    AlertRecorder recorder;
    recorder.expect(QStringLiteral("Failed to save."), QStringLiteral("Please try again later."));
    click("saveButton");
    QTRY_VERIFY(recorder.isDone());
    QVERIFY(isReady("saveButton"));
}

void CompanyTest::countryBringsItsTexts()
{
    show();
    const auto text = [this](const char *field) { return control<QLineEdit>(field)->text(); };
    const auto *flag = control<QLabel>("imageView");
    QCOMPARE(text("telCallingCodeField") + text("mobileCallingCodeField") + text("currencyField"),
             QStringLiteral("+86+86CNY"));
    QVERIFY(!flag->pixmap(Qt::ReturnByValue).isNull());
    QCOMPARE(control<QLineEdit>("wechatField")->placeholderText(), QStringLiteral("Required"));
    auto *countries = control<QComboBox>("countryPopUp");
    QCOMPARE(control<QLabel>("countryCountLabel")->text(), QString::number(countries->count() - 1));
    choose(QStringLiteral("countryPopUp"), countries->findText(QStringLiteral("Japan")));
    QCOMPARE(text("telCallingCodeField") + text("currencyField"), QStringLiteral("+81JPY"));
    QVERIFY(control<QLineEdit>("wechatField")->placeholderText().isEmpty());
    choose(QStringLiteral("businessContinent0PopUp"), 0);
    QCOMPARE(control<QLabel>("countryCountLabel")->text(), QStringLiteral("0"));
    QVERIFY(countries->count() == 0 && flag->pixmap(Qt::ReturnByValue).isNull());
}

void CompanyTest::paging_data()
{
    QTest::addColumn<int>("companies");
    QTest::addColumn<QList<int>>("pages");
    QTest::newRow("none") << 0 << QList{0};
    QTest::newRow("one less") << 15 << QList{15};
    QTest::newRow("a whole page") << 16 << QList{16};
    QTest::newRow("one more") << 17 << QList{16, 1};
    QTest::newRow("three") << 33 << QList{16, 16, 1};
}

// Several register in the same second; the order is that of the times and not of their texts.
void CompanyTest::paging()
{
    QFETCH(const int, companies);
    QFETCH(const QList<int>, pages);
    QStringList newestFirst;
    for (int i = 0; i < companies; ++i) {
        CompanyJson company =
            sampleCompany(QString::number(i), QStringLiteral("2026-9-%1 8:0:0").arg(9 + i / 10));
        company.IsEnabled = QString::number(i % 2);
        QVERIFY(BLSyncCompany().insert(company));
        newestFirst.prepend(company.Namex);
    }
    openDirectory();
    QCOMPARE(control<QLabel>("pageLabel")->text(), QString::number(companies));
    QCOMPARE(control<QComboBox>("pagePopUp")->count(), pages.size());
    QStringList listed;
    for (int page = 0; page < pages.size(); ++page) {
        choose(QStringLiteral("pagePopUp"), page);
        QVERIFY(isReady("pagePopUp"));
        QCOMPARE(control<QComboBox>("pagePopUp")->currentText(), QString::number(page + 1));
        QCOMPARE(column(1).size(), pages.at(page));
        listed += column(1);
    }
    QCOMPARE(listed, newestFirst);
    if (companies == 0)
        return;
    QCOMPARE(column(0).last() + column(2).last() + column(3).last() + column(4).last(),
             QStringLiteral("✘Anna O'Neil2026-9-9 8:0:0China"));
}

void CompanyTest::clausesAsSent()
{
    RecordingServer server;
    server.setReply("33");
    openDirectory();
    auto bodies = [&, sent = server.requests().size() - 2]() mutable -> QByteArray {
        QByteArray all;
        for (; sent < server.requests().size(); ++sent) {
            const QByteArray request = server.requests().at(sent);
            all += request.mid(request.indexOf("operation=") + 10).split(' ').first()
                   + request.mid(request.indexOf("\r\n\r\n") + 4);
        }
        return all;
    };
    const auto count = [](const QByteArray &filter) -> QByteArray {
        return "GET_COUNT{\"WhereClause\":\"Email!='root'" + filter
               + " ORDER BY RegisterTime DESC\",\"Index\":\"0\",\"Step\":\"\"}";
    };
    const auto select = [](const QByteArray &filter, const QByteArray &index) -> QByteArray {
        return "SELECT{\"WhereClause\":\"Email!='root'" + filter
               + " ORDER BY RegisterTime DESC\",\"Index\":\"" + index + "\",\"Step\":\"16\"}";
    };
    QCOMPARE(bodies(), count("") + select("", "1"));
    for (const auto &[page, index] : {std::pair(1, "16"), std::pair(2, "32"), std::pair(0, "1")}) {
        choose(QStringLiteral("pagePopUp"), page);
        QVERIFY(isReady("pagePopUp"));
        QCOMPARE(bodies(), select("", index));
    }
    const auto filter = [&](const char *popUp, const char *title) {
        choose(QLatin1StringView(popUp),
               control<QComboBox>(popUp)->findText(QLatin1StringView(title)));
        return isReady("pagePopUp") ? bodies() : QByteArray();
    };
    const QByteArray africa = " AND BusinessContinent='Africa'";
    const QByteArray coast = africa + " AND Country='Ivory Coast'";
    QCOMPARE(filter("businessContinentPopUp", "Africa"), count(africa) + select(africa, "1"));
    QCOMPARE(filter("countrySelectPopUp", "Ivory Coast"), count(coast) + select(coast, "1"));
    // Another continent takes the country back.
    const QByteArray europe = " AND BusinessContinent='Europe'";
    QCOMPARE(filter("businessContinentPopUp", "Europe"), count(europe) + select(europe, "1"));
    QCOMPARE(filter("businessContinentPopUp", "Please choose"), count("") + select("", "1"));
}

void CompanyTest::panelSwitchesUsers()
{
    for (const char *name : {"one", "two"}) {
        CompanyJson company = sampleCompany(QLatin1StringView(name));
        QVERIFY(BLSyncCompany().insert(company));
    }
    const QString one = stored(QStringLiteral("one")).ID;
    QVERIFY(!insertUser(QStringLiteral("anna"), one).isEmpty());
    QVERIFY(!insertUser(QStringLiteral("o'neil"), one).isEmpty());
    QVERIFY(!insertUser(QStringLiteral("other"), stored(QStringLiteral("two")).ID).isEmpty());
    const QString picture = m_service->folder() + QStringLiteral("/logo.png");
    QImage image(400, 100, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(picture) && MiscTool::uploadFile({}, one, {}, {}, picture));

    openDirectory();
    for (const bool isOn : {false, true}) {
        QVERIFY(openPanel(1));
        QCOMPARE(control<QLineEdit>("nameField2")->text(), QStringLiteral("one"));
        QCOMPARE(control<QLabel>("pictureView2")->pixmap(Qt::ReturnByValue).size(), QSize(160, 40));
        auto *enabled = control<QCheckBox>("enabledCB2");
        QVERIFY(enabled->isEnabled());
        QCOMPARE(enabled->isChecked(), !isOn);
        enabled->click();
        control<QLineEdit>("websiteField2")->setText(QStringLiteral("example.com"));
        click("saveButton2");
        QTRY_VERIFY(!control<QDialog>("profilePanel"));
        QVERIFY(isReady("pagePopUp"));
        QCOMPARE(column(0), (QStringList{"✔︎", isOn ? "✔︎" : "✘"}));
        const QString clause = QStringLiteral("IsEnabled=1 AND CompanyID=") + one;
        QCOMPARE(BLSyncUserx().getCount(clause), isOn ? 2 : 0);
        QCOMPARE(BLSyncUserx().getCount(QStringLiteral("IsEnabled=1 AND Userx='other'")), 1);
    }
    QCOMPARE(stored(QStringLiteral("one")).Website, QStringLiteral("example.com"));

    // What cannot be stored stays in the panel.
    QVERIFY(openPanel(1));
    QVERIFY(BLSyncCompany().deleteByID(one));
    AlertRecorder recorder;
    recorder.expect(QStringLiteral("Failed to save."), QStringLiteral("Please try again later."));
    click("saveButton2");
    QTRY_VERIFY(recorder.isDone());
    QVERIFY(isReady("cancelButton2"));
    click("cancelButton2");
    QTRY_VERIFY(!control<QDialog>("profilePanel"));
}

void CompanyTest::panelOfOwnCompany()
{
    CompanyJson company = sampleCompany(QStringLiteral("one"));
    QVERIFY(BLSyncCompany().insert(company));
    signIn(QStringLiteral("root"), stored(QStringLiteral("one")).ID);
    openDirectory();
    QVERIFY(openPanel(0));
    QVERIFY(!control<QCheckBox>("enabledCB2")->isEnabled());
    QVERIFY(!control<QLabel>("pictureView2")->isVisible());
    QTest::keyClick(control<QWidget>("nameField2"), Qt::Key_Escape);
    QTRY_VERIFY(!control<QDialog>("profilePanel"));
}

void CompanyTest::directoryIsForRoot()
{
    CompanyJson company = sampleCompany(QStringLiteral("one"));
    QVERIFY(BLSyncCompany().insert(company));
    const auto *tabView = control<QTabWidget>("tabView");
    openDirectory();
    QCOMPARE(column(1), QStringList{"one"});
    for (const char *user : {"one", "Root", "root "}) {
        m_page->hide();
        signIn(QLatin1StringView(user), stored(QStringLiteral("one")).ID);
        show();
        QCOMPARE(tabView->count(), 1);
        QVERIFY(!control<QWidget>("table")->isVisible() && column(1).isEmpty());
        QTRY_COMPARE(control<QLineEdit>("nameField")->text(), QStringLiteral("one"));
    }
    Session::clear();
    m_page->hide();
    show();
    QVERIFY(tabView->count() == 1 && control<QLineEdit>("nameField")->text().isEmpty());
    signIn(QStringLiteral("root"), stored(QStringLiteral("root")).ID);
    m_page->hide();
    openDirectory();
    QCOMPARE(tabView->count(), 2);
    QTRY_COMPARE(column(1), QStringList{"one"});
}

MAPLORN_WINDOW_TEST_MAIN(CompanyTest)
#include "CompanyTest.moc"
