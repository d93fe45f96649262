// The sheet to sign in, over the real service.
#include "AlertRecorder.h"
#include "LoginViewController.h"
#include "MainQueue.h"
#include "Preferences.h"
#include "RecordingServer.h"
#include "ServiceAddress.h"
#include "ServiceCall.h"
#include "ServiceFixture.h"
#include "Session.h"
#include "WindowTestMain.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>

namespace {

const QString noUser = QStringLiteral("Your user does not exist.");
const QString noUserHelp = QStringLiteral("Please register or ask your administrator to create.");

void makeUser(const char *name, const char *isAdmin, const char *group, const char *isEnabled)
{
    UserxJson user;
    user.Userx = QLatin1StringView(name);
    user.Passwordx = QStringLiteral("pass");
    user.IsAdmin = QLatin1StringView(isAdmin);
    user.UserGroupID = QLatin1StringView(group);
    user.IsEnabled = QLatin1StringView(isEnabled);
    QVERIFY(BLSyncUserx().insert(user));
}

}

class LoginTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void alerts_data();
    void alerts();
    void permissions_data();
    void permissions();
    void rootIsSeeded();
    void lastNameIsThere();
    void twoClicksSubmitOnce();
    void deadServiceTellsAndLives();
    void badReplyTellsAndLives_data();
    void badReplyTellsAndLives();
    void serverSettings();
    void portTakesDigits();

private:
    template <typename Control>
    [[nodiscard]] Control *control(const char *name) const
    {
        return m_page->findChild<Control *>(QLatin1StringView(name));
    }
    void enter(const QString &user, const QString &password) const
    {
        control<QLineEdit>("userField")->setText(user);
        control<QLineEdit>("passwordField")->setText(password);
    }
    void click(const char *name) const
    {
        QTest::mouseClick(control<QWidget>(name), Qt::LeftButton);
    }

    std::unique_ptr<ServiceFixture> m_service;
    std::unique_ptr<LoginViewController> m_page;
};

void LoginTest::initTestCase()
{
    m_service = std::make_unique<ServiceFixture>();
    UserGroupJson group;
    group.Permissionx = QStringLiteral("12");
    QVERIFY(BLSyncUserGroup().insert(group));
    makeUser("admin", "1", "1", "1");
    makeUser("member", "0", "1", "1");
    makeUser("alone", "0", "77", "1");
    makeUser("chief", "2", "", "1");
    makeUser("out", "1", "1", "0");
}

void LoginTest::init()
{
    Session::clear();
    Preferences::remove(QStringLiteral("User"));
    m_page.reset(LoginViewController::getViewController(nullptr));
    m_page->open();
    QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
}

void LoginTest::cleanup()
{
    m_page.reset();
}

void LoginTest::alerts_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("help");

    QTest::newRow("no name") << ""
                             << ""
                             << "User can not be null."
                             << "Please enter your user.";
    QTest::newRow("no password") << " "
                                 << ""
                                 << "Password can not be null."
                                 << "Please enter your password.";
    QTest::newRow("unknown") << "nobody"
                             << "x" << noUser << noUserHelp;
    QTest::newRow("Root is not root") << "Root"
                                      << "kvex" << noUser << noUserHelp;
    QTest::newRow("apostrophe goes in as it is") << "o'neil"
                                                 << "x" << noUser << noUserHelp;
    QTest::newRow("wrong password")
        << "member"
        << "x"
        << "Password is not correct."
        << "Please check password or reset password by Forgot Password.";
    QTest::newRow("disabled") << "out"
                              << "pass"
                              << "Your user is disabled."
                              << "Please contact your administrator.";
}

void LoginTest::alerts()
{
    QFETCH(const QString, user);
    QFETCH(const QString, password);
    QFETCH(const QString, message);
    QFETCH(const QString, help);
    AlertRecorder recorder;
    recorder.expect(message, help);
    enter(user, password);
    click("loginButton");
    QTRY_VERIFY(recorder.isDone());
    if (user.isEmpty() || password.isEmpty())
        QCOMPARE(m_page->focusWidget(),
                 control<QWidget>(user.isEmpty() ? "userField" : "passwordField"));
    QVERIFY(control<QWidget>("loginButton")->isEnabled());
    QTRY_VERIFY(!control<QWidget>("loadingView")->isVisible());
    QVERIFY(!Session::getLoggedUserxJson());
    QCOMPARE(BLSyncCompany().getCount(QStringLiteral("1=1")), 0);
}

