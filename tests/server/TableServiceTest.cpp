// The real service, asked by the real client and by sockets that mean it no good.
#include "BLSync.h"
#include "DateTools.h"
#include "ServiceAddress.h"
#include "ServiceCall.h"
#include "ServiceFixture.h"
#include "TestMain.h"

#include <QTcpSocket>

#include <mutex>
#include <thread>

class TableServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void clauses_data();
    void clauses();
    void clausesOfThePages_data();
    void clausesOfThePages();
    void attacks_data();
    void attacks();
    void values_data();
    void values();
    void pages_data();
    void pages();
    void timesAreSortedAsTimes();
    void rowsComeAndGo();
    void clockPlaceholders();
    void refusals_data();
    void refusals();
    void halfRequestsCostNothing();
    void killLosesNoAnsweredInsert();
    void endAnswersWhatRuns();

private:
    // The answer to raw bytes, until the service closes or falls silent.
    [[nodiscard]] QByteArray ask(const QByteArray &request) const;

    ServiceFixture m_service;
};

namespace {

// Names of the groups that a clause meets, sorted as they come.
QString met(const QString &where, const QString &index = {}, const QString &step = {})
{
    QStringList names;
    const auto rows = BLSyncUserGroup().select(where, index, step);
    for (const QVariantMap &row : rows.value_or(QList<QVariantMap>()))
        names.append(UserGroupJson::getJson(row).Namex);
    return rows ? names.join(u' ') : QStringLiteral("null");
}

}

void TableServiceTest::initTestCase()
{
    for (const auto &[name, company, permission] :
         {std::tuple("a", "1", "10%"), std::tuple("b", "2", "9"), std::tuple("ab", "1", "10~"),
          std::tuple("O'Neil", "3", "x")}) {
        UserGroupJson group;
        group.Namex = QLatin1StringView(name);
        group.CompanyID = QLatin1StringView(company);
        group.Permissionx = QLatin1StringView(permission);
        QVERIFY(BLSyncUserGroup().insert(group));
    }
}

void TableServiceTest::clauses_data()
{
    QTest::addColumn<QString>("clause");
    QTest::addColumn<QString>("names");

    const auto row = [](const char *clause, const char *names) {
        QTest::newRow(clause) << QString::fromLatin1(clause) << QString::fromLatin1(names);
    };
    row("ID=2", "b");
    row("id = '2'", "b");
    row("1=1", "a b ab O'Neil");
    row("1=2", "null");
    row("Namex='a' OR Namex='b' AND CompanyID=9", "a");
    row("(Namex='a' OR Namex='b') AND CompanyID=2", "b");
    row("Namex LIKE '%b'", "b ab");
    row("Namex='O&#39;Neil'", "O'Neil");
    row("Namex!='a' AND CompanyID!=3", "b ab");
    row("Permissionx>8 AND Permissionx<9.5", "b");
    row("Permissionx='10%'", "a ab");
    row("Permissionx<='10'", "null");
    row("1=1 ORDER BY Namex DESC", "b ab a O'Neil");
    row("CompanyID=1 order by Namex asc", "a ab");
    row("Memo=''", "a b ab O'Neil");
    row("(CompanyID='1' OR CompanyID='2') AND (Memo='' OR Memo='x') AND ID>0 ORDER BY Namex DESC",
        "b ab a");
    row("Namex='a' AND ID=1 OR (Namex='b' AND ID!=1)", "a b");
    row("Namex!='b' AND CompanyID>0 AND 1=1", "a ab O'Neil");
    row("Namex LIKE '~b~'", "b ab");
}

void TableServiceTest::clauses()
{
    QFETCH(const QString, clause);
    QTEST(met(clause), "names");
}

void TableServiceTest::clausesOfThePages_data()
{
    QTest::addColumn<QString>("service");
    QTest::addColumn<QString>("clause");

    const auto row = [](const char *service, const char *clause) {
        QTest::newRow(clause) << QString::fromLatin1(service) << QString::fromLatin1(clause);
    };
    row("UserxService", "IsEnabled=1 AND Userx='O&#39;Neil'");
    row("UserxService", "CompanyID=5 AND IsEnabled=1");
    row("UserxService", "Userx='anna' AND Passwordx='~-:&#34;'");
    row("CompanyService", "Email='a@b.c' OR RescueEmail='a@b.c'");
    row("CompanyService", "Email='a@b.c' AND ID=5 OR (RescueEmail='a@b.c' AND ID!=5)");
    row("CompanyService", "Email!='root' AND Namex LIKE '~a~' ORDER BY RegisterTime DESC");
    row("CompanyService", "Email!='root' AND BusinessContinent='Asia' AND Country='Japan'");
    row("FeedbackService", "UserID=5 ORDER BY AskTime DESC");
    row("FeedbackService", "UserID=5 AND AnsweredBy>0 ORDER BY AskTime DESC");
    row("NotificationService",
        "(BusinessContinent='' OR BusinessContinent='Asia') AND (Country='' OR Country='Japan') "
        "AND IsEnabled=1 ORDER BY IssuedTime DESC");
    row("NotificationReadStatusService", "IsRead=1 AND NotificationID=1 AND UserxID=2");
}

