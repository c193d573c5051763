#pragma once

#include "support/benchschema.h"

#include <QString>

/**
 * Customers of the same size, each with a database of its own, and the information database that
 * lists them. Both reports of all of them are due as soon as somebody serves them.
 *
 * The databases are copies of one, but for the names of the people, which carry the customer's
 * number: a report that went to another customer would be found out.
 */
class Fleet
{
public:
    Fleet(int customers, int people, int days);
    ~Fleet();
    Q_DISABLE_COPY_MOVE(Fleet)

    int customers() const { return count; }
    /// The name of a customer's database is this and its number, from 1 on.
    QString prefix() const { return source.name() + QStringLiteral("_"); }
    QString infoDatabase() const { return info.name(); }
    QString moment() const;

    /// As if no report had been made yet, nor a mail been queued.
    void reset() const;
    int queuedMails() const;

    /// Ends the program unless each customer has one mail for each report, with its own workbook in
    /// `folder`: one row for each person and day, and for each person.
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