void LoginTest::permissions_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("permission");

    QTest::newRow("an administrator in a group") << "admin"
                                                 << "012";
    QTest::newRow("a member") << "member"
                              << "12";
    QTest::newRow("no such group") << "alone"
                                   << "";
    QTest::newRow("an administrator without a group") << "chief"
                                                      << "0";
}

void LoginTest::permissions()
{
    QFETCH(const QString, user);
    QSignalSpy loggedIn(m_page.get(), &LoginViewController::loggedIn);
    enter(user, QStringLiteral("pass"));
    QTest::keyClick(control<QWidget>("passwordField"), Qt::Key_Return);
    QTRY_VERIFY(!m_page->isVisible());
    QCOMPARE(loggedIn.size(), 1);
    QCOMPARE(Session::getLoggedUserxJson()->Userx, user);
    QTEST(Session::getPermission(), "permission");
    QVERIFY(!Session::hasPermission(QStringLiteral("4")) || user == QLatin1StringView("chief"));
    QCOMPARE(Session::hasPermission(QStringLiteral("2")), user != QLatin1StringView("alone"));
    Session::clear();
    QCOMPARE(Session::getLoggerUser(), user);
    QVERIFY(!Session::hasPermission(QString()) && !Session::isRoot());
}

void LoginTest::rootIsSeeded()
{
    AlertRecorder recorder;
    recorder.expect(noUser, noUserHelp);
    enter(QStringLiteral("root"), QStringLiteral("kvex"));
    click("loginButton");
    QTRY_VERIFY(recorder.isDone());
    click("loginButton");
    QTRY_VERIFY(!m_page->isVisible());
    QVERIFY(Session::isRoot());
    QCOMPARE(Session::getPermission(), QStringLiteral("0"));
    const std::optional<CompanyJson> company = LoginViewController::getCompanyJson();
    QVERIFY(company);
    QCOMPARE(company->Namex, QStringLiteral("Maplorn Ltd."));
    const auto configured = [](const char *key) {
        return MiscTool::getConfigText(QLatin1StringView(key));
    };
    QCOMPARE(company->RescueEmail, configured("RootRescueEmail"));
    QCOMPARE(company->FirstName + u' ' + company->LastName,
             configured("RootFirstName") + u' ' + configured("RootLastName"));
    QCOMPARE(company->Birthdate, configured("RootBirthdate"));
    QCOMPARE(company->Mobile + u' ' + company->Website,
             configured("RootMobile") + u' ' + configured("RootWebsite"));
    QCOMPARE((QStringList{company->Answer1, company->Answer2, company->Answer3}),
             (QStringList{configured("RootAnswer1"), configured("RootAnswer2"),
                          configured("RootAnswer3")}));
    const std::optional<UserxJson> root = Session::getLoggedUserxJson();
    QCOMPARE(root->CompanyID, company->ID);
    QCOMPARE(root->LastName, company->LastName);
    QVERIFY(!Session::isDemo());
    Session::setPermission(QStringLiteral("12,3"));
    for (const auto &[module, allowed] :
         {std::pair("1", true), std::pair("3", true), std::pair("2,", true), std::pair("4", false)})
        QCOMPARE(Session::hasPermission(QLatin1StringView(module)), allowed);
    QCOMPARE(company->ExpireTime.left(4).toInt(), company->RegisterTime.left(4).toInt() + 1);

    // The company alone is missing nothing but its user.
    QVERIFY(BLSyncUserx().remove(QStringLiteral("Userx='root'")));
    init();
    recorder.expect(noUser, noUserHelp);
    enter(QStringLiteral("root"), QStringLiteral("kvex"));
    click("loginButton");
    QTRY_VERIFY(recorder.isDone());
    QCOMPARE(BLSyncCompany().getCount(QStringLiteral("Email='root'")), 1);
    QCOMPARE(BLSyncUserx().getCount(QStringLiteral("Userx='root'")), 1);
}

void LoginTest::lastNameIsThere()
{
    Session::setLoggedUserx(QStringLiteral("anna"));
    m_page->hide();
    m_page->open();
    QCOMPARE(control<QLineEdit>("userField")->text(), QStringLiteral("anna"));
    QCOMPARE(m_page->focusWidget(), control<QWidget>("passwordField"));
    QTest::keyClick(m_page.get(), Qt::Key_Escape);
    QVERIFY2(m_page->isVisible(), "Escape does not leave the program");
}

