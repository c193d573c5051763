#pragma once

#include "reports/monthlyattenrow.h"

#include <QDate>
#include <QHash>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QVector>

/// What the monthly report shows; keys shared with the product's exports.
struct MonthlyAttenOptions {
    bool advancedOvertime = false; ///< "advancedOvertime" is exactly 1
    bool payrollNumber = false;    ///< "monthAttenUsePamID"
    QStringList extraShortcuts;    ///< "monthAttenInterrupts", not trimmed
};

/// The product's kinds of interruption.
struct InterruptionCatalogue {
    QHash<unsigned int, QString> iidToName;
    QHash<QString, unsigned int> shortcutToIid;
};

/// A calendar month as the queries ask for it.
struct AttenMonth {
    explicit AttenMonth(const QDate &date);

    QString start; ///< the first second, decimal Unix seconds
    QString end;   ///< the first second of the next month
    QString key;   ///< year * 100 + month
};

/**
 * Reads what the monthly report shows.
 *
 * Lives for one report, on the connection and in the thread of its worker. Failed queries are
 * logged here; all but the one for the people leave their values out, and the report goes on.
 */
class MonthlyAttenData
{
public:
    MonthlyAttenData(const QSqlDatabase &database, const MonthlyAttenOptions &options,
                     const QDate &today);

    /// The people of the month, in the order of the sheet; false when the query failed.
    bool loadPeople();
    /// Everything else about these people.
    void loadValues();

    int count() const { return people.size(); }
    MonthlyAttenRow row(int index) const;

private:
    struct Person {
        unsigned int uid;
        QString name;
    };
    struct Numbers {
        unsigned int pid = 0;
        QString pamId;
    };
    struct Totals {
        double fond = 0;
        double overtime = 0;
        AttMonthValues values;
    };

    QString uidText() const;
    void loadNumbers();
    void loadTotals(const QString &uids);
    void loadInterruptions(const QString &uids);
    void loadWork(const QString &uids);

    QSqlDatabase database;
    MonthlyAttenOptions options;
    AttenMonth month;
    QVector<Person> people;
    // By uid.
    QHash<unsigned int, Numbers> numbers;
    QHash<unsigned int, Totals> totals;
    QHash<unsigned int, QHash<unsigned int, double>> interruptions;
    QHash<unsigned int, double> work;
};

/// Adds the schema's kinds of interruption to both maps; false, logged as `failure`, when the query
/// failed.
bool loadInterruptionCatalogue(const QSqlDatabase &database,
                               QHash<unsigned int, QString> &iidToName,
                               QHash<QString, unsigned int> &shortcutToIid, const char *failure);
