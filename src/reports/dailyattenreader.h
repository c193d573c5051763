#pragma once

#include "reports/dailyattenrow.h"
#include "reports/dailyattenstatements.h"

#include <QSqlDatabase>

class QSqlQuery;

/**
 * Reads one person's day by statements of its own.
 *
 * They define what the report shows; reading ahead only saves round trips.
 */
class DailyAttenReader
{
public:
    DailyAttenReader(const QSqlDatabase &database, const DailyAttenOptions &options);

    /// Replaces those values of `row`. A failed query is logged and leaves its value empty and the
    /// row incomplete.
    void read(DayValues values, unsigned int uid, const DaySpan &day, DailyAttenRow &row) const;

private:
    QSqlDatabase database;
    DailyAttenStatements statements;
};
