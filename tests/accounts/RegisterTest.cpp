// The sheet in which a customer registers, over the real service and one that fails.
#include "AccountForm.h"
#include "LoginViewController.h"
#include "Preferences.h"
#include "RecordingServer.h"
#include "RegisterViewController.h"
#include "ServiceCall.h"
#include "ServiceFixture.h"
#include "Session.h"
#include "WindowTestMain.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>

namespace {

const QString weak = QStringLiteral("Password strength is low.");
const QString weakHelp =
    QStringLiteral("Password length should be more than 6,and contains lower case letter,upper "
                   "case letter and digit.");

const QList<CheckCase> &detailCases()
{
    static const QList<CheckCase> cases =
        QList<CheckCase>{
            {"Email can not be null.",
             "Please enter your email.",
             "emailField",
             {{"emailField", "me.example.com"}}},
            {"Email is invalid.",
             "Please enter right format email.",
             "emailField",
             {{"emailField", "me@example"}}},
            {"Email is invalid.",
             "Please enter right format email.",
             "emailField",
             {{"emailField", "taken@example.com"}}},
            {"The email exists",
             "Please enter another email.",
             "emailField",
             {{"emailField", "rescue@example.com"}}},
            {"The email exists",
             "Please enter another email.",
             "emailField",
             {{"emailField", "user@example.com"}}},
            {"The email exists",
             "Please enter another email.",
             "emailField",
             {{"emailField", "new@example.com"}}},
            {"Password can not be null.",
             "Please enter your password.",
             "passwordxField",
             {{"passwordxField", "Abc123"}}},
            {"Password length cannot be less than 6",
             "Please update your password.",
             "passwordxField",
             {{"passwordxField", "abcdefg"}}},
            {weak, weakHelp, "passwordxField", {{"passwordxField", "Abcdef1!"}}}, // too strong
            {weak, weakHelp, "passwordxField", {{"passwordxField", "Abcdef1"}}},
            {"Fail to verify password.",
             "Please check your password.",
             "verifyPasswordxField",
             {{"verifyPasswordxField", "Abcdef1"}}},
        }
        + questionCases(false)
        + QList<CheckCase>{
            {"Rescue Email can not be null.",
             "Please enter the rescue email.",
             "rescueEmailField",
             {{"rescueEmailField", "new.example.com"}}},
            {"Rescue Email is invalid.",
             "Please enter right format email.",
             "rescueEmailField",
             {{"rescueEmailField", "taken@example.com"}}},
            {"The rescue email exists",
             "Please enter another rescue email.",
             "rescueEmailField",
             {{"rescueEmailField", "new@example.com"}}},
            {"The rescue email cannot be same as email.",
             "Please enter another rescue email.",
             "rescueEmailField",
             {{"rescueEmailField", "other@example.com"}}},
        };
    return cases;
}

const QList<CheckCase> &moreDetailCases()
{
    static const QList<CheckCase> cases{
        {"First Name can not be null.",
         "Please enter your first name.",
         "firstNameField",
         {{"firstNameField", "Anna"}}},
        {"Last Name can not be null.",
         "Please enter your last name.",
         "lastNameField",
         {{"lastNameField", "O'Neil"}}},
        {"Title can not be null.",
         "Please choose the title.",
         "titlePopUpButton",
         {{"titlePopUpButton", 3}}},
        {"Company can not be null.",
         "Please enter your company.",
         "companyField",
         {{"companyField", "Müller & \"Söhne\""}}},
        {"Industry can not be null.",
         "Please select the industry.",
         "industryPopUpButton",
         {{"industryPopUpButton", 1}}},
        {"Job Title can not be null.",
         "Please enter your job title.",
         "jobTitleField",
         {{"jobTitleField", "CEO"}}},
        {"Business Continent can not be null.",
         "Please select the Business Continent.",
         "businessContinentPopUpButton",
         {{"businessContinentPopUpButton", 3}}},
        {"Country/Territory can not be null.",
         "Please select the country/territory.",
         "countryPopUpButton",
         {{"countryPopUpButton", "China"}}},
        {"Tel and mobile can not be null at the same time.",
         "Please enter telephone or mobile.",
         "mobileField",
         {{"mobileField", "12-34"}}},
        {"WeChat can not be null.",
         "Please enter your WeChat.",
         "weChatField",
         {{"weChatField", "anna"}}},
    };
    return cases;
}

}

class RegisterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void terms();
    void detailChecks_data() { addCheckColumns(detailCases()); }
    void detailChecks();
    void moreDetailChecks_data() { addCheckColumns(moreDetailCases()); }
    void moreDetailChecks();
    void countryFields();
    void narrowForm();
    void registers();
    void failures_data();
    void failures();
    void closesButNotWhileWaiting();

private:
    void fillDetails(const Entries &more = {}) const
    {
        m_form->mendUpTo(detailCases(), detailCases().size());
        m_form->fill(more);
        m_form->click("continueButtonOfDetailItem");
        QTRY_VERIFY(m_form->isShown("firstNameField"));
        QTRY_COMPARE(m_page->focusWidget(), m_form->control("firstNameField"));
    }

    std::unique_ptr<ServiceFixture> m_service;
    std::unique_ptr<LoginViewController> m_login;
    QPointer<RegisterViewController> m_page; // the sign-in's
    std::unique_ptr<AccountForm> m_form;
};

void RegisterTest::initTestCase()
{
    m_service = std::make_unique<ServiceFixture>();
    CompanyJson company;
    company.Email = QStringLiteral("taken@example.com");
    company.RescueEmail = QStringLiteral("rescue@example.com");
    QVERIFY(!makeCompany(company).isEmpty());
    makeUser(QStringLiteral("user@example.com"));
}

// Up to the page with the first checks.
void RegisterTest::init()
{
    Preferences::remove(QStringLiteral("User"));
    preferService(m_service->port(), QStringLiteral("secret"));
    m_login.reset(LoginViewController::getViewController(nullptr));
    m_login->open();
    QTest::mouseClick(m_login->findChild<QWidget *>("registerButton"), Qt::LeftButton);
    m_page = m_login->findChild<RegisterViewController *>();
    QVERIFY(m_page && m_page->windowModality() == Qt::WindowModal);
    m_form = std::make_unique<AccountForm>(m_page);
    m_form->click("continueButtonOfWelcomeItem");
    m_form->fill({{"agreeCB", true}});
    m_form->click("agreeButtonOfTermsAndConditiuonsItem");
    QCOMPARE(m_page->focusWidget(), m_form->control("emailField"));
}

void RegisterTest::terms()
{
    m_form->fill({{"emailField", "kept"}});
    m_form->click("goBackButtonOfDetailItem");
    auto *terms = m_form->control<QPlainTextEdit>("termsAndConditiuonsTextView");
    QVERIFY(terms->isVisible() && terms->isReadOnly() && !terms->toPlainText().isEmpty());
    m_form->fill({{"agreeCB", false}});
    m_form->click("agreeButtonOfTermsAndConditiuonsItem");
    QVERIFY(!m_form->isShown("emailField"));
    m_form->click("goBackButtonOfTermsAndConditionsItem");
    QTest::keyClick(m_page, Qt::Key_Return);
    QVERIFY(terms->isVisible());
    m_form->fill({{"agreeCB", true}});
    QTest::keyClick(m_page, Qt::Key_Return);
    QCOMPARE(m_form->text("emailField"), QStringLiteral("kept"));
    QVERIFY(m_form->isShown("emailField"));
}

void RegisterTest::detailChecks()
{
    QFETCH(const int, row);
    m_form->fail(detailCases(), row, "continueButtonOfDetailItem");
    QVERIFY(m_form->isShown("emailField") && m_form->control("emailField")->isEnabled());
}

void RegisterTest::moreDetailChecks()
{
    QFETCH(const int, row);
    fillDetails();
    m_form->fail(moreDetailCases(), row, "createButtonOfMoreDetailItem");
}

