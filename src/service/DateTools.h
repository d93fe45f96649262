// Dates and times as the texts that the service keeps, in the local time zone. "Now" may be given,
// else it is the machine's. Padded texts have two digits for all but the year (2016-03-05
// 09:05:03), plain ones as many as needed (2016-3-5 9:5:3). Any thread.
#pragma once

#include <QDateTime>
#include <QString>

namespace MiscTool {

[[nodiscard]] inline QDateTime now()
{
    return QDateTime::currentDateTime();
}

[[nodiscard]] uint getYear(const QDateTime &date = now());
[[nodiscard]] uint getMonth(const QDateTime &date = now());
[[nodiscard]] uint getDay(const QDateTime &date = now());
[[nodiscard]] uint getHour(const QDateTime &date = now());
[[nodiscard]] uint getMinute(const QDateTime &date = now());
[[nodiscard]] uint getSecond(const QDateTime &date = now());
// Weekday: 1 is Sunday, 7 Saturday.
[[nodiscard]] uint getDate(const QDateTime &date = now());

// Plain.
[[nodiscard]] QString getToday();
[[nodiscard]] QString getTime(const QDateTime &date = now());
[[nodiscard]] QString getNow(const QDateTime &date = now());
[[nodiscard]] QString getTodayStartTime(const QDateTime &date = now());
[[nodiscard]] QString getTodayEndTime(const QDateTime &date = now());

// Padded.
[[nodiscard]] QString getToday(const QDateTime &date);
[[nodiscard]] QString getDateStr(const QDateTime &date);
[[nodiscard]] QString getDateTimeStr(const QDateTime &date);
[[nodiscard]] QString getNowAfterOneYear(const QDateTime &date = now());

// First and last second or day of a period, padded.
[[nodiscard]] QString getThisYearStartTime(const QDateTime &date = now());
[[nodiscard]] QString getThisYearEndTime(const QDateTime &date = now());
[[nodiscard]] QString getThisMonthStartTime(const QDateTime &date = now());
[[nodiscard]] QString getThisMonthEndTime(const QDateTime &date = now());
[[nodiscard]] QString getThisMonthStartDate(const QDateTime &date = now());
[[nodiscard]] QString getThisMonthEndDate(const QDateTime &date = now());
[[nodiscard]] uint getLastMonth(const QDateTime &date = now());
[[nodiscard]] QString getLastMonthStartTime(const QDateTime &date = now());
[[nodiscard]] QString getLastMonthEndTime(const QDateTime &date = now());
[[nodiscard]] QString getLastMonthStartDate(const QDateTime &date = now());
[[nodiscard]] QString getLastMonthEndDate(const QDateTime &date = now());
[[nodiscard]] uint getLastDayOfThisMonth(const QDateTime &date = now());
[[nodiscard]] uint getLastDayOfLastMonth(const QDateTime &date = now());
// (weekday − 6) and (8 − weekday) days from today: the end is the coming Sunday.
[[nodiscard]] QDateTime getThisWeekStartDate(const QDateTime &date = now());
[[nodiscard]] QDateTime getThisWeekEndDate(const QDateTime &date = now());
[[nodiscard]] QString getThisWeekStartTime(const QDateTime &date = now());
[[nodiscard]] QString getThisWeekEndTime(const QDateTime &date = now());
[[nodiscard]] QString getDefaultStartDate();
[[nodiscard]] QString getDefaultStartTime();

// Placeholders that the service replaces by its own clock.
[[nodiscard]] QString getServerNow();
[[nodiscard]] QString getServerNowAfterOneYear();

// Of padded texts, by position; invalid where that gives no date.
[[nodiscard]] QDateTime getDateFromDateStr(const QString &text);
[[nodiscard]] QDateTime getDateFromDatetimeStr(const QString &text);
// The text with its year raised by one, whether the day exists or not.
[[nodiscard]] QString getTimeAfterOneYear(const QString &text);
// Seconds from the current time to the end; negative when that has passed, 0 where a text is no
// time.
[[nodiscard]] qint64 getAvailableSecondsTo(const QString &end, const QString &currentTime);

}
