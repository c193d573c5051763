#include "reports/dailyattenreader.h"

#include "common/freshquery.h"
#include "reports/reportquery.h"

#include <QVariant>

namespace
{

/// If there are several records, the last one counts.
void readAttendance(QSqlQuery &query, DailyAttenRow &row)
{
    row.workedSeconds = 0;
    row.unworkedSeconds = 0;
    while (query.next()) {
        row.workedSeconds = query.value(1).toDouble();
        row.unworkedSeconds = query.value(0).toDouble() - row.workedSeconds;
    }
}

/// If there are several records, the last one counts.
void readOvertime(QSqlQuery &query, DailyAttenRow &row)
{
    row.overtimeSeconds = 0;
    while (query.next())
        row.overtimeSeconds = query.value(2).toDouble();
}

void readCorrections(QSqlQuery &query, DailyAttenRow &row)
{
    for (const Correction &correction : corrections)
        row.*correction.seconds = 0;
    while (query.next()) {
        if (const Correction *correction = correctionOf(query.value(0).toInt()))
            row.*correction->seconds += query.value(1).toDouble();
    }
}

void readInterruptions(QSqlQuery &query, DailyAttenRow &row)
{
    row.interruptions.clear();
    while (query.next()) {
        InterruptionTotal &total = row.interruptions[query.value(2).toString()];
        total.seconds += query.value(1).toDouble();
        ++total.count;
    }
}

struct Reading {
    DayValue value;
    const char *failure; ///< the beginning of the line logged if the query fails
    void (*read)(QSqlQuery &query, DailyAttenRow &row);
};

constexpr Reading readings[] = {
    {DayValue::Attendance, "DailyAttenReport::makeReport() atten SQL error:", readAttendance},
    {DayValue::Overtime, "DailyAttenReport::makeReport() overtime SQL error:", readOvertime},
    {DayValue::Corrections,
     "DailyAttenReport::makeReport() pseudo inters SQL error:", readCorrections},
    {DayValue::Interruptions,
     "DailyAttenReport::makeReport() inters SQL error:", readInterruptions},
};

} // namespace

DailyAttenReader::DailyAttenReader(const QSqlDatabase &db, const DailyAttenOptions &options)
    : database(db)
    , statements(options)
{
}

void DailyAttenReader::read(DayValues values, unsigned int uid, const DaySpan &day,
                            DailyAttenRow &row) const
{
    for (const Reading &reading : readings) {
        if (!values.testFlag(reading.value))
            continue;
        QSqlQuery query = freshQuery(database);
        row.complete &=
            execOrWarn(query, statements.forOne(reading.value, uid, day), reading.failure);
        reading.read(query, row);
    }
}
