#pragma once

#include <QVariant>

constexpr double secondsPerHour = 3600.0;
constexpr double shownAboveSeconds = 59.0; ///< as text, shorter durations are not shown

/// If `decimal`, returns a positive duration as a number of hours, otherwise a duration above 59
/// seconds as text. Returns an empty value for any other duration.
QVariant durationValue(double seconds, bool decimal);
