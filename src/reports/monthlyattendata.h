#pragma once

#include "reports/monthlyattenoptions.h"
#include "reports/monthlyattenrow.h"

#include <QDate>
#include <QHash>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QVector>

/// A schema's kinds of interruption. A shortcut is the short name of a kind.
struct InterruptionCatalogue {
    QHash<unsigned int, QString> iidToName;
    QHash<QString, unsigned int> shortcutToIid;
};

/// The limits and the key of a calendar month, as text for statements.
struct AttenMonth {
    explicit AttenMonth(const QDate &date);

    QString start; ///< the month's first second, in decimal Unix seconds
    QString end;   ///< the next month's first second, in decimal Unix seconds
    QString key;   ///< year * 100 + month
};

/**
 * Reads what the monthly report shows.
 *
 * Create one object per workbook, in the thread that owns the connection. Failed queries are
 * logged. If the people cannot be read, there is no report. If another query fails, its values stay
 * empty and the report goes on.
 */
class MonthlyAttenData
{
public:
    MonthlyAttenData(const QSqlDatabase &db, const MonthlyAttenOptions &reportOptions,
                     const QDate &today);

    /// Loads the people of the month, in the order of the sheet. Returns false if the query failed.
    bool loadPeople();
    /// Loads everything else about these people. Returns false if a query failed.
    bool loadValues();

    /// Returns the statements with which a report reads the month of `today`. The first one reads
    /// the people. In place of the people's uids, the
    /// statements contain 0, which is nobody's.
    static QStringList statements(const QDate &today);
    /// Returns the statement that counts the people.
    static QString countStatement(const QDate &today);

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
        double plannedHours = 0;
        double overtimeHours = 0;
        AttMonthValues values;
    };

    QString uidText() const;
    bool loadNumbers();
    bool loadTotals(const QString &uids);
    bool loadInterruptions(const QString &uids);
    bool loadWork(const QString &uids);

    QSqlDatabase database;
    MonthlyAttenOptions options;
    AttenMonth month;
    QVector<Person> people;
    // The keys are uids. The inner keys of `interruptionHours` are interruption ids.
    QHash<unsigned int, Numbers> numbers;
    QHash<unsigned int, Totals> totals;
    QHash<unsigned int, QHash<unsigned int, double>> interruptionHours;
    QHash<unsigned int, double> workedHours;
};

/// Adds the schema's kinds of interruption to both maps. On an error, logs `failure` and the
/// driver's text, and returns false.
bool loadInterruptionCatalogue(const QSqlDatabase &database,
                               QHash<unsigned int, QString> &iidToName,
                               QHash<QString, unsigned int> &shortcutToIid, const char *failure);
