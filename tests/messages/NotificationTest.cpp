// The page of the notifications, over the real service.
#include "AlertRecorder.h"
#include "BLSync.h"
#include "Companies.h"
#include "DateTools.h"
#include "MainQueue.h"
#include "NotificationViewController.h"
#include "RecordTable.h"
#include "RecordingServer.h"
#include "ServiceFixture.h"
#include "Session.h"
#include "WindowTestMain.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

namespace {

const QString later = QStringLiteral("Please try again later.");
const QString europe = QStringLiteral("Europe");
const QString germany = QStringLiteral("Germany");

}

class NotificationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void whoSeesWhat_data();
    void whoSeesWhat();
    void othersOnlyRead();
    void checks_data();
    void checks();
    void targets_data();
    void targets();
    void updateKeepsWhatIsNotEdited_data();
    void updateKeepsWhatIsNotEdited();
    void deletedWithItsReadMarks();
    void deletedAlthoughItsReadMarksAreNot();
    void deadServiceLosesNothing();

private:
    void makeNotification(const char *title, const QString &continent, const QString &country,
                          const char *isEnabled, const char *issuedTime) const;
    void show(const char *user);
    void open(const char *title) const;
    template <typename Control>
    [[nodiscard]] Control *control(const char *name) const
    {
        return m_page->findChild<Control *>(QLatin1StringView(name));
    }
    [[nodiscard]] bool isPanelOpen() const { return control<QDialog>("panel")->isVisible(); }
    void enter(const QString &title, const QString &body) const
    {
        control<QLineEdit>("titleField")->setText(title);
        control<QPlainTextEdit>("bodyField")->setPlainText(body);
    }
    // As a person does it.
    void pick(const char *popUp, const QString &item) const
    {
        auto *box = control<QComboBox>(popUp);
        const int index = box->findText(item);
        QVERIFY(index >= 0);
        box->setCurrentIndex(index);
        Q_EMIT box->activated(index);
    }
    void click(const char *name) const
    {
        QTest::mouseClick(control<QPushButton>(name), Qt::LeftButton);
    }
    [[nodiscard]] QStringList titles() const
    {
        const auto *table = control<RecordTable>("tableView");
        QStringList titles;
        for (int row = 0; row < table->rowCount(); ++row)
            titles.append(table->item(row, 0)->text());
        return titles;
    }
    [[nodiscard]] static NotificationJson stored(const QString &title)
    {
        const auto rows = BLSyncNotification().select(QStringLiteral("Title='") + title + u'\'');
        return rows ? NotificationJson::getJson(rows->first()) : NotificationJson();
    }

    std::unique_ptr<ServiceFixture> m_service;
    std::unique_ptr<NotificationViewController> m_page;
};

void NotificationTest::init()
{
    m_service = std::make_unique<ServiceFixture>();
    makeNotification("all", {}, {}, "1", "2016-3-5 9:5:3");
    makeNotification("europe", europe, {}, "1", "2016-10-1 9:5:3");
    makeNotification("germany", europe, germany, "1", "2016-9-30 9:5:3");
    makeNotification("asia", QStringLiteral("Asia Pacific"), {}, "1", "2016-1-2 9:5:3");
    makeNotification("withdrawn", {}, {}, "0", "2016-1-1 9:5:3");
}

void NotificationTest::cleanup()
{
    m_page.reset();
    m_service.reset();
}

void NotificationTest::makeNotification(const char *title, const QString &continent,
                                        const QString &country, const char *isEnabled,
                                        const char *issuedTime) const
{
    NotificationJson notification;
    notification.Title = QLatin1StringView(title);
    notification.Body = QStringLiteral("body");
    notification.BusinessContinent = continent;
    notification.Country = country;
    notification.IsEnabled = QLatin1StringView(isEnabled);
    notification.IssuedBy = QStringLiteral("1");
    notification.IssuedTime = QLatin1StringView(issuedTime);
    QVERIFY(BLSyncNotification().insert(notification));
}