// On empty tables: "0" is an answer, "false" a refusal.
void TableServiceTest::clausesOfThePages()
{
    QFETCH(const QString, service);
    QFETCH(const QString, clause);
    const QByteArray body = "{\"WhereClause\":\"" + clause.toUtf8().replace('"', "\\\"") + "\"}";
    QCOMPARE(
        BLSyncAbstract::sendSyncRequest(QString::fromUtf8(body), MiscTool::getCountURL(service)),
        QStringLiteral("0"));
}

void TableServiceTest::attacks_data()
{
    QTest::addColumn<QString>("clause");
    for (const char *clause : {"",
                               "ID=",
                               "ID=1;DROP TABLE Userx",
                               "ID=1 --",
                               "1=1 UNION SELECT * FROM Userx",
                               "Namex=(SELECT Passwordx FROM Userx)",
                               "Secret=1",
                               "Namex='a''b'",
                               "Namex='a",
                               "Namex LIKE 1",
                               "Namex BETWEEN 1 AND 2",
                               "Namex IS NULL",
                               "ORDER BY ID",
                               "1=1 ORDER BY 1",
                               "1=1 ORDER BY Namex, ID",
                               "1=1 LIMIT 1",
                               "Namex==1",
                               "NOT 1=1",
                               "1=1)",
                               "((1=1)",
                               "ID=1e5",
                               "ID=0x10",
                               "Namex=CompanyID",
                               "lower(Namex)='a'",
                               "NamexPadded='a'"})
        QTest::newRow(clause) << QString::fromLatin1(clause);
    QTest::newRow("deep") << QString(QString(5000, u'(') + QStringLiteral("1=1")
                                     + QString(5000, u')'));
}

void TableServiceTest::attacks()
{
    QFETCH(const QString, clause);
    QCOMPARE(met(clause), QStringLiteral("null"));
    QVERIFY(!BLSyncUserGroup().remove(clause));
    QCOMPARE(BLSyncUserGroup().getCount(QStringLiteral("1=1")), 4);
}

void TableServiceTest::values_data()
{
    QTest::addColumn<QString>("value");
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("quotes") << QStringLiteral("'\"''");
    QTest::newRow("percent and tilde") << QStringLiteral("%~%41");
    QTest::newRow("raw") << QStringLiteral("a-b:%41");
    QTest::newRow("Chinese") << QStringLiteral("中文 💿");
    QTest::newRow("64 KiB") << QString(65536, QChar(0x4e2d));
}

void TableServiceTest::values()
{
    QFETCH(const QString, value);
    FeedbackJson feedback;
    feedback.Question = value;
    feedback.UserID = QString::fromLatin1(QTest::currentDataTag());
    QVERIFY(BLSyncFeedback().insert(feedback));
    const auto rows = BLSyncFeedback().select(QStringLiteral("1=1 ORDER BY ID DESC"));
    QVERIFY(rows);
    QCOMPARE(FeedbackJson::getJson(rows->first()).Question, value);
}

void TableServiceTest::pages_data()
{
    QTest::addColumn<QString>("index");
    QTest::addColumn<QString>("step");
    QTest::addColumn<QString>("names");

    QTest::newRow("first") << "0"
                           << "2"
                           << "a b";
    QTest::newRow("one is the first too") << "1"
                                          << "2"
                                          << "a b";
    QTest::newRow("others count from zero") << "2"
                                            << "2"
                                            << "ab O'Neil";
    QTest::newRow("all") << "3"
                         << ""
                         << "O'Neil";
    QTest::newRow("behind the end") << "4"
                                    << "2"
                                    << "null";
    QTest::newRow("no number") << "x"
                               << "2"
                               << "null";
    for (const char *step : {"-1", "-0", "+2", " 2 ", "2.0"})
        QTest::newRow(step) << "0" << step << "null";
}

void TableServiceTest::pages()
{
    QFETCH(const QString, index);
    QFETCH(const QString, step);
    QTEST(met(QStringLiteral("1=1"), index, step), "names");
}

