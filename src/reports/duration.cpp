#include "reports/duration.h"

#include "common/zas.h"

#include <algorithm>

QVariant durationValue(double seconds, bool decimal)
{
    if (decimal)
        return seconds > 0.0 ? QVariant(seconds / secondsPerHour) : QVariant();
    if (!(seconds > shownAboveSeconds))
        return QVariant();
    constexpr double largest = 9.0e18; // fits in a 64-bit integer
    return ZAS::tsToTimeString(static_cast<qint64>(std::min(seconds, largest)), 3, false);
}
