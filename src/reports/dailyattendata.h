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

/// Shifts of one month, by uid and day of the month.
using ShiftTable = QHash<QPair<int, int>, int>;

/// Reads the shifts of the month of `date`; a failed query is logged and leaves the table empty.
ShiftTable loadShifts(const QSqlDatabase &database, const QDate &date);

/**
 * Reads what the daily report shows: the people of the month so far, and each one's days.
 *
 * Lives for one report, on the connection and in the thread of its worker. Failed queries are
 * logged here; all but the one for the people leave their values empty, and the report goes on.
 */
class DailyAttenData
{
public:
    /// `today` is the last day shown. Between two statements `isStopped` is asked whether to go on.
    DailyAttenData(const QSqlDatabase &database, const DailyAttenOptions &options,
                   const QDate &today, std::function<bool()> isStopped);

    /// Returns false when the query failed.
    bool loadPeople();
    /// In the order of the sheet.
    const QVector<DailyAttenPerson> &people() const { return allPeople; }

    /// Reads each person's latest branch.
    void loadBranches();

    void setShifts(const ShiftTable &table) { shifts = table; }

    /// Returns the values of one person and one day; incomplete if a stop came before they were
    /// read. Fastest in the order of the sheet: day by day, in each the people in their order.
    DailyAttenRow row(const DailyAttenPerson &person, int dayOfMonth);

    /// Returns the statements that the report executes with these options, for nobody in
    /// particular: those of this class, of loadShifts() and of one day. That for the people comes
    /// first.
    static QStringList statements(const DailyAttenOptions &options, const QDate &today);

private:
    QString branch(const DailyAttenPerson &person) const;

    QSqlDatabase database;
    DailyAttenOptions options;
    QDate today;
    DailyAttenAhead ahead;
    DailyAttenReader reader;
    QVector<DailyAttenPerson> allPeople;
    QHash<unsigned int, QString> branches; ///< by uid
    ShiftTable shifts;
};
