#pragma once

#include <QVariant>

constexpr double secondsPerHour = 3600.0;
constexpr double shownAboveSeconds = 59.0; ///< up to this, the cell of a duration stays empty

/// Converts a duration to a text such as "07:05:09", or if `decimal` to a number of hours. Texts of
/// up to 59 seconds and numbers up to 0 are replaced by an empty value.
QVariant durationValue(double seconds, bool decimal);
