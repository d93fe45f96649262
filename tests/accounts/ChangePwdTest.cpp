// The page Password: its checks, what it saves with the box on and off, and what it does when one
// of its calls fails.
#include "AccountForm.h"
#include "BundleUtil.h"
#include "ChangePwdViewController.h"
#include "RecordingServer.h"
#include "ServiceFixture.h"
#include "Session.h"
#include "WindowTestMain.h"

namespace {

const QString done = QStringLiteral("Your security info has been changed.");
const QString weak = QStringLiteral("Password strength is low.");
const QString weakHelp =
    QStringLiteral("Password length should be more than 6,and contains lower case letter,upper "
                   "case letter and digit.");

const QList<CheckCase> passwordCases{
    {"Old password can not be null.",
     "Please enter your old password.",
     "oldPwdField",
     {{"oldPwdField", "Old"}}},
    {"Old password is not correct.",
     "Please try the correct old password.",
     "oldPwdField",
     {{"oldPwdField", "old"}}},
    {"New password can not be null.",
     "Please enter new password.",
     "neoPwdField",
     {{"neoPwdField", "Abc123"}}},
    {"Password length cannot be less than 6",
     "Please update your password.",
     "neoPwdField",
     {{"neoPwdField", "Abcdef1!"}}},
    {weak, weakHelp, "neoPwdField", {{"neoPwdField", "Abcdef1"}}},
    {"Password verification is failed.",
     "Please enter the same password.",
     "pwdVerifyField",
     {{"pwdVerifyField", "Abcdef1"}}},
};

const QList<CheckCase> securityCases =
    questionCases(false)
    + QList<CheckCase>{
        {"Rescue Email can not be null.",
         "Please enter the rescue email.",
         "rescueEmailField",
         {{"rescueEmailField", "a.b"}}},
        {"Rescue Email is invalid.",
         "Please enter right format email.",
         "rescueEmailField",
         {{"rescueEmailField", "own@example.com"}}}, // the company's
        {"The rescue email exists",
         "Please enter another rescue email.",
         "rescueEmailField",
         {{"rescueEmailField", "rescue@example.com"}}}, // another company's
        {"The rescue email exists",
         "Please enter another rescue email.",
         "rescueEmailField",
         {{"rescueEmailField", "anna"}}},
        {"Rescue Email is invalid.",
         "Please enter right format email.",
         "rescueEmailField",
         {{"rescueEmailField", "user@example.com"}}},
        {"The rescue email exists",
         "Please enter another rescue email.",
         "rescueEmailField",
         {{"rescueEmailField", "other@example.com"}}}, // another company's e-mail
    };

QVariantMap userRow(const QString &name)
{
    return BLSyncUserx().select(QStringLiteral("Userx='") + name + u'\'')->first();
}

}

class ChangePwdTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void passwordChecks_data() { addCheckColumns(passwordCases); }
    void passwordChecks();
    void securityChecks_data() { addCheckColumns(securityCases); }
    void securityChecks();
    void savesPasswordAndSecurity();
    void boxOffWritesTheField();
    void failures_data();
    void failures();

private:
    void showPage()
    {
        m_page.reset(ChangePwdViewController::getViewController());
        m_page->show();
        m_form = std::make_unique<AccountForm>(m_page.get());
        QVERIFY(!m_form->control("saveButton")->isEnabled());
        QTRY_VERIFY(m_form->control("saveButton")->isEnabled());
    }

    std::unique_ptr<ServiceFixture> m_service;
    std::unique_ptr<ChangePwdViewController> m_page;
    std::unique_ptr<AccountForm> m_form;
    QString m_companyId;
};

void ChangePwdTest::initTestCase()
{
    m_service = std::make_unique<ServiceFixture>();
    CompanyJson company;
    company.Email = "other@example.com";
    company.RescueEmail = "rescue@example.com";
    makeCompany(company);
    makeUser("user@example.com");
}

// A user of a new company that has no security data.
void ChangePwdTest::init()
{
    preferService(m_service->port(), QStringLiteral("secret"));
    BLSyncCompany().remove("Email='own@example.com'");
    BLSyncUserx().remove("Userx='anna'");
    CompanyJson company;
    company.Email = "own@example.com";
    company.Question1 = "A question that is no longer asked?";
    m_companyId = makeCompany(company);
    makeUser("anna", m_companyId);
    Session::setLoggedUserDict(userRow("anna"));
    showPage();
}

void ChangePwdTest::passwordChecks()
{
    QFETCH(const int, row);
    m_form->fill({{"passwordCB", true}});
    QCOMPARE(m_page->window()->focusWidget(), m_form->control("oldPwdField"));
    m_form->fail(passwordCases, row, "saveButton");
}

void ChangePwdTest::securityChecks()
{
    QFETCH(const int, row);
    if (row == 0)
        QCOMPARE(m_form->control<QComboBox>("question1PopUpButton")->currentIndex(), -1);
    m_form->fail(securityCases, row, "saveButton");
    QVERIFY(m_form->control("saveButton")->isEnabled());
}