void NotificationTest::show(const char *user)
{
    Session::setLoggedUserDict({{QStringLiteral("ID"), QStringLiteral("5")},
                                {QStringLiteral("Userx"), QString::fromLatin1(user)}});
    m_page.reset(NotificationViewController::getViewController());
    m_page->show();
    bool isLoaded = false;
    MainQueue::async(m_page.get(), [&] { isLoaded = true; });
    QTRY_VERIFY(isLoaded);
}

void NotificationTest::open(const char *title) const
{
    auto *table = control<RecordTable>("tableView");
    table->selectRow(static_cast<int>(titles().indexOf(QLatin1StringView(title))));
    QTest::keyClick(table, Qt::Key_Return);
    QVERIFY(isPanelOpen());
}

void NotificationTest::whoSeesWhat_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("continent");
    QTest::addColumn<QString>("country");
    QTest::addColumn<QStringList>("titles");

    const QStringList everything{"europe", "germany", "all", "asia", "withdrawn"};
    QTest::newRow("root sees all, newest first") << "root" << europe << germany << everything;
    QTest::newRow("in the country")
        << "anna" << europe << germany << QStringList{"europe", "germany", "all"};
    QTest::newRow("elsewhere on the continent")
        << "anna" << europe << "France" << QStringList{"europe", "all"};
    QTest::newRow("on another continent") << "anna"
                                          << "Africa"
                                          << "Benin" << QStringList{"all"};
    QTest::newRow("of no region") << "anna"
                                  << ""
                                  << "" << QStringList{"all"};
    QTest::newRow("no company's address") << "bert" << europe << germany << everything;
}

void NotificationTest::whoSeesWhat()
{
    QFETCH(const QString, continent);
    QFETCH(const QString, country);
    QFETCH(const QString, user);
    makeCompany(QStringLiteral("anna"), continent, country);
    show(user.toLatin1().constData());
    QTEST(titles(), "titles");
    const auto *table = control<RecordTable>("tableView");
    const auto all = static_cast<int>(titles().indexOf(QStringLiteral("all")));
    QCOMPARE(table->item(all, 1)->text(), QStringLiteral("2016-3-5 9:5:3"));
    for (const char *button : {"addButton", "deleteButton"})
        QCOMPARE(control<QPushButton>(button)->isVisible(), user == QLatin1StringView("root"));
}

void NotificationTest::othersOnlyRead()
{
    makeCompany(QStringLiteral("anna"));
    show("anna");
    open("all");
    QCOMPARE(control<QPlainTextEdit>("bodyField")->toPlainText(), QStringLiteral("body"));
    QVERIFY(control<QPlainTextEdit>("bodyField")->isReadOnly());
    QVERIFY(control<QLineEdit>("titleField")->isReadOnly());
    for (const char *hidden : {"saveButton", "enabledCB", "countryPopup"})
        QVERIFY(!control<QWidget>(hidden)->isVisible());
    click("cancelButton");
    QVERIFY(!isPanelOpen());
}

void NotificationTest::checks_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("help");
    QTest::addColumn<QString>("field");

    QTest::newRow("title first") << ""
                                 << "Title can not be null."
                                 << "Please enter the title."
                                 << "titleField";
    QTest::newRow("then body") << " "
                               << "Body can not be null."
                               << "Please enter the body."
                               << "bodyField";
}

void NotificationTest::checks()
{
    QFETCH(const QString, title);
    QFETCH(const QString, message);
    QFETCH(const QString, help);
    QFETCH(const QString, field);
    show("root");
    click("addButton");
    enter(title, {});
    AlertRecorder alerts;
    alerts.expect(message, help);
    click("saveButton");
    QVERIFY(alerts.isDone() && isPanelOpen());
    QCOMPARE(control<QDialog>("panel")->focusWidget()->objectName(), field);
}

