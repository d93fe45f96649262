#include "DateTools.h"
#include "TestMain.h"

namespace {

using Function = std::function<QString(const QDateTime &)>;

template <QString (*function)(const QDateTime &)>
Function text()
{
    return function;
}

}

class DateToolsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void texts_data();
    void texts();
    void parsing();
};

void DateToolsTest::texts_data()
{
    QTest::addColumn<Function>("function");
    QTest::addColumn<QString>("now");
    QTest::addColumn<QString>("expected");

    using namespace MiscTool;
    const auto row = [](const char *name, const Function &function, const char *at,
                        const char *expected) {
        QTest::newRow(name) << function << QString::fromLatin1(at) << QString::fromLatin1(expected);
    };
    row("now is unpadded", text<getNow>(), "2016-03-05 09:05:03", "2016-3-5 9:5:3");
    row("date and time are padded", text<getDateTimeStr>(), "2016-03-05 09:05:03",
        "2016-03-05 09:05:03");
    row("today's end", text<getTodayEndTime>(), "2016-03-05 09:05:03", "2016-3-5 23:59:59");
    row("a year on, from a leap day", text<getNowAfterOneYear>(), "2016-02-29 10:00:00",
        "2017-02-28 23:59:59");
    row("end of a leap February", text<getThisMonthEndTime>(), "2016-02-10 10:00:00",
        "2016-02-29 23:59:59");
    row("last month of January", text<getLastMonthStartTime>(), "2016-01-31 10:00:00",
        "2015-12-01 00:00:00");
    row("last month of 31 March", text<getLastMonthEndDate>(), "2015-03-31 10:00:00", "2015-02-28");
    row("week's end on a Sunday", text<getThisWeekEndTime>(), "2016-03-06 10:00:00",
        "2016-03-13 23:59:59");
    row("week's end on a Saturday", text<getThisWeekEndTime>(), "2016-03-05 10:00:00",
        "2016-03-06 23:59:59");
    row("week's start on a Sunday", text<getThisWeekStartTime>(), "2016-03-06 10:00:00",
        "2016-03-01 00:00:00");
    row("week's start on a Saturday", text<getThisWeekStartTime>(), "2016-03-05 10:00:00",
        "2016-03-06 00:00:00");
}

void DateToolsTest::texts()
{
    QFETCH(const Function, function);
    QFETCH(const QString, now);
    QTEST(function(QDateTime::fromString(now, QStringLiteral("yyyy-MM-dd HH:mm:ss"))), "expected");
}

void DateToolsTest::parsing()
{
    QCOMPARE(MiscTool::getTimeAfterOneYear(QStringLiteral("2016-02-29 10:00:00")),
             QStringLiteral("2017-02-29 10:00:00"));
    QCOMPARE(MiscTool::getAvailableSecondsTo(QStringLiteral("2016-03-05 00:00:00"),
                                             QStringLiteral("2016-03-05 00:01:01")),
             -61);
    QCOMPARE(MiscTool::getDateFromDateStr(QStringLiteral("2016-03-05")).date(), QDate(2016, 3, 5));
    for (const char *bad : {"", "2016", "2016-3-5", "2016-13-45 99:99:99"})
        QVERIFY(!MiscTool::getDateFromDatetimeStr(QLatin1StringView(bad)).isValid());
}

MAPLORN_TEST_MAIN(DateToolsTest)
#include "DateToolsTest.moc"
