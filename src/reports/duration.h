#pragma once

#include <QVariant>

constexpr double secondsPerHour = 3600.0;
constexpr double shownAboveSeconds = 59.0; ///< up to this, the cell of a duration stays empty

/// Returns a duration as a text such as "07:05:09" or, if `decimal`, as a number of hours. Returns
/// an empty value instead of a text for up to 59 seconds, or instead of a number up to 0.
QVariant durationValue(double seconds, bool decimal);
