#pragma once

#include "support/testserver.h"

#include <QDate>
#include <QDateTime>

/**
 * A customer's database with generated people. Each person has attendance, corrections and
 * interruptions on the first `days` days of the month, and totals for the month.
 */
class BenchSchema
{
public:
    /// How many months before the month of the report have data, which the report does not need.
    enum class Past { None, OneMonth };

    BenchSchema(int people, int days, Past past = Past::None);

    QString name() const { return database.name(); }
    const TestDatabase &tables() const { return database; }

    /// Returns the moment at which to make a report of the first `days` days.
    static QDateTime moment(int days);

private:
    void addDay(const QDate &date);

    TestDatabase database;
    int people;
};
