// What the table clients send, byte for byte, and what they make of any reply.
#include "BLSync.h"
#include "MainQueue.h"
#include "Preferences.h"
#include "RecordingServer.h"
#include "ServiceAddress.h"
#include "ServiceCall.h"
#include "TestMain.h"

#include <QScopeGuard>
#include <QTcpSocket>
#include <QTimer>

namespace {

using Call = std::function<void()>;

QByteArray body(const QByteArray &request)
{
    return request.sliced(request.indexOf("\r\n\r\n") + 4);
}

}

class BLSyncTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_server = std::make_unique<RecordingServer>(); }
    void cleanup() { ServiceCall::limits() = {}; }

    void requests_data();
    void requests();
    void hostileReplies_data();
    void hostileReplies();
    void counts_data();
    void counts();
    void rowsAndRecords();
    void bodyIsCut();
    void silenceEnds();
    void endlessReplyEnds();
    void nobodyListens();
    void nothingIsSentTwice();
    void drippingReplyEnds();
    void addresses();

private:
    std::unique_ptr<RecordingServer> m_server;
};

void BLSyncTest::requests_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<QByteArray>("target");
    QTest::addColumn<QByteArray>("sent");

    const auto row = [](const char *name, const Call &call, const char *target, const char *sent) {
        QTest::newRow(name) << call << QByteArray(target) << QByteArray(sent);
    };
    row(
        "insert",
        [] {
            UserGroupJson group;
            group.Namex = QStringLiteral("a b");
            BLSyncUserGroup().insert(group);
        },
        "UserGroupService?servicePassword=secret&operation=INSERT",
        R"({"ID":"","CompanyID":"","Namex":"a%20b","Permissionx":"","Memo":""})");
    row(
        "update",
        [] {
            NotificationReadStatusJson status;
            status.ID = QStringLiteral("4");
            status.ReadTime = QStringLiteral("2016-3-5 9:5:3");
            BLSyncNotificationReadStatus().update(status);
        },
        "NotificationReadStatusService?servicePassword=secret&operation=UPDATE",
        R"({"ID":"4","NotificationID":"","UserxID":"","IsRead":"","ReadTime":"2016-3-5 9:5:3"})");
    row(
        "deleteByID", [] { BLSyncCompany().deleteByID(QStringLiteral("7")); },
        "CompanyService?servicePassword=secret&operation=DELETE",
        R"({"WhereClause":"ID=7","Index":"0","Step":""})");
    row(
        "getCount", [] { (void)BLSyncFeedback().getCount(QStringLiteral("1=1")); },
        "FeedbackService?servicePassword=secret&operation=GET_COUNT",
        R"({"WhereClause":"1=1","Index":"0","Step":""})");
    row(
        "select", [] { (void)BLSyncUserx().select(QStringLiteral("Userx LIKE '%a'")); },
        "UserxService?servicePassword=secret&operation=SELECT",
        R"({"WhereClause":"Userx LIKE '~a'","Index":"0","Step":""})");
    row(
        "page",
        [] {
            (void)BLSyncNotification().select(QStringLiteral("1=1"), QStringLiteral("20"),
                                              QStringLiteral("10"));
        },
        "NotificationService?servicePassword=secret&operation=SELECT",
        R"({"WhereClause":"1=1","Index":"20","Step":"10"})");
}

void BLSyncTest::requests()
{
    QFETCH(const Call, call);
    QFETCH(const QByteArray, target);
    QFETCH(const QByteArray, sent);
    call();
    QCOMPARE(m_server->requests().size(), 1);
    const QByteArray request = m_server->requests().first();
    QVERIFY2(request.startsWith(QByteArray("POST /app/" + target + " HTTP/1.1\r\n")),
             request.constData());
    for (const QByteArray &header :
         {QByteArray("Accept: application/json\r\n"),
          QByteArray("Content-Type: application/json\r\n"),
          QByteArray("Content-Length: " + QByteArray::number(sent.size()) + "\r\n")})
        QVERIFY2(request.contains(header), header.constData());
    QCOMPARE(body(request), sent);
}

void BLSyncTest::hostileReplies_data()
{
    QTest::addColumn<QByteArray>("reply");

    QTest::newRow("false") << QByteArray("false");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("TRUE") << QByteArray("True");
    QTest::newRow("line break") << QByteArray("true\n");
    QTest::newRow("HTML") << QByteArray("<html>502</html>");
    QTest::newRow("no Result") << QByteArray(R"({"Rows":[]})");
    QTest::newRow("Result a text") << QByteArray(R"({"Result":"x"})");
    QTest::newRow("Result empty") << QByteArray(R"({"Result":[]})");
    QTest::newRow("rows no objects") << QByteArray(R"({"Result":[{"ID":"1"},7]})");
    QTest::newRow("cut") << QByteArray(R"({"Result":[{"ID":"1"})");
    QTest::newRow("deep") << QByteArray(R"({"Result":)") + QByteArray(1000000, '[');
    QTest::newRow("not ASCII") << QByteArray("\xff\xfe\x00", 3);
}

void BLSyncTest::hostileReplies()
{
    QFETCH(const QByteArray, reply);
    m_server->setReply(reply);
    UserxJson user;
    QVERIFY(!BLSyncUserx().insert(user));
    QVERIFY(!BLSyncUserx().remove(QStringLiteral("1=1")));
    QCOMPARE(BLSyncUserx().getCount(QStringLiteral("1=1")), 0);
    QVERIFY(!BLSyncUserx().select(QStringLiteral("1=1")));
    QVERIFY(!BLSyncUserx().getJson(QStringLiteral("1")));
    const bool tellsOfNone = reply == "false" || reply == R"({"Result":[]})";
    QCOMPARE(BLSyncUserx().selectAny(QStringLiteral("1=1")).has_value(), tellsOfNone);
}