void NotificationTest::targets_data()
{
    QTest::addColumn<QString>("continent");
    QTest::addColumn<QString>("country");
    QTest::addColumn<QString>("changedTo"); // continent, afterwards
    QTest::addColumn<bool>("isEnabled");
    QTest::addColumn<QStringList>("stored");

    QTest::newRow("everybody") << ""
                               << ""
                               << "" << true << QStringList{"", "", "1"};
    QTest::newRow("a continent") << "Europe"
                                 << ""
                                 << "" << false << QStringList{"Europe", "", "0"};
    QTest::newRow("a country") << "Europe"
                               << "Germany"
                               << "" << true << QStringList{"Europe", "Germany", "1"};
    QTest::newRow("another continent forgets the country")
        << europe << germany << "Africa" << true << QStringList{"Africa", "", "1"};
    QTest::newRow("no continent forgets both")
        << europe << germany << "Please choose" << true << QStringList{"", "", "1"};
}

void NotificationTest::targets()
{
    QFETCH(const QString, continent);
    QFETCH(const QString, country);
    QFETCH(const QString, changedTo);
    QFETCH(const bool, isEnabled);
    show("root");
    open("germany"); // leaves nothing behind for the new one
    QCOMPARE(control<QDialog>("panel")->windowTitle(), QStringLiteral("Update"));
    click("cancelButton");
    click("addButton");
    QCOMPARE(control<QDialog>("panel")->windowTitle(), QStringLiteral("Insert"));
    QVERIFY(control<QLineEdit>("titleField")->text().isEmpty());
    const QString body = QStringLiteral("Ünïcode & 'quotes'\n\"line\" 100 %");
    enter(QStringLiteral("new"), body);
    if (!continent.isEmpty())
        pick("businessContinentPopup", continent);
    if (!country.isEmpty())
        pick("countryPopup", country);
    if (!changedTo.isEmpty())
        pick("businessContinentPopup", changedTo);
    control<QCheckBox>("enabledCB")->setChecked(isEnabled);
    click("saveButton");
    QTRY_VERIFY(!isPanelOpen());
    QTRY_COMPARE(titles().value(0), QStringLiteral("new")); // the newest
    const NotificationJson notification = stored(QStringLiteral("new"));
    QCOMPARE(notification.Body, body);
    QTEST(
        (QStringList{notification.BusinessContinent, notification.Country, notification.IsEnabled}),
        "stored");
    QVERIFY(notification.IssuedTime.startsWith(MiscTool::getToday()));
}

void NotificationTest::updateKeepsWhatIsNotEdited_data()
{
    QTest::addColumn<QString>("continent");
    QTest::addColumn<QString>("country");
    QTest::addColumn<QString>("shownContinent");
    QTest::addColumn<QString>("shownCountry");

    const QString none = QStringLiteral("Please choose");
    const QString gondwana = QStringLiteral("Gondwana");
    const QString atlantis = QStringLiteral("Atlantis");
    const QString empty;
    QTest::newRow("everybody") << empty << empty << none << empty;
    QTest::newRow("a continent") << europe << empty << europe << none;
    QTest::newRow("a country") << europe << germany << europe << germany;
    QTest::newRow("an unknown country") << europe << atlantis << europe << empty;
    QTest::newRow("an unknown continent") << gondwana << empty << empty << empty;
    QTest::newRow("both unknown") << gondwana << atlantis << empty << empty;
    QTest::newRow("a country of no continent") << empty << germany << empty << empty;
}

