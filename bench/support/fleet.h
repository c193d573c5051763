#pragma once

#include "support/benchschema.h"

#include <QString>

/**
 * Customers of the same size, each with a database of its own, and the information database that
 * lists them. Both reports of a customer are due as soon as a host serves the customer.
 *
 * The databases are copies of one, except that the names of the people contain the customer's
 * number, so that check() finds a report that went to the wrong customer.
 */
class Fleet
{
public:
    Fleet(int customers, int people, int days);
    ~Fleet();
    Q_DISABLE_COPY_MOVE(Fleet)

    int customers() const { return count; }
    /// The name of a customer's database is this prefix and the customer's number, from 1 on.
    QString prefix() const { return source.name() + QStringLiteral("_"); }
    QString infoDatabase() const { return info.name(); }
    QString moment() const;

    /// Deletes all mails and every "lastGenerated", so that all reports are due again.
    void reset() const;
    int queuedMails() const;

    /// Ends the program unless each customer has one mail per report, and each mail contains the
    /// customer's workbook as saved in `folder`. The daily workbook must have a row per person and
    /// day, and the monthly workbook a row per person.
    void check(const QString &folder) const;

private:
    void addCustomer(int number) const;
    void forEach(const QString &statement) const;

    const int count;
    const int people;
    const int days;
    const TestDatabase info;
    const BenchSchema source;
};
