#include "common/zascalendar.h"

#include "common/freshquery.h"
#include "common/period.h"

#include <QDateTime>
#include <QDebug>
#include <QSqlError>
#include <QVariant>

#include <array>
#include <bitset>

namespace
{

constexpr unsigned int monthsKeyBase = 100;
constexpr int daysOfWeek = 7;

QDate dateOf(long long ts)
{
    return QDateTime::fromSecsSinceEpoch(ts).date();
}

unsigned int midnight32(const QDate &date)
{
    return static_cast<unsigned int>(dayStartSeconds(date));
}

} // namespace

unsigned int ZAS::midnightFromTs(unsigned int ts)
{
    return midnight32(dateOf(ts));
}

unsigned int ZAS::currentMidnight()
{
    return midnight32(QDate::currentDate());
}

long long ZAS::nextMidnight(long long ts)
{
    return dayStartSeconds(dateOf(ts).addDays(1));
}

long long ZAS::prevMidnight(long long ts)
{
    return dayStartSeconds(dateOf(ts).addDays(-1));
}

unsigned int ZAS::firstDayOfMonth(unsigned int ts)
{
    return midnight32(firstOfMonth(dateOf(ts)));
}

unsigned int ZAS::lastDayOfMonth(unsigned int ts)
{
    return midnight32(firstOfMonth(dateOf(ts)).addMonths(1).addDays(-1));
}

unsigned char ZAS::dayOfWeek(unsigned int ts)
{
    return static_cast<unsigned char>(dateOf(ts).dayOfWeek());
}

unsigned int ZAS::monthFromTimestamp(long long ts)
{
    return monthFromDate(dateOf(ts));
}

unsigned int ZAS::monthFromDate(const QDate &date)
{
    return static_cast<unsigned int>(date.year()) * monthsKeyBase +
           static_cast<unsigned int>(date.month());
}

QString ZAS::monthStrFromTimestamp(long long ts)
{
    return monthString(monthFromTimestamp(ts));
}

QString ZAS::monthString(unsigned int monthKey)
{
    return QStringLiteral("%1 / %2").arg(QString::number(monthKey % monthsKeyBase),
                                         QString::number(monthKey / monthsKeyBase));
}

int ZAS::workingDaysInMonth(unsigned char days, unsigned char firstDayOfWeek,
                            unsigned char holidays)
{
    constexpr int saturday = 6;
    constexpr int sunday = 7;
    constexpr int mondayAfterSunday = 8; // the day after it is 2, Tuesday
    int count = 0;
    int weekday = firstDayOfWeek;
    for (int day = 0; day < days; ++day) {
        if (weekday != saturday && weekday != sunday)
            ++count;
        weekday = weekday == mondayAfterSunday ? 2 : weekday + 1;
    }
    return count - holidays;
}

unsigned char ZAS::workingDaysInWeek(unsigned char freeDays)
{
    const std::bitset<daysOfWeek> free(freeDays);
    return static_cast<unsigned char>(daysOfWeek - free.count());
}

QDate ZAS::findFirstMonth()
{
    QSqlQuery query = freshQuery(QSqlDatabase::database());
    if (!query.exec(
            QStringLiteral("SELECT a.date FROM atten a WHERE a.date > 0 ORDER BY a.date LIMIT 1")))
        qCritical().noquote() << "ZAS::findFirstMonth() - SQL ERROR:" << query.lastError().text();
    return firstOfMonth(query.next() ? dateOf(query.value(0).toLongLong()) : QDate::currentDate());
}

QString ZAS::getDayName(unsigned char dayOfWeek, bool shortForm)
{
    struct Name {
        QString full;
        QString abbreviated;
    };
    static const std::array<Name, daysOfWeek> fromSunday{{
        {QStringLiteral("Nedeľa"), QStringLiteral("NE")},
        {QStringLiteral("Pondelok"), QStringLiteral("PO")},
        {QStringLiteral("Utorok"), QStringLiteral("UT")},
        {QStringLiteral("Streda"), QStringLiteral("ST")},
        {QStringLiteral("Štvrtok"), QStringLiteral("ŠT")},
        {QStringLiteral("Piatok"), QStringLiteral("PI")},
        {QStringLiteral("Sobota"), QStringLiteral("SO")},
    }};
    const Name &name = fromSunday.at(dayOfWeek < daysOfWeek ? dayOfWeek : 0);
    return shortForm ? name.abbreviated : name.full;
}