// A click while the service is waited for is not replayed when it answers.
void LoginTest::twoClicksSubmitOnce()
{
    const quint16 port = m_service->port();
    {
        RecordingServer server;
        server.setRawReply({});
        ServiceCall::limits().silentTime = 2000;
        AlertRecorder recorder;
        recorder.expect(noUser, noUserHelp);
        enter(QStringLiteral("anna"), QStringLiteral("x"));
        click("loginButton");
        click("loginButton");
        QWindow *window = m_page->windowHandle();
        const QPoint at = control<QWidget>("exitButton")->geometry().center();
        bool clicked = false;
        QTimer waiting;
        connect(&waiting, &QTimer::timeout, this, [&] {
            if (clicked || server.requests().isEmpty())
                return;
            clicked = true;
            QTest::mouseClick(window, Qt::LeftButton, {}, at);
        });
        waiting.start(5);
        QTRY_VERIFY(recorder.isDone());
        QTest::qWait(50);
        QVERIFY(clicked && m_page->isVisible());
        QCOMPARE(server.requests().size(), 1);
    }
    ServiceCall::limits() = {};
    preferService(port, QStringLiteral("secret"));
}

void LoginTest::deadServiceTellsAndLives()
{
    m_service->kill();
    AlertRecorder recorder;
    recorder.expect(noUser, noUserHelp);
    enter(QStringLiteral("member"), QStringLiteral("pass"));
    click("loginButton");
    QTRY_VERIFY(recorder.isDone());
    QVERIFY(control<QWidget>("loginButton")->isEnabled());
    m_service->start();
    click("loginButton");
    QTRY_VERIFY(!m_page->isVisible());
}

void LoginTest::badReplyTellsAndLives_data()
{
    QTest::addColumn<QByteArray>("reply");

    QTest::newRow("a web page") << QByteArray("<html>Bad gateway</html>");
    QTest::newRow("a row that is none") << QByteArray(R"({"Result":[5]})");
    QTest::newRow("no rows") << QByteArray(R"({"Result":[]})");
    QTest::newRow("not ASCII") << QByteArray("{\"Result\":[{\"Userx\":\"\xc3\xa9\"}]}");
}

void LoginTest::badReplyTellsAndLives()
{
    QFETCH(const QByteArray, reply);
    const quint16 port = m_service->port();
    {
        RecordingServer server;
        server.setReply(reply);
        AlertRecorder recorder;
        recorder.expect(noUser, noUserHelp);
        enter(QStringLiteral("member"), QStringLiteral("pass"));
        click("loginButton");
        QTRY_VERIFY(recorder.isDone());
        QVERIFY(!Session::getLoggedUserxJson() && control<QWidget>("loginButton")->isEnabled());
    }
    preferService(port, QStringLiteral("secret"));
}

void LoginTest::serverSettings()
{
    const quint16 port = m_service->port();
    click("serverButton");
    auto *host = control<QLineEdit>("hostField");
    QCOMPARE(control<QLineEdit>("portField")->text(), QString::number(port));
    AlertRecorder recorder;
    host->clear();
    recorder.expect(QStringLiteral("Host cannot be null."),
                    QStringLiteral("Please enter the Host."));
    click("saveButton");
    QTRY_VERIFY(recorder.isDone());
    host->setText(QStringLiteral("disc.example"));
    control<QLineEdit>("portField")->clear();
    recorder.expect(QStringLiteral("Port cannot be null."),
                    QStringLiteral("Please enter the Port."));
    click("saveButton");
    QTRY_VERIFY(recorder.isDone());
    control<QLineEdit>("portField")->setText(QStringLiteral("99"));
    click("saveButton");
    QVERIFY(!host->isVisible());
    QTRY_COMPARE(Preferences::value(QStringLiteral("Port")).toString(), QStringLiteral("99"));
    QCOMPARE(Preferences::value(QStringLiteral("Host")).toString(), QStringLiteral("disc.example"));

    click("serverButton");
    click("resetButton");
    QVERIFY2(host->isVisible() && host->text().isEmpty(), "what the configuration says");
    QVERIFY(!Preferences::value(QStringLiteral("Host")).isValid());
    click("cancelButton");
    preferService(port, QStringLiteral("secret"));
}

void LoginTest::portTakesDigits()
{
    click("serverButton");
    auto *port = control<QLineEdit>("portField");
    for (const auto &[typed, taken] : {std::pair("8080", "8080"), std::pair("80a", "80"),
                                       std::pair("8.0", "80"), std::pair("7-+9", "79")}) {
        port->clear();
        QTest::keyClicks(port, QLatin1StringView(typed));
        QCOMPARE(port->text(), QString::fromLatin1(taken));
    }
    click("cancelButton");
}

MAPLORN_WINDOW_TEST_MAIN(LoginTest)
#include "LoginTest.moc"