void TableServiceTest::timesAreSortedAsTimes()
{
    for (const char *time :
         {"2016-10-5 9:5:3", "2016-9-30 23:0:0", "2016-3-5 10:0:0", "2016-3-5 9:59:59"}) {
        NotificationJson notification;
        notification.IssuedTime = QLatin1StringView(time);
        QVERIFY(BLSyncNotification().insert(notification));
    }
    const auto rows = BLSyncNotification().select(
        QStringLiteral("IssuedTime<'2016-10-5 9:5:3' ORDER BY IssuedTime DESC"));
    QVERIFY(rows);
    QStringList times;
    for (const QVariantMap &row : *rows)
        times.append(NotificationJson::getJson(row).IssuedTime);
    QCOMPARE(times.join(u'|'), QStringLiteral("2016-9-30 23:0:0|2016-3-5 10:0:0|2016-3-5 9:59:59"));
}

void TableServiceTest::rowsComeAndGo()
{
    UserxJson user;
    user.Userx = QStringLiteral("anna");
    QVERIFY(BLSyncUserx().insert(user));
    QVERIFY2(!BLSyncUserx().insert(user), "the name is taken");
    user = *BLSyncUserx().getJson(QStringLiteral("1"));
    user.Memo = QStringLiteral("new");
    QVERIFY(BLSyncUserx().update(user));
    QCOMPARE(BLSyncUserx().getJson(QStringLiteral("1"))->Memo, QStringLiteral("new"));
    user.ID = QStringLiteral("99");
    QVERIFY2(!BLSyncUserx().update(user), "no such row");
    QVERIFY(BLSyncUserx().deleteByID(QStringLiteral("1")));
    QVERIFY2(BLSyncUserx().deleteByID(QStringLiteral("1")), "a DELETE that met nothing ran");
    QCOMPARE(BLSyncUserx().getCount(QStringLiteral("1=1")), 0);
}

void TableServiceTest::clockPlaceholders()
{
    CompanyJson company;
    company.RegisterTime = MiscTool::getServerNow();
    company.ExpireTime = MiscTool::getServerNowAfterOneYear();
    company.Memo = QStringLiteral(" ${SERVER_NOW}");
    QVERIFY(BLSyncCompany().insert(company));
    company = *BLSyncCompany().getJson(QStringLiteral("1"));
    QCOMPARE(company.Memo, QStringLiteral(" ${SERVER_NOW}"));
    const QDateTime registered = MiscTool::getDateFromDatetimeStr(company.RegisterTime);
    QVERIFY(qAbs(registered.secsTo(QDateTime::currentDateTime())) < 60);
    QCOMPARE(MiscTool::getDateFromDatetimeStr(company.ExpireTime), registered.addYears(1));
}

QByteArray TableServiceTest::ask(const QByteArray &request) const
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, m_service.port());
    if (!socket.waitForConnected())
        return {};
    socket.write(request);
    QByteArray answer;
    while (!answer.endsWith("false") && socket.waitForReadyRead(5000))
        answer += socket.readAll();
    return answer;
}

void TableServiceTest::refusals_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("status");

    const QByteArray path = "/UserxService?operation=SELECT&servicePassword=";
    const auto post = [](const QByteArray &target, const QByteArray &rest) {
        return QByteArray("POST " + target + " HTTP/1.1\r\nHost: x\r\n" + rest);
    };
    QTest::newRow("wrong password")
        << post(path + "secrex", "Content-Length: 2\r\n\r\n{}") << QByteArray("403");
    QTest::newRow("no password") << post("/UserxService?operation=SELECT",
                                         "Content-Length: 2\r\n\r\n{}")
                                 << QByteArray("403");
    QTest::newRow("unknown table")
        << post("/SecretService?servicePassword=secret", "Content-Length: 2\r\n\r\n{}")
        << QByteArray("404");
    QTest::newRow("100 MB announced")
        << post(path + "secret", "Content-Length: 104857600\r\n\r\n") << QByteArray("413");
    QTest::newRow("a path out of the folder")
        << QByteArray("GET /../../etc/passwd HTTP/1.1\r\nHost: x\r\n\r\n") << QByteArray("404");
    QTest::newRow("GET of a table")
        << QByteArray("GET " + path + "secret HTTP/1.1\r\nHost: x\r\n\r\n") << QByteArray("405");
    QTest::newRow("no JSON") << post(path + "secret", "Content-Length: 5\r\n\r\n[[[[[")
                             << QByteArray("200");
    QTest::newRow("unknown operation")
        << post("/UserxService?operation=DROP&servicePassword=secret",
                "Content-Length: 21\r\n\r\n{\"WhereClause\":\"1=1\"}")
        << QByteArray("200");
}

