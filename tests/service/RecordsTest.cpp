// Records on their way to the wire and back.
#include "Records.h"
#include "TestMain.h"
#include "TextTools.h"
#include "WhereClauseJson.h"

class RecordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void values_data();
    void values();
    void badValues_data();
    void badValues();
    void membersInOrder();
    void whereClauseChangesItself();
    void sqlTexts();
};

void RecordsTest::values_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("sent");

    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("blank") << "a b"
                           << "a%20b";
    QTest::newRow("quote") << "O'Neil"
                           << "O&%2339;Neil";
    QTest::newRow("double quote") << "a\"b"
                                  << "a&%2334;b";
    QTest::newRow("percent and tilde") << "50%~"
                                       << "50%25~";
    QTest::newRow("all that a query may hold") << "-._~!$&()*+,;=:@/?x"
                                               << "-._~!$&()*+,;=:@/?x";
    QTest::newRow("not in a query") << "#[]{}|\\^`<>"
                                    << "%23%5B%5D%7B%7D%7C%5C%5E%60%3C%3E";
    QTest::newRow("Chinese") << QStringLiteral("中 a") << "%E4%B8%AD%20a";
    QTest::newRow("beyond 16 bits") << QStringLiteral("💿") << "%F0%9F%92%BF";
    QTest::newRow("line break") << "a\nb"
                                << "a%0Ab";
    QTest::newRow("a date") << "2016-3-5 9:5:3"
                            << "2016-3-5 9:5:3";
    QTest::newRow("any text with both signs") << "a-b:c"
                                              << "a-b:c";
    QTest::newRow("a minus alone") << "a-b c"
                                   << "a-b%20c";
    QTest::newRow("64 KiB") << QString(65536, u'%') << QStringLiteral("%25").repeated(65536);
}

void RecordsTest::values()
{
    QFETCH(const QString, value);
    QFETCH(const QString, sent);
    UserGroupJson group;
    group.Memo = value;
    if (value == QLatin1StringView("-._~!$&()*+,;=:@/?x"))
        QCOMPARE(MiscTool::encode2UTF8(value), sent); // holds both signs: sent raw by a record
    const QString json = group.toJsonStr();
    QVERIFY2(json.endsWith(QStringLiteral("\"Memo\":\"%1\"}").arg(sent)), qPrintable(json));
    UserGroupJson back;
    back.toJson(json.toUtf8());
    QCOMPARE(back.Memo, value);
}

void RecordsTest::badValues_data()
{
    QTest::addColumn<QByteArray>("json");

    QTest::newRow("not JSON") << QByteArray("{");
    QTest::newRow("no text") << QByteArray(R"({"Memo":7})");
    QTest::newRow("an array") << QByteArray(R"([{"Memo":"a"}])");
    QTest::newRow("cut sequence") << QByteArray(R"({"Memo":"a%4"})");
    QTest::newRow("no hexadecimal") << QByteArray(R"({"Memo":"%GG"})");
    QTest::newRow("no UTF-8") << QByteArray(R"({"Memo":"%FF"})");
    QTest::newRow("other case") << QByteArray(R"({"memo":"a"})");
    QTest::newRow("deep") << QByteArray(100000, '[');
}

void RecordsTest::badValues()
{
    QFETCH(const QByteArray, json);
    UserGroupJson group;
    group.Memo = QStringLiteral("before");
    group.toJson(json);
    QVERIFY(group.Memo.isNull());
}

void RecordsTest::membersInOrder()
{
    UserxJson user;
    user.Userx = QStringLiteral("anna");
    QCOMPARE(
        user.toJsonStr(),
        QStringLiteral(R"({"ID":"","CompanyID":"","UserGroupID":"","ParentID":"","IsAdmin":"",)"
                       R"("Userx":"anna","Passwordx":"","FirstName":"","LastName":"",)"
                       R"("IsEnabled":"","Memo":""})"));
    QCOMPARE(
        CompanyJson().getProperties().join(u' '),
        QStringLiteral("ID Email RescueEmail FirstName LastName Title Birthdate Namex JobTitle "
                       "Tel Mobile WeChat Skype Industry BusinessContinent Country Currency "
                       "Address Website Question1 Answer1 Question2 Answer2 Question3 Answer3 "
                       "ReceiveAds RegisterTime ExpireTime MaxUsers IsEnabled Memo"));
}

void RecordsTest::whereClauseChangesItself()
{
    WhereClauseJson clause;
    clause.WhereClause = QStringLiteral("Namex LIKE '%abc%'");
    QCOMPARE(clause.toJsonStr(),
             QStringLiteral(R"({"WhereClause":"Namex LIKE '~abc~'","Index":"0","Step":""})"));
    QCOMPARE(clause.WhereClause, QStringLiteral("Namex LIKE '~abc~'"));
}

void RecordsTest::sqlTexts()
{
    QCOMPARE(MiscTool::UInteger2SQLString(7, false), QStringLiteral("7,"));
    QCOMPARE(MiscTool::NSString2SQLString(QStringLiteral("O'Neil"), false),
             QStringLiteral("'O'Neil',"));
    QCOMPARE(MiscTool::trim(QStringLiteral(" \ta b\t \n")), QStringLiteral("a b\t \n"));
    QCOMPARE(MiscTool::trim(QStringLiteral(" \t ")), QString());
}

MAPLORN_TEST_MAIN(RecordsTest)
#include "RecordsTest.moc"