void RegisterTest::countryFields()
{
    const auto *countries = m_form->control<QComboBox>("countryPopUpButton");
    const auto *flag = m_form->control<QLabel>("imageView");
    const auto count = [this] { return m_form->control<QLabel>("countryCountLabel")->text(); };
    const auto needed = [this] {
        return m_form->control<QLineEdit>("weChatField")->placeholderText();
    };
    QCOMPARE(count(), QStringLiteral("0"));
    m_form->fill({{"businessContinentPopUpButton", 3}});
    QCOMPARE(count(), QString::number(countries->count() - 1));
    QVERIFY(countries->count() > 20 && flag->pixmap().isNull());
    m_form->fill({{"countryPopUpButton", "China"}});
    QVERIFY(!flag->pixmap().isNull());
    QCOMPARE(m_form->text("telCallingCodeField") + m_form->text("mobileCallingCodeField")
                 + m_form->text("currencyField") + needed(),
             QStringLiteral("+86+86CNYRequired"));
    m_form->fill({{"countryPopUpButton", "Japan"}});
    QCOMPARE(m_form->text("telCallingCodeField") + m_form->text("currencyField") + needed(),
             QStringLiteral("+81JPY"));
    m_form->fill({{"businessContinentPopUpButton", 0}});
    QCOMPARE(countries->count(), 0);
    QCOMPARE(count(), QStringLiteral("0"));
    QVERIFY(flag->pixmap().isNull());
}