void TableServiceTest::refusals()
{
    QFETCH(const QByteArray, request);
    QFETCH(const QByteArray, status);
    const QByteArray answer = ask(request);
    QVERIFY2(answer.startsWith(QByteArray("HTTP/1.1 " + status)), answer.constData());
    QVERIFY2(answer.endsWith("\r\n\r\nfalse"), answer.constData());
}

void TableServiceTest::halfRequestsCostNothing()
{
    std::vector<std::unique_ptr<QTcpSocket>> half;
    for (int i = 0; i < 300; ++i) {
        half.push_back(std::make_unique<QTcpSocket>());
        half.back()->connectToHost(QHostAddress::LocalHost, m_service.port());
        QVERIFY(half.back()->waitForConnected());
        half.back()->write("POST /UserxService?serv");
        half.back()->flush();
    }
    // One more, whose body never ends.
    QTcpSocket endless;
    endless.connectToHost(QHostAddress::LocalHost, m_service.port());
    QVERIFY(endless.waitForConnected());
    endless.write("POST /UserxService?operation=SELECT&servicePassword=secret HTTP/1.1\r\n"
                  "Host: x\r\nTransfer-Encoding: chunked\r\n\r\n");
    const QByteArray chunk = "10000\r\n" + QByteArray(0x10000, 'x') + "\r\n";
    for (int i = 0; i < 1600 && endless.state() == QAbstractSocket::ConnectedState; ++i) {
        endless.write(chunk);
        endless.waitForBytesWritten(1000);
    }
    QVERIFY2(endless.state() != QAbstractSocket::ConnectedState, "cut off");
    QCOMPARE(BLSyncUserGroup().getCount(QStringLiteral("1=1")), 4);
}

namespace {

// Inserts made by several connections at once, each record with a text of its own, until the
// service ends. The connections are kept, as a busy client's are.
class Load
{
public:
    static constexpr int patience = 60'000; // ms: each insert waits for the disk

    explicit Load(quint16 port)
    {
        for (int i = 0; i < 16; ++i)
            m_threads.emplace_back([this, i, port] { insert(i, port); });
    }

    // Whether each connection has had more than one answer, on an average.
    [[nodiscard]] bool isUnderWay()
    {
        const std::lock_guard guard(m_mutex);
        return m_answered.size() > 32;
    }

    // The texts whose insert was answered.
    [[nodiscard]] QStringList answered()
    {
        m_threads.clear();
        return m_answered;
    }

private:
    void insert(int client, quint16 port)
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, port);
        for (int i = 0; socket.waitForConnected(patience); ++i) {
            const QByteArray text = "c" + QByteArray::number(client) + "n" + QByteArray::number(i);
            const QByteArray body = "{\"Answer\":\"" + text + "\"}";
            socket.write("POST /FeedbackService?servicePassword=secret&operation=INSERT HTTP/1.1"
                         "\r\nHost: x\r\nContent-Length: "
                         + QByteArray::number(body.size()) + "\r\n\r\n" + body);
            QByteArray reply;
            while (!reply.endsWith("true") && !reply.endsWith("false")
                   && socket.waitForReadyRead(patience))
                reply += socket.readAll();
            if (!reply.endsWith("true"))
                return;
            const std::lock_guard guard(m_mutex);
            m_answered.append(QString::fromLatin1(text));
        }
    }

    std::mutex m_mutex;
    QStringList m_answered;
    std::vector<std::jthread> m_threads;
};

// Every text that is in the table, with how often it is there.
QMap<QString, int> storedAnswers()
{
    QMap<QString, int> found;
    const auto rows = BLSyncFeedback().select(QStringLiteral("Answer LIKE 'c~n~'"));
    for (const QVariantMap &row : rows.value_or(QList<QVariantMap>()))
        ++found[FeedbackJson::getJson(row).Answer];
    return found;
}

}

void TableServiceTest::endAnswersWhatRuns()
{
    QVERIFY(BLSyncFeedback().remove(QStringLiteral("1=1")));
    Load load(m_service.port());
    QTRY_VERIFY_WITH_TIMEOUT(load.isUnderWay(), Load::patience);
    QCOMPARE(m_service.end(), 0);
    const QStringList answered = load.answered();
    m_service.start();
    const QMap<QString, int> stored = storedAnswers();
    QCOMPARE(stored.size(), answered.size());
}

void TableServiceTest::killLosesNoAnsweredInsert()
{
    Load load(m_service.port());
    QTRY_VERIFY_WITH_TIMEOUT(load.isUnderWay(), Load::patience);
    m_service.kill();
    const QStringList answered = load.answered();
    m_service.start();
    const QMap<QString, int> stored = storedAnswers();
    for (const QString &text : answered)
        QCOMPARE(stored.value(text), 1);
}

MAPLORN_TEST_MAIN(TableServiceTest)
#include "TableServiceTest.moc"
