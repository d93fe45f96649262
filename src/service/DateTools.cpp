#include "DateTools.h"

namespace {

const QString dayStart = QStringLiteral(" 00:00:00");
const QString dayEnd = QStringLiteral(" 23:59:59");

uint toUInt(int number)
{
    return static_cast<uint>(number);
}

QString number(uint value)
{
    return QString::number(value);
}

QString padded(uint value)
{
    return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0'));
}

QString yearAndMonth(const QDateTime &date)
{
    return number(MiscTool::getYear(date)) + u'-' + padded(MiscTool::getMonth(date));
}

QString plainDate(const QDateTime &date)
{
    return number(MiscTool::getYear(date)) + u'-' + number(MiscTool::getMonth(date)) + u'-'
           + number(MiscTool::getDay(date));
}

QDateTime inLastMonth(const QDateTime &date)
{
    return date.addMonths(-1);
}

// The number that the characters begin with; 0 without digits.
int numberAt(const QString &text, qsizetype position, qsizetype length)
{
    int number = 0;
    for (const QChar c : QStringView(text).mid(position, length)) {
        if (c < u'0' || c > u'9')
            break;
        number = number * 10 + (c.unicode() - u'0');
    }
    return number;
}

QDateTime dateAt(const QString &text, QTime time)
{
    const QDate date(numberAt(text, 0, 4), numberAt(text, 5, 2), numberAt(text, 8, 2));
    return date.isValid() && time.isValid() ? QDateTime(date, time) : QDateTime();
}

}

uint MiscTool::getYear(const QDateTime &date)
{
    return toUInt(date.date().year());
}

uint MiscTool::getMonth(const QDateTime &date)
{
    return toUInt(date.date().month());
}

uint MiscTool::getDay(const QDateTime &date)
{
    return toUInt(date.date().day());
}

uint MiscTool::getHour(const QDateTime &date)
{
    return toUInt(date.time().hour());
}

uint MiscTool::getMinute(const QDateTime &date)
{
    return toUInt(date.time().minute());
}

uint MiscTool::getSecond(const QDateTime &date)
{
    return toUInt(date.time().second());
}

uint MiscTool::getDate(const QDateTime &date)
{
    return toUInt(date.date().dayOfWeek() % 7 + 1);
}

QString MiscTool::getToday()
{
    return plainDate(now());
}

QString MiscTool::getTime(const QDateTime &date)
{
    return number(getHour(date)) + u':' + number(getMinute(date)) + u':' + number(getSecond(date));
}

QString MiscTool::getNow(const QDateTime &date)
{
    return plainDate(date) + u' ' + getTime(date);
}

QString MiscTool::getTodayStartTime(const QDateTime &date)
{
    return plainDate(date) + dayStart;
}

QString MiscTool::getTodayEndTime(const QDateTime &date)
{
    return plainDate(date) + dayEnd;
}

QString MiscTool::getToday(const QDateTime &date)
{
    return yearAndMonth(date) + u'-' + padded(getDay(date));
}

QString MiscTool::getDateStr(const QDateTime &date)
{
    return getToday(date);
}

QString MiscTool::getDateTimeStr(const QDateTime &date)
{
    return getDateStr(date) + u' ' + padded(getHour(date)) + u':' + padded(getMinute(date)) + u':'
           + padded(getSecond(date));
}

QString MiscTool::getNowAfterOneYear(const QDateTime &date)
{
    return getToday(date.addYears(1)) + dayEnd;
}

QString MiscTool::getThisYearStartTime(const QDateTime &date)
{
    return number(getYear(date)) + QStringLiteral("-01-01") + dayStart;
}

QString MiscTool::getThisYearEndTime(const QDateTime &date)
{
    return number(getYear(date)) + QStringLiteral("-12-31") + dayEnd;
}

QString MiscTool::getThisMonthStartTime(const QDateTime &date)
{
    return getThisMonthStartDate(date) + dayStart;
}

QString MiscTool::getThisMonthEndTime(const QDateTime &date)
{
    return getThisMonthEndDate(date) + dayEnd;
}

QString MiscTool::getThisMonthStartDate(const QDateTime &date)
{
    return yearAndMonth(date) + QStringLiteral("-01");
}

QString MiscTool::getThisMonthEndDate(const QDateTime &date)
{
    return yearAndMonth(date) + u'-' + number(getLastDayOfThisMonth(date));
}

uint MiscTool::getLastMonth(const QDateTime &date)
{
    return getMonth(inLastMonth(date));
}

QString MiscTool::getLastMonthStartTime(const QDateTime &date)
{
    return getThisMonthStartTime(inLastMonth(date));
}

QString MiscTool::getLastMonthEndTime(const QDateTime &date)
{
    return getThisMonthEndTime(inLastMonth(date));
}

QString MiscTool::getLastMonthStartDate(const QDateTime &date)
{
    return getThisMonthStartDate(inLastMonth(date));
}

QString MiscTool::getLastMonthEndDate(const QDateTime &date)
{
    return getThisMonthEndDate(inLastMonth(date));
}

uint MiscTool::getLastDayOfThisMonth(const QDateTime &date)
{
    return toUInt(date.date().daysInMonth());
}

uint MiscTool::getLastDayOfLastMonth(const QDateTime &date)
{
    return getLastDayOfThisMonth(inLastMonth(date));
}

QDateTime MiscTool::getThisWeekStartDate(const QDateTime &date)
{
    return date.addDays(qint64(getDate(date)) - 6);
}

QDateTime MiscTool::getThisWeekEndDate(const QDateTime &date)
{
    return date.addDays(8 - qint64(getDate(date)));
}

QString MiscTool::getThisWeekStartTime(const QDateTime &date)
{
    return getDateStr(getThisWeekStartDate(date)) + dayStart;
}

QString MiscTool::getThisWeekEndTime(const QDateTime &date)
{
    return getDateStr(getThisWeekEndDate(date)) + dayEnd;
}

QString MiscTool::getDefaultStartDate()
{
    return QStringLiteral("1970-01-01");
}

QString MiscTool::getDefaultStartTime()
{
    return getDefaultStartDate() + dayStart;
}

QString MiscTool::getServerNow()
{
    return QStringLiteral("${SERVER_NOW}");
}

QString MiscTool::getServerNowAfterOneYear()
{
    return QStringLiteral("${SERVER_NOW_AFTER_ONE_YEAR}");
}

QDateTime MiscTool::getDateFromDateStr(const QString &text)
{
    return dateAt(text, QTime(0, 0));
}

QDateTime MiscTool::getDateFromDatetimeStr(const QString &text)
{
    return dateAt(text,
                  QTime(text.mid(11, 2).toInt(), text.mid(14, 2).toInt(), text.mid(17, 2).toInt()));
}

QString MiscTool::getTimeAfterOneYear(const QString &text)
{
    return QString::number(text.left(4).toInt() + 1) + u'-' + text.mid(5);
}

qint64 MiscTool::getAvailableSecondsTo(const QString &end, const QString &currentTime)
{
    const QDateTime from = getDateFromDatetimeStr(currentTime);
    const QDateTime to = getDateFromDatetimeStr(end);
    return from.isValid() && to.isValid() ? from.secsTo(to) : 0;
}