// What a check complains of comes into sight; the wheel scrolls over pop-ups without a choice.
void RegisterTest::narrowForm()
{
    m_page->resize(m_page->minimumSizeHint());
    auto *rescue = m_form->control("rescueEmailField");
    QVERIFY(rescue->visibleRegion().isEmpty());
    m_form->fail(detailCases(), 18, "continueButtonOfDetailItem");
    QVERIFY(!rescue->visibleRegion().isEmpty());
    auto *popUp = m_form->control<QComboBox>("question3PopUpButton");
    QWheelEvent wheel({5, 5}, popUp->mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    const auto *bar = m_form->control<QScrollArea>("detailScroller")->verticalScrollBar();
    const int before = bar->value();
    QSpontaneKeyEvent::setSpontaneous(&wheel); // as from a mouse: others go nowhere else
    qApp->notify(popUp, &wheel);
    QCOMPARE(popUp->currentIndex(), 1);
    QVERIFY(bar->value() < before);
}

void RegisterTest::registers()
{
    fillDetails({{"datePicker", QDate(1990, 5, 7)}, {"receiveAdsCB", true}});
    m_form->mendUpTo(moreDetailCases(), moreDetailCases().size());
    AlertRecorder recorder;
    recorder.expect("Registered successfully.", "Please login with your email.");
    m_form->click("createButtonOfMoreDetailItem");
    QTRY_VERIFY(recorder.isDone());
    QTRY_VERIFY(!m_page);
    QCOMPARE(m_login->findChild<QLineEdit *>("userField")->text(), "new@example.com");
    QCOMPARE(m_login->focusWidget(), m_login->findChild<QWidget *>("passwordField"));

    const CompanyJson company = CompanyJson::getJson(
        BLSyncCompany().select(QStringLiteral("Email='new@example.com'"))->first());
    QCOMPARE((QStringList{company.RescueEmail, company.FirstName, company.LastName, company.Title,
                          company.Birthdate, company.Namex, company.JobTitle, company.Tel,
                          company.Mobile, company.WeChat, company.BusinessContinent,
                          company.Country, company.Currency, company.Answer3, company.ReceiveAds,
                          company.MaxUsers, company.IsEnabled}),
             (QStringList{"other@example.com", "Anna", "O'Neil", "Ms.", "1990-05-07",
                          "Müller & \"Söhne\"", "CEO", "", "12-34", "anna", "Asia Pacific", "China",
                          "CNY", "answer 3", "1", "1", "1"}));
    QCOMPARE(company.Question1,
             QStringLiteral("What is the first name of your best friend in high school?"));
    QCOMPARE(company.ExpireTime.left(4).toInt(), company.RegisterTime.left(4).toInt() + 1);
    const UserxJson user = UserxJson::getJson(
        BLSyncUserx().select(QStringLiteral("Userx='new@example.com'"))->first());
    QCOMPARE((QStringList{user.CompanyID, user.UserGroupID, user.ParentID, user.IsAdmin,
                          user.Passwordx, user.FirstName, user.LastName, user.IsEnabled}),
             (QStringList{company.ID, "0", "0", "1", "Abcdef1", "Anna", "O'Neil", "1"}));
}

void RegisterTest::failures_data()
{
    QTest::addColumn<QList<QByteArray>>("replies");
    QTest::addColumn<bool>("isTold");

    const QByteArray row = R"({"Result":[{"ID":"5","Email":"new@example.com"}]})";
    QTest::newRow("the company is not made") << QList<QByteArray>{"false"} << true;
    QTest::newRow("the company is not found") << QList<QByteArray>{"true", "false"} << false;
    QTest::newRow("the user is not made") << QList<QByteArray>{"true", row, "false"} << false;
}

// Told or not, the sheet stays as it was; names go into the clauses as they are.
void RegisterTest::failures()
{
    QFETCH(const QList<QByteArray>, replies);
    QFETCH(const bool, isTold);
    RecordingServer server;
    server.setReply("0");
    fillDetails({{"emailField", "o'neil@example.com"}, {"rescueEmailField", "d'arc@example.com"}});
    m_form->mendUpTo(moreDetailCases(), moreDetailCases().size());
    server.setNextReplies(replies);
    AlertRecorder recorder;
    if (isTold)
        recorder.expect("Fail to register.", "Please try again later.");
    m_form->click("createButtonOfMoreDetailItem");
    QVERIFY(!m_form->control("createButtonOfMoreDetailItem")->isEnabled());
    QTRY_VERIFY(m_form->control("createButtonOfMoreDetailItem")->isEnabled());
    QVERIFY(recorder.isDone() && m_form->isShown("firstNameField"));
    QVERIFY(!m_form->isShown("loadingView"));
    QVERIFY(Session::getLoggerUser().isNull());
    const QStringList expected{
        "Company GET_COUNT Email='o'neil@example.com' OR RescueEmail='o'neil@example.com'",
        "Userx GET_COUNT Userx='o'neil@example.com'",
        "Company GET_COUNT Email='d'arc@example.com' OR RescueEmail='d'arc@example.com'",
        "Userx GET_COUNT Userx='d'arc@example.com'",
        "Company INSERT",
        "Company SELECT Email='o'neil@example.com'",
        "Userx INSERT"};
    QCOMPARE(server.queries(), expected.first(4 + replies.size()));
}

void RegisterTest::closesButNotWhileWaiting()
{
    fillDetails({{"emailField", "late@example.com"}, {"rescueEmailField", "later@example.com"}});
    m_form->mendUpTo(moreDetailCases(), moreDetailCases().size());
    {
        RecordingServer server;
        server.setRawReply({});
        ServiceCall::limits().silentTime = 2000;
        AlertRecorder recorder;
        recorder.expect("Fail to register.", "Please try again later.");
        m_form->click("createButtonOfMoreDetailItem");
        QTest::keyClick(m_page, Qt::Key_Escape);
        bool isBusy = false;
        QTimer::singleShot(100, this, [&] {
            QTest::keyClick(m_page, Qt::Key_Escape);
            isBusy = m_form->isShown("loadingView");
        });
        QTRY_VERIFY(recorder.isDone());
        QVERIFY(isBusy && m_page && m_page->isVisible());
        QCOMPARE(server.requests().size(), 1);
    }
    ServiceCall::limits() = {};
    QTest::keyClick(m_page, Qt::Key_Escape);
    QTRY_VERIFY(!m_page);
    QVERIFY(m_login->isVisible());
}

MAPLORN_WINDOW_TEST_MAIN(RegisterTest)
#include "RegisterTest.moc"
