#pragma once

#include <QString>

#include <optional>

/**
 * Converts durations and points in time to text and back.
 *
 * Durations are signed seconds. Points in time are Unix seconds and are shown in local time. Any
 * thread may call these functions; `timeSecondPrecision` is set once, before the first call.
 */
namespace ZAS
{

/// Whether the customer's times are shown with seconds. The host sets it at start-up.
extern bool timeSecondPrecision;

/// Both return `timeSecondPrecision`.
bool useSecondPrecision();
bool isTimeSecondPrecision();

/**
 * Returns a duration as text, with every number padded to at least two digits.
 *
 * `format` 1 means the hours alone, without a sign; 2 means hours:minutes; any other value means
 * hours:minutes:seconds. If `limit24`, a duration of more than 86,400 seconds is wrapped: its hours
 * are shown modulo 24. Exactly 86,400 seconds are shown as 24:00. Negative durations are never
 * wrapped.
 */
QString tsToTimeString(long long seconds, unsigned int format, bool limit24);

/// Returns a duration as text in the customer's precision, never wrapped.
QString tsToTimeString(long long seconds);
/// Returns a duration as text in the customer's precision, wrapped as if `limit24` were set.
QString tsToTimeStringLimit(long long seconds);

/**
 * Parses a duration written as hours:minutes or hours:minutes:seconds. The hours may have a minus
 * sign and any number of digits. Returns nothing for any other text, for minutes or seconds above
 * 59, and for a duration that does not fit into the result.
 */
std::optional<long long> timeStringToTs(const QString &text);

/// Returns the local date in the short format of the system's locale.
QString tsToDateString(unsigned int ts);
/// Returns tsToDateString(), a blank and the time of day in the customer's precision.
QString tsToDateTimeString(unsigned int ts);

/// Returns the time of day on a local clock at `ts`: hour * 3600 + minute * 60 + second.
unsigned int secondsFromTimestamp(unsigned int ts);

/**
 * Returns an input mask for a time field that contains `value`. The mask is a regular expression:
 * one "[0-9]" for each digit of the hours in `value`, but at least two; then two for the minutes
 * and, if `withSeconds`, two for the seconds. Colons separate the three parts.
 */
QString getMask4timeValue(const QString &value, bool withSeconds);

} // namespace ZAS
