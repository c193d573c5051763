#pragma once

#include "reports/dailyattenoptions.h"
#include "reports/dailyattenrow.h"

#include <QDate>
#include <QHash>
#include <QPair>
#include <QSqlDatabase>
#include <QString>
#include <QStringBuilder>
#include <QVector>

#include <optional>

/// Shifts of one month, by uid and day of the month.
using ShiftTable = QHash<QPair<int, int>, int>;

/// Reads the shifts of the month of `date`; a failed query is logged and leaves the table empty.
ShiftTable loadShifts(const QSqlDatabase &database, const QDate &date);

/// A statement about one person, with all pasted in but the uid.
class PersonStatement
{
public:
    /// `text` holds "%1" where the uid goes, once.
    explicit PersonStatement(const QString &text);

    QString of(const QString &uid) const { return before % uid % after; }

private:
    QString before;
    QString after;
};

/// A calendar day with its statements: made once a day, used for every person.
struct AttenDay {
    int dayOfMonth;
    PersonStatement attendance;
    PersonStatement overtime;
    PersonStatement corrections;
    PersonStatement interruptions;
};

/**
 * Reads what the daily report shows: the people of the month so far, and each one's days.
 *
 * Lives for one report, on the connection and in the thread of its worker. Failed queries are
 * logged here; all but the one for the people leave their values empty, and the report goes on.
 */
class DailyAttenData
{
public:
    DailyAttenData(const QSqlDatabase &database, const DailyAttenOptions &options);

    /// Returns them in the order of the sheet; nothing when the query failed. `today` is the last
    /// day shown.
    std::optional<QVector<DailyAttenPerson>> people(const QDate &today) const;

    /// Reads each person's latest branch.
    void loadBranches();

    void setShifts(const ShiftTable &table) { shifts = table; }

    AttenDay day(const QDate &date) const;

    /// Returns the values of one person and one day.
    DailyAttenRow row(const DailyAttenPerson &person, const AttenDay &day) const;

private:
    void readAttendance(const QString &uid, const AttenDay &day, DailyAttenRow &row) const;
    void readOvertime(const QString &uid, const AttenDay &day, DailyAttenRow &row) const;
    void readCorrections(const QString &uid, const AttenDay &day, DailyAttenRow &row) const;
    void readInterruptions(const QString &uid, const AttenDay &day, DailyAttenRow &row) const;
    QString branch(const DailyAttenPerson &person) const;

    QSqlDatabase database;
    DailyAttenOptions options;
    QHash<unsigned int, QString> branches; ///< by uid
    ShiftTable shifts;
};