void BLSyncTest::counts_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<qint64>("count");

    QTest::newRow("plain") << QByteArray("12") << qint64(12);
    QTest::newRow("digits before anything") << QByteArray("12 rows") << qint64(12);
    QTest::newRow("minus") << QByteArray("-3") << qint64(0);
    QTest::newRow("too large") << QByteArray("99999999999999999999")
                               << std::numeric_limits<qint64>::max();
}

void BLSyncTest::counts()
{
    QFETCH(const QByteArray, reply);
    m_server->setReply(reply);
    QTEST(BLSyncUserx().getCount(QStringLiteral("1=1")), "count");
}

// The status is not looked at, and members that are no texts are null.
void BLSyncTest::rowsAndRecords()
{
    m_server->setReply(R"({"Result":[{"ID":"3","Userx":"O&%2339;Neil","Memo":7}]})");
    const std::optional<UserxJson> user = BLSyncUserx().getJson(QStringLiteral("3"));
    QVERIFY(user);
    QCOMPARE(user->Userx, QStringLiteral("O'Neil"));
    QVERIFY(user->Memo.isNull());
    m_server->setRawReply("HTTP/1.1 500 Oops\r\nContent-Length: 4\r\n\r\ntrue");
    QVERIFY(BLSyncUserx().remove(QStringLiteral("1=1")));
}

void BLSyncTest::bodyIsCut()
{
    (void)BLSyncUserx().select(QStringLiteral("Userx='中'"));
    const QByteArray whole =
        QStringLiteral(R"({"WhereClause":"Userx='中'","Index":"0","Step":""})").toUtf8();
    QCOMPARE(body(m_server->requests().first()), whole.chopped(2));
}

// One time-out is enough for a task; the next task tries again.
void BLSyncTest::silenceEnds()
{
    ServiceCall::limits().silentTime = 200;
    m_server->setRawReply({});
    int calls = 0;
    const auto task = [&] {
        for (int i = 0; i < 3; ++i)
            (void)BLSyncUserx().select(QStringLiteral("1=1"));
        ++calls;
    };
    MainQueue::async(this, task);
    QTRY_COMPARE(calls, 1);
    QTRY_COMPARE(m_server->requests().size(), 1);
    MainQueue::async(this, task);
    QTRY_COMPARE(calls, 2);
    QTRY_COMPARE(m_server->requests().size(), 2);
}

void BLSyncTest::endlessReplyEnds()
{
    ServiceCall::limits().replySize = 4 << 20;
    m_server->setRawReply("HTTP/1.1 200 OK\r\n\r\n");
    m_server->setEndless();
    QVERIFY(!BLSyncUserx().select(QStringLiteral("1=1")));
}

void BLSyncTest::nobodyListens()
{
    m_server->close();
    QVERIFY(!BLSyncUserx().select(QStringLiteral("1=1")));
    QCOMPARE(BLSyncUserx().getCount(QStringLiteral("1=1")), 0);
}

void BLSyncTest::addresses()
{
    Preferences::setValue(QStringLiteral("Port"), QStringLiteral("80"));
    Preferences::setValue(QStringLiteral("Context"), QString(u'/'));
    for (const auto &[context, base] :
         {std::pair("", "http://127.0.0.1:80"), std::pair("app", "http://127.0.0.1:80/app"),
          std::pair("/app/", "http://127.0.0.1:80/app/")}) {
        Preferences::setValue(QStringLiteral("Context"), QLatin1StringView(context));
        QCOMPARE(MiscTool::serverURL(), QLatin1StringView(base));
    }
    QCOMPARE(MiscTool::serviceURL(QStringLiteral("XService")),
             QStringLiteral("http://127.0.0.1:80/app/XService?servicePassword=secret"));
    Preferences::setValue(QStringLiteral("AppURL"), QString());
    QCOMPARE(MiscTool::getAppURL(), QString()); // an empty preference wins over the file
    Preferences::remove(QStringLiteral("AppURL"));
    QVERIFY(!MiscTool::getAppURL().isEmpty());
}

// A service that has taken a record and dies before it answers must not get it again.
void BLSyncTest::nothingIsSentTwice()
{
    QTcpServer dying;
    QVERIFY(dying.listen(QHostAddress::LocalHost));
    preferService(dying.serverPort(), QStringLiteral("x"));
    int requests = 0;
    connect(&dying, &QTcpServer::newConnection, &dying, [&] {
        QTcpSocket *socket = dying.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [&requests, socket] {
            if (!socket->readAll().endsWith('}'))
                return;
            ++requests;
            socket->close();
        });
    });
    FeedbackJson feedback;
    QVERIFY(!BLSyncFeedback().insert(feedback));
    QTest::qWait(50);
    QCOMPARE(requests, 1);
}

void BLSyncTest::drippingReplyEnds()
{
    ServiceCall::limits().wholeTime = 300;
    ServiceCall::limits().silentTime = 200;
    m_server->setRawReply("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n");
    QTimer drip;
    connect(&drip, &QTimer::timeout, this, [this] {
        const QList<QTcpSocket *> sockets = m_server->findChildren<QTcpSocket *>();
        for (QTcpSocket *socket : sockets)
            socket->write("x");
    });
    drip.start(20);
    QCOMPARE(BLSyncFeedback().getCount(QStringLiteral("1=1")), 0);
}

MAPLORN_TEST_MAIN(BLSyncTest)
#include "BLSyncTest.moc"
