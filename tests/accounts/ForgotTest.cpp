// The sheet in which a forgotten password is replaced: its checks, the two ways to prove who one
// is, and what the service is asked.
#include "AccountForm.h"
#include "ForgotViewController.h"
#include "RecordingServer.h"
#include "ServiceFixture.h"
#include "WindowTestMain.h"

#include <QPointer>

namespace {

const QList<CheckCase> step1Cases{
    {"Email can not be null.",
     "Please enter your email.",
     "emailField",
     {{"emailField", "anna.example.com"}}},
    {"Email is invalid.",
     "Please enter right format email.",
     "emailField",
     {{"emailField", "anna@example"}}},
    {"Email is invalid.",
     "Please enter right format email.",
     "emailField",
     {{"emailField", "alone@example.com"}}}, // a company's without a user
    {"The email doesn't exist.",
     "Please confirm the email.",
     "emailField",
     {{"emailField", "anna@example.com"}}},
};

const QList<CheckCase> step2Cases = questionCases(true);

const QList<CheckCase> step3Cases{
    {"Rescue Email can not be null.",
     "Please enter the rescue email.",
     "rescueEmailField",
     {{"rescueEmailField", "rescue@example"}}},
    {"Rescue Email is invalid.",
     "Please enter right format email.",
     "rescueEmailField",
     {{"rescueEmailField", "nobody@example.com"}}},
    {"The rescue email not exists",
     "Please enter the right rescue email.",
     "rescueEmailField",
     {{"rescueEmailField", "anna@example.com"}}},
    {"The rescue email cannot be same as email.",
     "Please enter another rescue email.",
     "rescueEmailField",
     {{"rescueEmailField", "rescue@example.com"}}}, // another company's
    {"Your birthdate is wrong.",
     "Please choose your right birthdate.",
     "yearPopUpButton",
     {{"yearPopUpButton", "2000"}, {"monthPopUpButton", "11"}}},
    {"Your birthdate is wrong.",
     "Please choose your right birthdate.",
     "yearPopUpButton",
     {{"dayPopUpButton", "25"}}},
};

const QString weak = QStringLiteral("Password strength is low.");
const QString weakHelp =
    QStringLiteral("Password length should be more than 6,and contains lower case letter,upper "
                   "case letter,digit and special character.");

const QList<CheckCase> step4Cases{
    {"Password can not be null.",
     "Please enter your password.",
     "passwordxField",
     {{"passwordxField", "Abc12!"}}},
    {"Password length cannot be less than 6",
     "Please update your password.",
     "passwordxField",
     {{"passwordxField", "Abcdef1"}}},
    {weak, weakHelp, "passwordxField", {{"passwordxField", "Abcdef1!"}}}, // enough to register
    {"Fail to verify password.",
     "Please check your password.",
     "verifyPasswordxField",
     {{"verifyPasswordxField", "Abcdef1!"}}},
};

CompanyJson company(const char *email, const char *rescueEmail, const char *birthdate)
{
    CompanyJson made;
    made.Email = email;
    made.RescueEmail = rescueEmail;
    made.Birthdate = birthdate;
    BundleUtil lists;
    made.Question1 = lists.getQuestionOfFirstGroup(1);
    made.Question2 = lists.getQuestionOfSecondGroup(1);
    made.Question3 = lists.getQuestionOfThirdGroup(1);
    made.Answer1 = "answer 1";
    made.Answer2 = "answer 2";
    made.Answer3 = "answer 3";
    return made;
}

}

class ForgotTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void step1_data() { addCheckColumns(step1Cases); }
    void step1();
    void step2_data() { addCheckColumns(step2Cases); }
    void step2();
    void step3_data() { addCheckColumns(step3Cases); }
    void step3();
    void step4_data() { addCheckColumns(step4Cases); }
    void step4();
    void questionsLeadToAPassword();
    void sevenErrorsLeadToTheRescue();
    void someBirthdatesNeverMatch();
    void withoutCompanyNothingIsRight();
    void failures_data();
    void failures();

