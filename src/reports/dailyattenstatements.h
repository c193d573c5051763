#pragma once

#include "reports/dailyattenoptions.h"

#include <QDate>
#include <QFlags>
#include <QString>
#include <QVector>

/// The values of a row, each of which has its own statement, in the order of reading.
enum class DayValue { Attendance = 1, Overtime = 2, Corrections = 4, Interruptions = 8 };
Q_DECLARE_FLAGS(DayValues, DayValue)
Q_DECLARE_OPERATORS_FOR_FLAGS(DayValues)

constexpr DayValue dayValues[] = {DayValue::Attendance, DayValue::Overtime, DayValue::Corrections,
                                  DayValue::Interruptions};

/// One day or several consecutive ones: [start, end) in Unix seconds.
struct DaySpan {
    qint64 start;
    qint64 end;

    static DaySpan of(const QDate &day);
};

/**
 * The statements that read the days of people, with all parameters filled in.
 *
 * forOne() is for one person and one day, forMany() for several people and days. Both find the same
 * rows, except for the overtime; see forMany(). The rows of forMany() begin with two columns that
 * identify the person and the day: the uid and the moment.
 */
class DailyAttenStatements
{
public:
    explicit DailyAttenStatements(const DailyAttenOptions &options);

    /// Returns the values that a report with these options shows.
    DayValues values() const;

    QString forOne(DayValue value, unsigned int uid, const DaySpan &day) const;
    /// Without `advancedOvertime`, finds more overtime than forOne(): the caller must ignore rows
    /// whose moment is not the first of a day.
    QString forMany(DayValue value, const QVector<unsigned int> &uids, const DaySpan &days) const;

private:
    DailyAttenOptions options;
};
