#pragma once

#include "reports/dailyattenrow.h"
#include "reports/dailyattenstatements.h"

#include <QSqlDatabase>

class QSqlQuery;

/**
 * Reads one day of one person with one statement per value.
 *
 * These statements define what the report shows; DailyAttenAhead only saves round trips.
 */
class DailyAttenReader
{
public:
    DailyAttenReader(const QSqlDatabase &db, const DailyAttenOptions &options);

    /// Reads `values` into `row`. If the query for a value fails, logs the error, resets the value
    /// and marks the row as incomplete.
    void read(DayValues values, unsigned int uid, const DaySpan &day, DailyAttenRow &row) const;

private:
    QSqlDatabase database;
    DailyAttenStatements statements;
};