void NotificationTest::updateKeepsWhatIsNotEdited()
{
    QFETCH(const QString, continent);
    QFETCH(const QString, country);
    makeNotification("aimed", continent, country, "1", "2016-2-2 2:2:2");
    const QString before = stored(QStringLiteral("aimed")).toJsonStr();
    show("root");
    open("aimed");
    QTEST(control<QComboBox>("businessContinentPopup")->currentText(), "shownContinent");
    QTEST(control<QComboBox>("countryPopup")->currentText(), "shownCountry");
    QVERIFY(control<QCheckBox>("enabledCB")->isChecked());
    enter(QStringLiteral("Aimed"), QStringLiteral("body"));
    click("saveButton");
    QTRY_VERIFY(titles().contains(QStringLiteral("Aimed")));
    QCOMPARE(stored(QStringLiteral("Aimed")).toJsonStr(),
             QString(before).replace(QLatin1StringView("\"aimed"), QLatin1StringView("\"Aimed")));
    // What is chosen takes the place of the unknown.
    open("Aimed");
    pick("businessContinentPopup", QStringLiteral("Please choose"));
    click("saveButton");
    QTRY_VERIFY(!isPanelOpen());
    const NotificationJson widened = stored(QStringLiteral("Aimed"));
    QCOMPARE(widened.BusinessContinent + widened.Country, QString());
}

void NotificationTest::deletedWithItsReadMarks()
{
    const BLSyncNotificationReadStatus readStatus;
    const QString id = stored(QStringLiteral("europe")).ID;
    for (const QString &notification : QStringList{id, id, id + u'0'}) {
        NotificationReadStatusJson status;
        status.NotificationID = notification;
        QVERIFY(readStatus.insert(status));
    }
    show("root");
    control<RecordTable>("tableView")->selectRow(0);
    AlertRecorder alerts;
    for (const auto press : {QMessageBox::Cancel, QMessageBox::Ok}) {
        alerts.expect(QStringLiteral("Are you sure to delete?"),
                      QStringLiteral("The operation is irreversible."), press);
        click("deleteButton");
        QTRY_VERIFY(alerts.isDone());
        QVERIFY(press == QMessageBox::Ok || titles().size() == 5);
    }
    QTRY_COMPARE(titles(), (QStringList{"germany", "all", "asia", "withdrawn"}));
    QCOMPARE(readStatus.getCount(QStringLiteral("1=1")), 1);
}

void NotificationTest::deletedAlthoughItsReadMarksAreNot()
{
    RecordingServer server;
    server.setNextReplies({R"({"Result":[{"ID":"7"}]})", "true", "false"});
    server.setReply(R"({"Result":[]})");
    show("root");
    control<RecordTable>("tableView")->selectRow(0);
    AlertRecorder alerts;
    alerts.expect(QStringLiteral("Are you sure to delete?"),
                  QStringLiteral("The operation is irreversible."));
    QTest::ignoreMessage(QtWarningMsg, "the read marks of notification 7 are left behind");
    click("deleteButton");
    QTRY_COMPARE(titles().size(), 0);
    QCOMPARE(alerts.seen().size(), 1);
    QCOMPARE(server.requests().size(), 4);
}

void NotificationTest::deadServiceLosesNothing()
{
    show("root");
    control<RecordTable>("tableView")->selectRow(0);
    m_service->kill();
    AlertRecorder alerts;
    alerts.expect(QStringLiteral("Are you sure to delete?"),
                  QStringLiteral("The operation is irreversible."));
    alerts.expect(QStringLiteral("Failed to delete."), later);
    click("deleteButton");
    QTRY_VERIFY(alerts.isDone());
    click("addButton");
    enter(QStringLiteral("new"), QStringLiteral("text"));
    alerts.expect(QStringLiteral("Failed to save."), later);
    click("saveButton");
    QTRY_VERIFY(alerts.isDone());
    QVERIFY(isPanelOpen() && !control<QLineEdit>("titleField")->isReadOnly());
    m_service->start();
    click("saveButton");
    QTRY_VERIFY(!isPanelOpen());
    QTRY_COMPARE(titles().size(), 6);
}

MAPLORN_WINDOW_TEST_MAIN(NotificationTest)
#include "NotificationTest.moc"
