#include "common/zas.h"

namespace
{

constexpr unsigned long long secondsPerMinute = 60;
constexpr unsigned long long secondsPerHour = 3600;
constexpr long long secondsPerDay = 86400;
constexpr unsigned long long hoursPerDay = 24;

QString twoDigits(unsigned long long number)
{
    return QString::number(number).rightJustified(2, QLatin1Char('0'));
}

} // namespace

QString ZAS::tsToTimeString(long long seconds, unsigned int format, bool limit24)
{
    // Negated as unsigned: the smallest long long has no positive counterpart.
    const auto bits = static_cast<unsigned long long>(seconds);
    const unsigned long long magnitude = seconds < 0 ? 0 - bits : bits;

    unsigned long long hours = magnitude / secondsPerHour;
    if (limit24 && seconds > secondsPerDay)
        hours %= hoursPerDay;
    if (format == 1)
        return twoDigits(hours);

    const QString sign = seconds < 0 ? QStringLiteral("-") : QString();
    const QString minutes = twoDigits(magnitude % secondsPerHour / secondsPerMinute);
    if (format == 2)
        return sign + QStringLiteral("%1:%2").arg(twoDigits(hours), minutes);
    return sign + QStringLiteral("%1:%2:%3")
                      .arg(twoDigits(hours), minutes, twoDigits(magnitude % secondsPerMinute));
}