private:
    void toStep2(const char *email = "anna@example.com") const
    {
        m_form->fill({{"emailField", email}});
        m_form->click("continueButtonOfStep1Item");
        QTRY_VERIFY(m_form->isShown("answer1Field"));
        QTRY_VERIFY(!m_form->isShown("loadingView"));
    }
    void err(int times) const
    {
        for (int i = 0; i < times; ++i)
            m_form->expect("continueButtonOfStep2Item", step2Cases.first().message,
                           step2Cases.first().help);
    }
    void toStep4() const
    {
        m_form->mendUpTo(step2Cases, step2Cases.size());
        m_form->click("continueButtonOfStep2Item");
        QVERIFY(m_form->isShown("passwordxField"));
        QCOMPARE(m_page->focusWidget(), m_form->control("passwordxField"));
    }
    [[nodiscard]] static QString passwordOf(const QString &user)
    {
        return UserxJson::getJson(
                   BLSyncUserx().select(QStringLiteral("Userx='") + user + u'\'')->first())
            .Passwordx;
    }

    std::unique_ptr<ServiceFixture> m_service;
    std::unique_ptr<ForgotViewController> m_page;
    std::unique_ptr<AccountForm> m_form;
};

void ForgotTest::initTestCase()
{
    m_service = std::make_unique<ServiceFixture>();
    makeCompany(company("anna@example.com", "anna2@example.com", "2000-11-25"));
    makeCompany(company("bob@example.com", "rescue@example.com", "1990-05-07"));
    makeCompany(company("alone@example.com", "anna@example.com", "2000-11-25"));
    for (const char *user : {"anna@example.com", "bob@example.com", "member@example.com"})
        makeUser(user, "1");
}

void ForgotTest::init()
{
    preferService(m_service->port(), QStringLiteral("secret"));
    m_page.reset(ForgotViewController::getViewController(nullptr));
    m_page->open();
    m_form = std::make_unique<AccountForm>(m_page.get());
}

void ForgotTest::step1()
{
    QFETCH(const int, row);
    m_form->fail(step1Cases, row, "continueButtonOfStep1Item");
}

void ForgotTest::step2()
{
    QFETCH(const int, row);
    toStep2();
    m_form->fail(step2Cases, row, "continueButtonOfStep2Item");
    QVERIFY(m_form->isShown("answer1Field"));
}

void ForgotTest::step3()
{
    QFETCH(const int, row);
    toStep2();
    err(7);
    m_form->fail(step3Cases, row, "continueButtonOfStep3Item");
    if (row < step3Cases.size() - 1)
        return;
    m_form->fill(step3Cases.last().mend);
    m_form->click("continueButtonOfStep3Item");
    QTRY_VERIFY(m_form->isShown("passwordxField"));
    m_form->click("goBackButtonOfStep4Item");
    QVERIFY(m_form->isShown("rescueEmailField"));
}

void ForgotTest::step4()
{
    QFETCH(const int, row);
    toStep2();
    toStep4();
    m_form->fail(step4Cases, row, "okButtonOfStep4Item");
}

void ForgotTest::questionsLeadToAPassword()
{
    toStep2();
    m_form->click("goBackButtonOfStep2Item");
    QVERIFY(m_form->isShown("emailField"));
    toStep2();
    toStep4();
    m_form->click("goBackButtonOfStep4Item");
    QVERIFY(m_form->isShown("answer1Field"));
    m_form->click("goBackButtonOfStep2Item");
    QVERIFY2(m_form->isShown("answer1Field"), "going back has led here since the first try");
    toStep4();
    QVERIFY(!m_form->isShown("passwordStrengthIndicator"));
    m_form->mendUpTo(step4Cases, step4Cases.size());
    QVERIFY(m_form->isShown("passwordStrengthIndicator"));
    AlertRecorder silent;
    m_form->click("okButtonOfStep4Item");
    QTRY_VERIFY(!m_page->isVisible());
    QCOMPARE(m_page->result(), int(QDialog::Accepted));
    QCOMPARE(passwordOf("anna@example.com"), "Abcdef1!");
}