void ChangePwdTest::savesPasswordAndSecurity()
{
    auto *neo = m_form->control<QLineEdit>("neoPwdField");
    QVERIFY(neo->isReadOnly());
    m_form->fill({{"passwordCB", true}});
    QVERIFY(!neo->isReadOnly());
    m_form->mendUpTo(passwordCases, passwordCases.size());
    m_form->mendUpTo(securityCases, securityCases.size());
    QVERIFY(m_form->isShown("passwordStrengthIndicator"));
    m_form->expect("saveButton", "Security Info changed successfully.", done);
    QTRY_VERIFY(m_form->control("saveButton")->isEnabled());
    QVERIFY(!m_form->control<QCheckBox>("passwordCB")->isChecked() && neo->isReadOnly());
    QCOMPARE(m_form->text("oldPwdField") + neo->text() + m_form->text("pwdVerifyField"), "");
    QVERIFY(!m_form->isShown("passwordStrengthIndicator") && !m_form->isShown("loadingView"));
    QCOMPARE(UserxJson::getJson(userRow("anna")).Passwordx, "Abcdef1");
    QCOMPARE(Session::getLoggedUserxJson()->Passwordx, "Abcdef1");

    const std::optional<CompanyJson> company = BLSyncCompany().getJson(m_companyId);
    BundleUtil lists;
    QCOMPARE((QStringList{company->Email, company->RescueEmail, company->Question1,
                          company->Question3, company->Answer2}),
             (QStringList{"own@example.com", "other@example.com", lists.getQuestionOfFirstGroup(1),
                          lists.getQuestionOfThirdGroup(1), "answer 2"}));
    showPage();
    QCOMPARE(m_form->control<QComboBox>("question3PopUpButton")->currentIndex(), 1);
    QCOMPARE(m_form->text("answer3Field") + m_form->text("rescueEmailField"),
             "answer 3other@example.com");
}

// Without a check; what was typed while the box was on stays in the field.
void ChangePwdTest::boxOffWritesTheField()
{
    m_form->mendUpTo(securityCases, securityCases.size());
    m_form->fill({{"passwordCB", true}, {"neoPwdField", "short"}, {"passwordCB", false}});
    for (const char *password : {"short", ""}) {
        m_form->expect("saveButton", "Security Info changed successfully.", done);
        QTRY_VERIFY(m_form->control("saveButton")->isEnabled());
        QCOMPARE(UserxJson::getJson(userRow("anna")).Passwordx, password);
    }
}

void ChangePwdTest::failures_data()
{
    QTest::addColumn<QList<QByteArray>>("replies");
    QTest::addColumn<bool>("isSaved");

    const QByteArray row = R"({"Result":[{"ID":"7"}]})";
    QTest::newRow("of the user's update") << QList<QByteArray>{"false"} << false;
    QTest::newRow("to find the company") << QList<QByteArray>{"true", "false"} << false;
    QTest::newRow("of the company's update") << QList<QByteArray>{"true", row, "false"} << false;
    QTest::newRow("to find the user") << QList<QByteArray>{"true", row, "true", "false"} << true;
}

void ChangePwdTest::failures()
{
    QFETCH(const QList<QByteArray>, replies);
    QFETCH(const bool, isSaved);
    const QVariantMap user{{"Userx", "o'neil"}, {"CompanyID", "7"}, {"ID", "3"}};
    Session::setLoggedUserDict(user);
    RecordingServer server;
    server.setReply("false");
    showPage();
    m_form->fill({{"passwordCB", true}});
    m_form->mendUpTo(passwordCases, passwordCases.size());
    m_form->mendUpTo(securityCases, securityCases.size());
    m_form->fill({{"oldPwdField", "o'ld"}, {"rescueEmailField", "d'arc@example.com"}});
    server.setNextReplies(QList<QByteArray>{"1", "0", "0"} + replies);
    m_form->expect(
        "saveButton",
        isSaved ? "Security Info changed successfully." : "Security Info changed failed.", done);
    QTRY_VERIFY(m_form->control("saveButton")->isEnabled());
    QCOMPARE(m_form->control<QCheckBox>("passwordCB")->isChecked(), !isSaved);
    QVERIFY(Session::getLoggedUserxJson()->Passwordx.isEmpty());
    const QStringList queries{
        "Company SELECT ID=7",
        "Userx GET_COUNT Userx='o'neil' AND Passwordx='o'ld'",
        "Company GET_COUNT Email='d'arc@example.com' AND ID=7 OR (RescueEmail='d'arc@example.com' "
        "AND ID!=7)",
        "Userx GET_COUNT Userx='d'arc@example.com'",
        "Userx UPDATE",
        "Company SELECT ID=7",
        "Company UPDATE",
        "Userx SELECT Userx='o'neil'"};
    QCOMPARE(server.queries(), queries.first(4 + replies.size()));
}

MAPLORN_WINDOW_TEST_MAIN(ChangePwdTest)
#include "ChangePwdTest.moc"
