#pragma once

#include <QVariant>

constexpr double secondsPerHour = 3600.0;
/// The daily report's time columns show a duration only if it is longer than this.
constexpr double shownAboveSeconds = 59.0;

/// Returns a duration as a text such as "07:05:09", or an empty value for 59 seconds or less. If
/// `decimal`, returns a number of hours, or an empty value for 0 or less.
QVariant durationValue(double seconds, bool decimal);
