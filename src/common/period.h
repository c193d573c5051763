#pragma once

#include <QDateTime>

/// Returns the first day of the month of `date`.
QDate firstOfMonth(const QDate &date);

/**
 * Returns the first moment of `date` in local time. To find the end of a day, pass the next day,
 * because a day may have 23 or 25 hours.
 *
 * If the clock is set back and midnight occurs twice, returns the earlier midnight, while
 * QDate::startOfDay() may return either. If summer time skips midnight, returns the end of the gap.
 * `date` must be valid.
 */
QDateTime dayStart(const QDate &date);

/// Returns dayStart(date) as Unix seconds.
qint64 dayStartSeconds(const QDate &date);
