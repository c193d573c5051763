#pragma once

#include <QVariant>

constexpr double secondsPerHour = 3600.0;
constexpr double shownAboveSeconds = 59.0; ///< text durations of less than a minute are not shown

/// Hours as a number for any positive duration, or its text above 59 seconds; else empty.
QVariant durationValue(double seconds, bool decimal);
