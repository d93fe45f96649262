// The form of the profile in the page and in the panel, and who sees the directory.
#include "AlertRecorder.h"
#include "CompanyPage.h"
#include "WindowTestMain.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QLineEdit>

namespace {

const QString failed = QStringLiteral("Failed to save.");
const QString failedHelp = QStringLiteral("Please try again later.");

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

class CompanyProfileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_page.makeNew(); }
    void cleanup() { m_page.close(); }

    void checks_data();
    void checks();
    void ownProfileIsKept();
    void birthdates_data();
    void birthdates();
    void directoryIsForRoot();

private:
    CompanyPage m_page;
};

void CompanyProfileTest::checks_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<QString>("suffix");
    for (int i = 0; i < static_cast<int>(formChecks.size()); ++i)
        for (const char *suffix : {"", "2"})
            QTest::addRow("%s %s", formChecks.at(static_cast<std::size_t>(i)).control, suffix)
                << i << QString::fromLatin1(suffix);
}

// Of several that fail the first is told.
void CompanyProfileTest::checks()
{
    QFETCH(const int, first);
    QFETCH(const QString, suffix);
    const bool isPanel = !suffix.isEmpty();
    CompanyJson company = CompanyPage::sample(QStringLiteral("one"));
    QVERIFY(BLSyncCompany().insert(company));
    if (isPanel) {
        QVERIFY(m_page.openDirectory());
        QVERIFY(m_page.openPanel(0));
    } else {
        QVERIFY(m_page.show());
    }
    for (std::size_t i = static_cast<std::size_t>(first); i < formChecks.size(); ++i) {
        const QString name = QLatin1StringView(formChecks.at(i).control) + suffix;
        if (auto *field = m_page.control<QLineEdit>(name))
            field->clear();
        else
            m_page.choose(name, 0);
        if (name.startsWith(QLatin1StringView("telField")))
            m_page.control<QLineEdit>(QStringLiteral("mobileField") + suffix)->clear();
    }
    const FormCheck &check = formChecks.at(static_cast<std::size_t>(first));
    AlertRecorder recorder;
    recorder.expect(QLatin1StringView(check.message), QLatin1StringView(check.informativeText));
    m_page.click(isPanel ? "saveButton2" : "saveButton");
    QTRY_VERIFY(recorder.isDone());
    auto *focused = m_page.control<QWidget>(QLatin1StringView(check.control) + suffix);
    QCOMPARE(focused->window()->focusWidget(), focused);
    QCOMPARE(CompanyPage::stored(isPanel ? "one" : "root").JobTitle, QStringLiteral("CTO"));
}

void CompanyProfileTest::ownProfileIsKept()
{
    QVERIFY(m_page.show());
    QVERIFY(m_page.control<QLineEdit>("emailField")->isReadOnly());
    QCOMPARE(m_page.control<QLineEdit>("lastNameField")->text(), QStringLiteral("O'Neil"));
    QCOMPARE(m_page.control<QDateEdit>("datePicker")->date(), QDate(1980, 3, 5));
    // Meanwhile the security questions are changed on another page.
    CompanyJson company = CompanyPage::stored("root");
    company.Answer1 = QStringLiteral("Bello");
    QVERIFY(BLSyncCompany().update(company));

    m_page.control<QLineEdit>("nameField")->setText(QStringLiteral("中文 & \"Söhne\""));
    m_page.control<QLineEdit>("skypeField")->setText(QStringLiteral("anna's"));
    m_page.choose("businessContinent0PopUp", "Europe");
    QCOMPARE(m_page.control<QLineEdit>("telCallingCodeField")->text(), QStringLiteral("+86"));
    m_page.choose("countryPopUp", "France");
    m_page.control<QCheckBox>("receiveAdsCB")->setChecked(false);
    AlertRecorder recorder;
    recorder.expect(QStringLiteral("Saved Successfully."),
                    QStringLiteral("Succeed to update company profile."));
    m_page.click("saveButton");
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

    QVERIFY(m_page.isReady("saveButton") && BLSyncCompany().deleteByID(company.ID));
    recorder.expect(failed, failedHelp);
    m_page.click("saveButton");
    QTRY_VERIFY(recorder.isDone());
    QVERIFY(m_page.isReady("saveButton"));
}

void CompanyProfileTest::birthdates_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QDate>("chosen");
    QTest::addColumn<QString>("kept");
    QTest::newRow("readable") << "7.5.1990" << QDate() << "1990-05-07";
    QTest::newRow("missing") << "" << QDate() << "";
    QTest::newRow("unreadable") << "in May" << QDate() << "in May";
    QTest::newRow("chosen") << "in May" << QDate(1990, 5, 7) << "1990-05-07";
}

// Recovery compares it: a save must not make today's date of it.
void CompanyProfileTest::birthdates()
{
    QFETCH(const QString, stored);
    QFETCH(const QDate, chosen);
    CompanyJson company = CompanyPage::stored("root");
    company.Birthdate = stored;
    QVERIFY(BLSyncCompany().update(company));
    QVERIFY(m_page.show());
    if (chosen.isValid())
        m_page.control<QDateEdit>("datePicker")->setDate(chosen);
    AlertRecorder recorder;
    recorder.expect(QStringLiteral("Saved Successfully."),
                    QStringLiteral("Succeed to update company profile."));
    m_page.click("saveButton");
    QTRY_VERIFY(recorder.isDone());
    QTEST(CompanyPage::stored("root").Birthdate, "kept");
}

void CompanyProfileTest::directoryIsForRoot()
{
    CompanyJson company = CompanyPage::sample(QStringLiteral("one"));
    QVERIFY(BLSyncCompany().insert(company));
    const auto *tabView = m_page.control<QTabWidget>("tabView");
    QVERIFY(m_page.openDirectory());
    QCOMPARE(m_page.column(1), QStringList{"one"});
    for (const char *user : {"one", "Root", "root "}) {
        m_page.hide();
        CompanyPage::signIn(user, CompanyPage::stored("one").ID);
        QVERIFY(m_page.show());
        QCOMPARE(tabView->count(), 1);
        QVERIFY(!m_page.control<QWidget>("table")->isVisible() && m_page.column(1).isEmpty());
        QTRY_COMPARE(m_page.control<QLineEdit>("nameField")->text(), QStringLiteral("one"));
    }
    Session::clear();
    m_page.hide();
    QVERIFY(m_page.show());
    QVERIFY(tabView->count() == 1 && m_page.control<QLineEdit>("nameField")->text().isEmpty());
    CompanyPage::signIn("root", CompanyPage::stored("root").ID);
    m_page.hide();
    QVERIFY(m_page.openDirectory());
    QCOMPARE(tabView->count(), 2);
    QTRY_COMPARE(m_page.column(1), QStringList{"one"});
}

MAPLORN_WINDOW_TEST_MAIN(CompanyProfileTest)
#include "CompanyProfileTest.moc"
