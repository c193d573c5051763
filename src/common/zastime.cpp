#include "common/zastime.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>

#include <array>
#include <limits>

namespace
{

constexpr unsigned long long secondsPerMinute = 60;
constexpr unsigned long long secondsPerHour = 3600;
constexpr long long secondsPerDay = 86400;
constexpr unsigned long long hoursPerDay = 24;

constexpr unsigned int hoursAlone = 1;
constexpr unsigned int hoursAndMinutes = 2;
constexpr unsigned int hoursToSeconds = 3;
constexpr std::size_t longestTime = 32; // the largest number of hours has 16 digits

/// Writes `number`, with at least two digits, before `end`. Returns a pointer to the first digit.
QChar *putBefore(QChar *end, unsigned long long number)
{
    for (int digits = 0; digits < 2 || number > 0; ++digits, number /= 10)
        *--end = QLatin1Char(static_cast<char>('0' + number % 10));
    return end;
}

unsigned int customersFormat()
{
    return ZAS::timeSecondPrecision ? hoursToSeconds : hoursAndMinutes;
}

} // namespace

bool ZAS::timeSecondPrecision = false;

bool ZAS::useSecondPrecision()
{
    return timeSecondPrecision;
}

bool ZAS::isTimeSecondPrecision()
{
    return timeSecondPrecision;
}

QString ZAS::tsToTimeString(long long seconds, unsigned int format, bool limit24)
{
    // Negate as unsigned, because the smallest long long has no positive counterpart.
    const auto bits = static_cast<unsigned long long>(seconds);
    const unsigned long long magnitude = seconds < 0 ? 0 - bits : bits;

    unsigned long long hours = magnitude / secondsPerHour;
    if (limit24 && seconds > secondsPerDay)
        hours %= hoursPerDay;

    // A report formats hundreds of thousands of durations, so the text is built backwards in a
    // buffer, without temporaries.
    std::array<QChar, longestTime> buffer;
    QChar *const end = buffer.data() + buffer.size();
    QChar *begin = end;
    if (format != hoursAlone) {
        if (format != hoursAndMinutes) {
            begin = putBefore(begin, magnitude % secondsPerMinute);
            *--begin = QLatin1Char(':');
        }
        begin = putBefore(begin, magnitude % secondsPerHour / secondsPerMinute);
        *--begin = QLatin1Char(':');
    }
    begin = putBefore(begin, hours);
    if (seconds < 0 && format != hoursAlone)
        *--begin = QLatin1Char('-');
    return QString(begin, static_cast<int>(end - begin));
}

QString ZAS::tsToTimeString(long long seconds)
{
    return tsToTimeString(seconds, customersFormat(), false);
}

QString ZAS::tsToTimeStringLimit(long long seconds)
{
    return tsToTimeString(seconds, customersFormat(), true);
}

std::optional<long long> ZAS::timeStringToTs(const QString &text)
{
    static const QRegularExpression shape(
        QStringLiteral("\\A(-?)([0-9]+):([0-5][0-9])(?::([0-5][0-9]))?\\z"));
    const QRegularExpressionMatch match = shape.match(text);
    if (!match.hasMatch())
        return std::nullopt;

    const bool negative = match.capturedLength(1) > 0;
    const unsigned long long largest =
        static_cast<unsigned long long>(std::numeric_limits<long long>::max()) + (negative ? 1 : 0);
    bool fits = false;
    const unsigned long long hours = match.captured(2).toULongLong(&fits);
    const unsigned long long rest =
        match.captured(3).toULongLong() * secondsPerMinute + match.captured(4).toULongLong();
    if (!fits || hours > largest / secondsPerHour || rest > largest - hours * secondsPerHour)
        return std::nullopt;
    const unsigned long long magnitude = hours * secondsPerHour + rest;
    return static_cast<long long>(negative ? 0 - magnitude : magnitude);
}

QString ZAS::tsToDateString(unsigned int ts)
{
    return QLocale::system().toString(QDateTime::fromSecsSinceEpoch(ts).date(),
                                      QLocale::ShortFormat);
}

QString ZAS::tsToDateTimeString(unsigned int ts)
{
    const QTime time = QDateTime::fromSecsSinceEpoch(ts).time();
    return QStringLiteral("%1 %2").arg(
        tsToDateString(ts),
        time.toString(timeSecondPrecision ? QStringLiteral("HH:mm:ss") : QStringLiteral("HH:mm")));
}

unsigned int ZAS::secondsFromTimestamp(unsigned int ts)
{
    // On days with 23 or 25 hours, the seconds since midnight would differ from the time of day.
    const QTime time = QDateTime::fromSecsSinceEpoch(ts).time();
    return static_cast<unsigned int>(time.hour() * 3600 + time.minute() * 60 + time.second());
}

QString ZAS::getMask4timeValue(const QString &value, bool withSeconds)
{
    const QString digit = QStringLiteral("[0-9]");
    const QString two = digit + digit;
    int hourDigits = 0;
    for (const QChar c : value.section(QLatin1Char(':'), 0, 0))
        hourDigits += c.isDigit() ? 1 : 0;
    const QString hours = digit.repeated(qMax(2, hourDigits));
    const QString mask = hours + QLatin1Char(':') + two;
    return withSeconds ? mask + QLatin1Char(':') + two : mask;
}
