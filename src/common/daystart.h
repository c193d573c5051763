#pragma once

#include <QDateTime>

/**
 * Returns the first moment of `date` in local time.
 *
 * Unlike QDate::startOfDay(), it is the same moment in every call where a clock set back makes
 * midnight come twice: the earlier of the two. Where summer time skips midnight it is the end of
 * the gap. `date` must be valid.
 */
QDateTime dayStart(const QDate &date);
