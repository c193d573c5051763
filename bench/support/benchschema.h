#pragma once

#include "support/testserver.h"

#include <QDate>
#include <QDateTime>

/**
 * A customer's database with made-up people: for each of them attendance, corrections and
 * interruptions on the first `days` days of the month, and the month's totals.
 */
class BenchSchema
{
public:
    /// What the months before the report's hold, which the reports do not ask for.
    enum class Past { None, OneMonth };

    BenchSchema(int people, int days, Past past = Past::None);

    QString name() const { return database.name(); }
    const TestDatabase &tables() const { return database; }

    /// The moment at which a report over `days` days is made.
    static QDateTime moment(int days);

private:
    void addDay(const QDate &date);

    TestDatabase database;
    int people;
};
