#pragma once

#include "reports/dailyattenoptions.h"

#include <QDate>
#include <QFlags>
#include <QString>
#include <QVector>

/// The values of a row that have a statement each, in the order in which they are read.
enum class DayValue { Attendance = 1, Overtime = 2, Corrections = 4, Interruptions = 8 };
Q_DECLARE_FLAGS(DayValues, DayValue)
Q_DECLARE_OPERATORS_FOR_FLAGS(DayValues)

constexpr DayValue dayValues[] = {DayValue::Attendance, DayValue::Overtime, DayValue::Corrections,
                                  DayValue::Interruptions};

/// One day, or several in a row: [start, end) in Unix seconds.
struct DaySpan {
    qint64 start;
    qint64 end;

    static DaySpan of(const QDate &day);
};

/**
 * The statements about what people did on their days, with the values pasted in.
 *
 * Both forms have the same conditions, so that they find the same rows: the first asks for one
 * person and one day; the second for several, and its rows begin with two columns more, the uid and
 * the moment by which they belong to a person and a day.
 */
class DailyAttenStatements
{
public:
    explicit DailyAttenStatements(const DailyAttenOptions &options);

    /// Returns the values that the options ask for.
    DayValues values() const;

    QString forOne(DayValue value, unsigned int uid, const DaySpan &day) const;
    /// Of the rows of plain overtime, only those count whose moment is the first one of a day.
    QString forMany(DayValue value, const QVector<unsigned int> &uids, const DaySpan &days) const;

private:
    DailyAttenOptions options;
};
