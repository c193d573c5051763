#pragma once

#include <QDate>
#include <QString>

/**
 * Calendar arithmetic on Unix seconds, all in local time. A "midnight" is the first moment of a
 * day, as dayStart() returns it. A month key is year * 100 + month.
 */
namespace ZAS
{

unsigned int midnightFromTs(unsigned int ts);
unsigned int currentMidnight();
/// Return the midnights of the following and of the preceding day.
long long nextMidnight(long long ts);
long long prevMidnight(long long ts);

/// Return the midnights of the first and of the last day of the month.
unsigned int firstDayOfMonth(unsigned int ts);
unsigned int lastDayOfMonth(unsigned int ts);

/// Returns the day of the week: 1 = Monday ... 7 = Sunday.
unsigned char dayOfWeek(unsigned int ts);

unsigned int monthFromTimestamp(long long ts);
unsigned int monthFromDate(const QDate &date);
/// Return a text such as "3 / 2020" for March 2020.
QString monthStrFromTimestamp(long long ts);
QString monthString(unsigned int monthKey);

/**
 * Returns the number of working days in a month of `days` days that begins on `firstDayOfWeek`
 * (1 = Monday): its Mondays to Fridays, minus `holidays`. The result may be negative.
 */
int workingDaysInMonth(unsigned char days, unsigned char firstDayOfWeek, unsigned char holidays);

/// Returns 7 minus the number of free days. Each set bit from 0 to 6 of `freeDays` marks one free
/// day of the week; bit 7 is ignored.
unsigned char workingDaysInWeek(unsigned char freeDays);

/**
 * Returns the first day of the month of the oldest attendance record that has a date. If there is
 * no such record, returns the first day of the current month. Also returns that day if the query
 * fails, and logs the error. Uses the default connection; call it on that connection's thread.
 */
QDate findFirstMonth();

/// Returns the Slovak name of a day of the week or, if `shortForm`, the two-letter abbreviation.
/// The values 1 to 6 are Monday to Saturday; any other value is Sunday.
QString getDayName(unsigned char dayOfWeek, bool shortForm);

} // namespace ZAS
