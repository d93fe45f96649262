// Who gets past the window's gate, what pops up behind it, and how one signs out.
#include "AlertRecorder.h"
#include "BLSync.h"
#include "Companies.h"
#include "LoginViewController.h"
#include "NoticeOfPreloginViewController.h"
#include "NotificationPopUps.h"
#include "Preferences.h"
#include "RunningJobs.h"
#include "ServiceFixture.h"
#include "ServicePages.h"
#include "Session.h"
#include "ViewController.h"
#include "VirtualDrive.h"
#include "WindowTestMain.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTreeWidget>

namespace {

void publish(const char *title, const char *continent, const char *country, const char *issuedTime,
             const char *isEnabled = "1")
{
    NotificationJson notification;
    notification.Title = QLatin1StringView(title);
    notification.Body = QStringLiteral("body");
    notification.BusinessContinent = QLatin1StringView(continent);
    notification.Country = QLatin1StringView(country);
    notification.IssuedTime = QLatin1StringView(issuedTime);
    notification.IsEnabled = QLatin1StringView(isEnabled);
    QVERIFY(BLSyncNotification().insert(notification));
}

}

class SignInGateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void noticeThenSignIn();
    void exitEndsTheProgram();
    void damagedSessionIsCleared();
    void notificationsPopUpOnce();
    void eachUserHasItsOwnPopUps();
    void popUpThatCannotBeMarkedComesAgain();
    void logoutAsksEachTime();
    void sessionIsPrivateAndOnTheDisk();
    void pageLanguages_data();
    void pageLanguages();

private:
    void signIn(const char *user) const;
    void runOnDatabase(const char *statement) const;
    void show();
    [[nodiscard]] QTreeWidget *list() const
    {
        return m_window->findChild<QTreeWidget *>(QStringLiteral("outlineView"));
    }
    void click(const char *name) const
    {
        auto *button = m_window->findChild<QPushButton *>(QLatin1StringView(name));
        QVERIFY(button);
        QTest::mouseClick(button, Qt::LeftButton);
    }
    void open(int module) const
    {
        QTreeWidgetItem *item = list()->topLevelItem(0)->child(module);
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {},
                          list()->visualItemRect(item).center());
    }

    std::unique_ptr<ServiceFixture> m_service;
    std::unique_ptr<VirtualDrive> m_drive;
    std::unique_ptr<ViewController> m_window;
};

void SignInGateTest::init()
{
    m_service = std::make_unique<ServiceFixture>();
    m_drive = std::make_unique<VirtualDrive>();
    Session::clear();
}

void SignInGateTest::cleanup()
{
    m_window.reset();
    m_drive.reset();
    m_service.reset();
}

void SignInGateTest::signIn(const char *user) const
{
    Session::setLoggedUserDict({{QStringLiteral("ID"), QStringLiteral("5")},
                                {QStringLiteral("Userx"), QString::fromLatin1(user)}});
    Session::setPermission(QStringLiteral("0"));
}

void SignInGateTest::show()
{
    m_window = std::make_unique<ViewController>();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void SignInGateTest::noticeThenSignIn()
{
    show();
    QTRY_VERIFY(m_window->findChild<NoticeOfPreloginViewController *>());
    auto *login = m_window->findChild<LoginViewController *>();
    QVERIFY(login && !login->isVisible());
    QCOMPARE(list()->topLevelItemCount(), 0);
    click("closeButton");
    QTRY_VERIFY(login->isVisible());
    m_window->hide();
    m_window->show();
    QTest::qWait(20);
    QCOMPARE(m_window->findChildren<LoginViewController *>().size(), 1);

    login->findChild<QLineEdit *>(QStringLiteral("userField"))->setText(QStringLiteral("root"));
    login->findChild<QLineEdit *>(QStringLiteral("passwordField"))->setText(QStringLiteral("kvex"));
    AlertRecorder alerts;
    alerts.expect(QStringLiteral("Your user does not exist."),
                  QStringLiteral("Please register or ask your administrator to create."));
    click("loginButton");
    QTRY_VERIFY(alerts.isDone());
    click("loginButton");
    QTRY_VERIFY(!m_window->findChild<LoginViewController *>());
    QCOMPARE(list()->topLevelItem(0)->childCount(), 12);
    QVERIFY(list()->topLevelItem(0)->child(0)->isSelected());
}

void SignInGateTest::exitEndsTheProgram()
{
    show();
    QTRY_VERIFY(m_window->findChild<NoticeOfPreloginViewController *>());
    click("closeButton");
    click("exitButton");
    QVERIFY(!m_window->isVisible());
}

void SignInGateTest::damagedSessionIsCleared()
{
    signIn("");
    show();
    QTRY_COMPARE(list()->topLevelItemCount(), 1);
    QVERIFY(!Session::getLoggedUserxJson());
}

void SignInGateTest::notificationsPopUpOnce()
{
    makeCompany(QStringLiteral("anna"), QStringLiteral("Europe"), QStringLiteral("France"));
    publish("older", "", "", "2016-9-30 9:0:0");
    publish("newer", "Europe", "France", "2016-10-1 9:0:0");
    publish("elsewhere", "", "China", "2016-10-2 9:0:0");
    publish("withdrawn", "", "", "2016-10-3 9:0:0", "0");
    signIn("root");
    show();
    QTRY_COMPARE(list()->topLevelItemCount(), 1);
    signIn("anna");
    AlertRecorder alerts;
    alerts.expect(QStringLiteral("newer"), QStringLiteral("body"));
    alerts.expect(QStringLiteral("older"), QStringLiteral("body"));
    m_window->reloadData();
    QVERIFY(alerts.isDone());
    m_window->reloadData();
    QCOMPARE(alerts.seen().size(), 2);
    QCOMPARE(BLSyncNotificationReadStatus().getCount(QStringLiteral("UserxID=5")), 2);
}

void SignInGateTest::eachUserHasItsOwnPopUps()
{
    const QVariantMap anna =
        makeCompany(QStringLiteral("anna"), QStringLiteral("Europe"), QStringLiteral("France"));
    const QVariantMap bert = makeCompany(QStringLiteral("bert"));
    const QVariantMap carl = makeCompany(QStringLiteral("carl"), {}, QStringLiteral("France"));
    publish("all", "", "", "2016-9-30 9:0:0");
    publish("france", "", "France", "2016-10-1 9:0:0");
    publish("europe", "Europe", "", "2016-10-2 9:0:0");
    publish("asia", "Asia Pacific", "", "2016-10-3 9:0:0");
    for (const auto &[user, titles] :
         {std::pair(anna, QStringList{"europe", "france", "all"}),
          std::pair(bert, QStringList{"all"}), std::pair(anna, QStringList()),
          std::pair(carl, QStringList{"france", "all"}), std::pair(bert, QStringList())}) {
        Session::setLoggedUserDict(user);
        AlertRecorder alerts;
        for (const QString &title : titles)
            alerts.expect(title, QStringLiteral("body"));
        NotificationPopUps::showNotification();
        QVERIFY(alerts.isDone());
    }
    QCOMPARE(BLSyncNotificationReadStatus().getCount(QStringLiteral("IsRead=1")), 6);
}

void SignInGateTest::runOnDatabase(const char *statement) const
{
    const QString name = QStringLiteral("test");
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        database.setDatabaseName(m_service->folder() + QStringLiteral("/maplorn-disc.sqlite"));
        QVERIFY(database.open());
        QSqlQuery query(database);
        QVERIFY2(query.exec(QLatin1StringView(statement)), qPrintable(query.lastError().text()));
    }
    QSqlDatabase::removeDatabase(name);
}

