#pragma once

#include <QVariant>

constexpr double secondsPerHour = 3600.0;
/// The daily report's time columns show only durations above this.
constexpr double shownAboveSeconds = 59.0;

/// Returns a duration as a text such as "07:05:09" or, if `decimal`, as a number of hours. Returns
/// an empty value for 59 seconds or less; if `decimal`, only for 0 or less.
QVariant durationValue(double seconds, bool decimal);
