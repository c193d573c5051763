#pragma once

#include "reports/dailyattenahead.h"
#include "reports/dailyattenoptions.h"
#include "reports/dailyattenreader.h"
#include "reports/dailyattenrow.h"

#include <QDate>
#include <QHash>
#include <QPair>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

/// The shifts of one month. A key is a uid and a day of the month.
using ShiftTable = QHash<QPair<int, int>, int>;

/// Reads the shifts of the month of `date`. On an error, logs it and returns an empty table.
ShiftTable loadShifts(const QSqlDatabase &database, const QDate &date);

/**
 * Reads what the daily report shows: the people of the month and, for each of them, every day so
 * far.
 *
 * Create one object per workbook, in the thread that owns the connection. Failed queries are
 * logged. If the people cannot be read, there is no report. If another query fails, its values stay
 * empty and the report goes on.
 */
class DailyAttenData
{
public:
    /// `lastDay` is the last day shown. Once `isStopped` returns true, row() stops reading ahead.
    DailyAttenData(const QSqlDatabase &db, const DailyAttenOptions &reportOptions,
                   const QDate &lastDay, std::function<bool()> isStopped);

    /// Reads the people. Returns false if the query failed.
    bool loadPeople();
    /// Returns the people in the order of the sheet.
    const QVector<DailyAttenPerson> &people() const { return allPeople; }

    /// Reads each person's latest branch.
    void loadBranches();

    void setShifts(const ShiftTable &table) { shifts = table; }

    /// Returns the row of one person and one day. Marks it as incomplete if a query failed or
    /// `isStopped` returned true. Calls in the order of the sheet are fastest: all people of day 1,
    /// then all people of day 2.
    DailyAttenRow row(const DailyAttenPerson &person, int dayOfMonth);

    /// Returns the statements that define what a report with these options shows. The first one
    /// reads the people. Statements about one person and one day are for the uid 0 and for `today`.
    /// The statement that reads the shifts has placeholders.
    static QStringList statements(const DailyAttenOptions &options, const QDate &today);
    /// Returns the statement that counts the people.
    static QString countStatement(const QDate &today);

private:
    QString branch(const DailyAttenPerson &person) const;

    QSqlDatabase database;
    DailyAttenOptions options;
    QDate today;
    DailyAttenAhead ahead;
    DailyAttenReader reader;
    QVector<DailyAttenPerson> allPeople;
    QHash<unsigned int, QString> branches; ///< the keys are uids
    ShiftTable shifts;
};
