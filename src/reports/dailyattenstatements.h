#pragma once

#include "reports/dailyattenoptions.h"

#include <QDate>
#include <QFlags>
#include <QString>
#include <QVector>

/// What the daily report reads about one person and one day. Each of these values has a statement
/// of its own; the statements run in this order.
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
 * Builds the statements that read DayValues. They have no placeholders.
 *
 * forOne() is for one person and one day, forMany() for several people and days. Both select the
 * same records, except for the overtime; see forMany(). The first two columns that forMany()
 * selects identify the person and the day: the uid, and the record's moment in Unix seconds.
 */
class DailyAttenStatements
{
public:
    explicit DailyAttenStatements(const DailyAttenOptions &options);

    /// Returns the values that a report with these options shows.
    DayValues values() const;

    QString forOne(DayValue value, unsigned int uid, const DaySpan &day) const;
    /// Without the option `advancedOvertime`, the statement for the overtime selects more records
    /// than forOne(): the caller must ignore those whose moment is not the start of a day.
    QString forMany(DayValue value, const QVector<unsigned int> &uids, const DaySpan &days) const;

private:
    DailyAttenOptions options;
};
