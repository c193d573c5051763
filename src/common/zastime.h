#pragma once

#include <QString>

#include <optional>

/**
 * Durations and points in time as texts and back.
 *
 * Durations are signed seconds, points in time Unix seconds read in local time. Any thread may
 * call these functions; `timeSecondPrecision` is set once, before the first of them is used.
 */
namespace ZAS
{

/// Whether the customer shows times with seconds. The host sets it at start-up.
extern bool timeSecondPrecision;

/// Both return `timeSecondPrecision`.
bool useSecondPrecision();
bool isTimeSecondPrecision();

/**
 * Returns a duration as text, every number padded to at least two digits.
 *
 * `format` 1 gives the hours alone and never a sign, 2 hours:minutes, any other value
 * hours:minutes:seconds. With `limit24` a non-negative duration of more than 86,400 seconds keeps
 * only the hours of its last day; 86,400 itself stays 24:00, and negative ones are never wrapped.
 */
QString tsToTimeString(long long seconds, unsigned int format, bool limit24);

/// The same in the customer's precision, not wrapped.
QString tsToTimeString(long long seconds);
/// The same in the customer's precision, wrapped after a day.
QString tsToTimeStringLimit(long long seconds);

/**
 * Parses the texts of formats 2 and 3, with their sign and more than 99 hours; the hours may have a
 * single digit. Returns nothing for a text of another shape, minutes or seconds above 59, or a
 * duration that does not fit.
 */
std::optional<long long> timeStringToTs(const QString &text);

/// Returns the local date in the short format of the system's locale.
QString tsToDateString(unsigned int ts);
/// Returns the same, a blank, and the time of day in the customer's precision.
QString tsToDateTimeString(unsigned int ts);

/// Returns the time of day that a local clock shows: hour * 3600 + minute * 60 + second.
unsigned int secondsFromTimestamp(unsigned int ts);

/**
 * Returns an input mask for a time field that holds `value`: the digit class "[0-9]" for each digit
 * of the hours, at least two, and two each for minutes and, if `withSeconds`, seconds, separated by
 * colons.
 */
QString getMask4timeValue(const QString &value, bool withSeconds);

} // namespace ZAS