void SignInGateTest::popUpThatCannotBeMarkedComesAgain()
{
    Session::setLoggedUserDict(makeCompany(QStringLiteral("anna")));
    publish("all", "", "", "2016-9-30 9:0:0");
    runOnDatabase("CREATE TRIGGER refuse BEFORE INSERT ON NotificationReadStatus "
                  "BEGIN SELECT RAISE(ABORT, 'no'); END");
    AlertRecorder alerts;
    NotificationPopUps::showNotification();
    QVERIFY(alerts.seen().isEmpty());
    runOnDatabase("DROP TRIGGER refuse");
    alerts.expect(QStringLiteral("all"), QStringLiteral("body"));
    NotificationPopUps::showNotification();
    NotificationPopUps::showNotification();
    QCOMPARE(alerts.seen().size(), 1);
}

void SignInGateTest::logoutAsksEachTime()
{
    signIn("root");
    show();
    QTRY_COMPARE(list()->topLevelItemCount(), 1);
    const QString question = QStringLiteral("Are you sure to logout?");
    const QString help = QStringLiteral("Please be sure to save all the data.");
    AlertRecorder alerts;
    for (int i = 0; i < 2; ++i) {
        alerts.expect(question, help, QMessageBox::Cancel);
        open(11);
        QTRY_VERIFY(alerts.isDone());
        QVERIFY(Session::isRoot());
    }
    // While a job runs the window stays, and so does the session, until that is settled.
    RunningJobs::Mark job = RunningJobs::instance().add([] {});
    alerts.expect(question, help);
    alerts.expect(QStringLiteral("Are you sure to quit?"),
                  QStringLiteral("A job is running. It will be aborted, and the window closes when "
                                 "it has ended."),
                  QMessageBox::Cancel);
    open(11);
    QTRY_VERIFY(alerts.isDone());
    QVERIFY(m_window->isVisible() && Session::isRoot());
    job.reset();
    QCoreApplication::processEvents();
    QVERIFY(m_window->isVisible() && Session::isRoot());
    alerts.expect(question, help);
    open(11);
    QTRY_VERIFY(!m_window->isVisible());
    QVERIFY(!Session::getLoggedUserxJson() && Session::getPermission().isNull());
    QCOMPARE(Session::getLoggerUser(), QStringLiteral("root"));
}

void SignInGateTest::sessionIsPrivateAndOnTheDisk()
{
    signIn("anna");
    const QString path = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                         + QStringLiteral("/maplorn-disc/preferences.ini");
    QVERIFY(QFile::permissions(path)
            == (QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser));
    QVERIFY(fileContent(path).contains("User=anna"));
}

void SignInGateTest::pageLanguages_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("language");

    QTest::newRow("Hong Kong") << "zh_HK"
                               << "en_US";
    QTest::newRow("China") << "zh_CN"
                           << "zh_CN";
    QTest::newRow("Taiwan") << "zh_TW"
                            << "zh_TW";
    QTest::newRow("Britain") << "en_GB"
                             << "en_US";
    QTest::newRow("none") << "C"
                          << "en_US";
}

void SignInGateTest::pageLanguages()
{
    QFETCH(const QString, locale);
    QTEST(ServicePages::getLanguageWithCountry(QLocale(locale)), "language");
    Preferences::setValue(QStringLiteral("Context"), QStringLiteral("app"));
    QCOMPARE(
        ServicePages::url(QStringLiteral("NoticeOfPrelogin")).toString(),
        QStringLiteral("http://127.0.0.1:%1/app/en_US/NoticeOfPrelogin").arg(m_service->port()));
}

MAPLORN_WINDOW_TEST_MAIN(SignInGateTest)
#include "SignInGateTest.moc"