// Errors of all kinds count, also those before the questions were left and come to again.
void ForgotTest::sevenErrorsLeadToTheRescue()
{
    toStep2();
    m_form->click("goBackButtonOfStep2Item");
    toStep2();
    for (int row = 0; row < 6; ++row)
        m_form->fail(step2Cases, row, "continueButtonOfStep2Item");
    QVERIFY(m_form->isShown("answer1Field"));
    m_form->expect("continueButtonOfStep2Item", step2Cases.at(5).message, step2Cases.at(5).help);
    QVERIFY(m_form->isShown("rescueEmailField"));
    QCOMPARE(m_page->focusWidget(), m_form->control("rescueEmailField"));
    m_form->click("goBackButtonOfStep3Item");
    toStep4();
}

// Stored with zeros in front of months and days, chosen without.
void ForgotTest::someBirthdatesNeverMatch()
{
    QCOMPARE(m_form->control<QComboBox>("yearPopUpButton")->count(), 1 + 117);
    toStep2("bob@example.com");
    err(7);
    m_form->fill({{"rescueEmailField", "anna2@example.com"},
                  {"yearPopUpButton", "1990"},
                  {"monthPopUpButton", "5"},
                  {"dayPopUpButton", "7"}});
    m_form->expect("continueButtonOfStep3Item", "Your birthdate is wrong.",
                   "Please choose your right birthdate.");
    QVERIFY(m_form->isShown("rescueEmailField"));
}

// Nor are the answers of somebody who was asked for before.
void ForgotTest::withoutCompanyNothingIsRight()
{
    toStep2();
    m_form->click("goBackButtonOfStep2Item");
    toStep2("member@example.com");
    m_form->mendUpTo(step2Cases, step2Cases.size());
    m_form->expect("continueButtonOfStep2Item", "The first security question is wrong.",
                   "Please choose the correct first question.");
}

void ForgotTest::failures_data()
{
    QTest::addColumn<QList<QByteArray>>("replies");
    QTest::addColumn<QStringList>("queries");

    const QStringList toStep2{"Userx GET_COUNT Userx='o'neil@example.com'",
                              "Company SELECT Email='o'neil@example.com'",
                              "Userx SELECT Userx='o'neil@example.com'"};
    BundleUtil lists;
    CompanyJson found = company("", "", "");
    const QByteArray companyRow = R"({"Result":[)" + found.toJsonStr().toUtf8() + "]}";
    QTest::newRow("no user") << QList<QByteArray>{"1", companyRow, "false"} << toStep2;
    QTest::newRow("the update fails")
        << QList<QByteArray>{"1", companyRow, R"({"Result":[{"ID":"5"}]})", "false"}
        << toStep2 + QStringList{"Userx UPDATE"};
}

void ForgotTest::failures()
{
    QFETCH(const QList<QByteArray>, replies);
    RecordingServer server;
    server.setNextReplies(replies);
    toStep2("o'neil@example.com");
    toStep4();
    m_form->mendUpTo(step4Cases, step4Cases.size());
    m_form->expect("okButtonOfStep4Item", "Fail to change password.", "Please try again later.");
    QVERIFY(m_form->isShown("passwordxField"));
    QTRY_VERIFY(m_form->control("okButtonOfStep4Item")->isEnabled());
    QTEST(server.queries(), "queries");
    m_form->click("cancelButtonOfStep4Item");
    QVERIFY(!m_page->isVisible());
}

MAPLORN_WINDOW_TEST_MAIN(ForgotTest)
#include "ForgotTest.moc"
