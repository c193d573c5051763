#include "reports/dailyattendata.h"

#include "common/freshquery.h"
#include "common/period.h"
#include "reports/reportquery.h"

#include <QSqlError>
#include <QVariant>

namespace
{

/// Identifiers of the records in `atten_data` that correct a day.
enum Correction { Unrecognised = 1000, Rounding = 1001, Penalty = 1002, Moved = 1003 };

// A day's statements, from `start`, the day's first second, to `end`, the next day's, both as
// decimal Unix seconds. The uid is left open, as "%1".

QString openUid()
{
    return QStringLiteral("%1");
}

QString attendanceStatement(const QString &start, const QString &end)
{
    return QStringLiteral("SELECT fond, work, diff, expFund FROM atten a WHERE uid = %1 "
                          "AND (a.date >= %2 AND a.date < %3)")
        .arg(openUid(), start, end);
}

QString overtimeStatement(const QString &start, const QString &end, bool advanced)
{
    return advanced
               ? QStringLiteral("SELECT uid, at.date, saldo_p FROM atten at WHERE (at.date >= %1 "
                                "AND at.date < %2) AND (saldo_p > 0) AND (ok > 0) AND (at.uid=%3)")
                     .arg(start, end, openUid())
               : QStringLiteral("SELECT uid, at.date, diff FROM atten at WHERE (at.date = %1) AND "
                                "(diff > 0) AND (ok > 0) AND (at.uid=%2)")
                     .arg(start, openUid());
}

QString correctionsStatement(const QString &start, const QString &end)
{
    return QStringLiteral("SELECT iid, duration FROM atten_data ad WHERE uid = %1 AND "
                          "(ad.from >= %2 AND ad.from < %3) AND (iid >= 1000 AND iid < "
                          "1004)")
        .arg(openUid(), start, end);
}

QString interruptionsStatement(const QString &start, const QString &end)
{
    return QStringLiteral("SELECT ad.iid, duration, i.shortcut, i.name FROM atten_data ad "
                          "LEFT JOIN inters i ON ad.iid = i.iid WHERE uid = %1 AND "
                          "(ad.from >= %2 AND ad.from < %3) AND (ad.iid < 1000) AND "
                          "(ad.iid > 1) AND del = 0")
        .arg(openUid(), start, end);
}

} // namespace

ShiftTable loadShifts(const QSqlDatabase &database, const QDate &date)
{
    ShiftTable shifts;
    const QDate first = firstOfMonth(date);
    QSqlQuery query = freshQuery(database);
    query.prepare(QStringLiteral("\n        SELECT uid, dom, shift\n        FROM atten\n        "
                                 "WHERE date >= :tsFrom AND date < :tsTo\n    "));
    query.bindValue(QStringLiteral(":tsFrom"), dayStartSeconds(first));
    query.bindValue(QStringLiteral(":tsTo"), dayStartSeconds(first.addMonths(1)));
    if (!query.exec()) {
        qWarning("DailyAttenReport::loadShiftsForMonth failed: %s",
                 qUtf8Printable(query.lastError().text()));
        return shifts;
    }
    while (query.next())
        shifts.insert({query.value(0).toInt(), query.value(1).toInt()}, query.value(2).toInt());
    return shifts;
}

PersonStatement::PersonStatement(const QString &text)
{
    const QString place = QStringLiteral("%1");
    const int cut = text.indexOf(place);
    before = text.left(cut);
    after = text.mid(cut + place.size());
}

DailyAttenData::DailyAttenData(const QSqlDatabase &db, const DailyAttenOptions &reportOptions)
    : database(db)
    , options(reportOptions)
{
}

std::optional<QVector<DailyAttenPerson>> DailyAttenData::people(const QDate &today) const
{
    const QString statement =
        QStringLiteral(
            "SELECT uid, pid, CONCAT_WS(' ', p.surname, p.name, p.title, p.title2) person, "
            "g.name grp, d.name depart, b.name branch FROM people p LEFT JOIN groups g "
            "USING(gid) LEFT JOIN departs d USING(did) LEFT JOIN branches b USING(bid) WHERE "
            "p.status=1 AND p.name != '<anonym>' AND p.begin < %1 AND (p.end IS NULL OR p.end "
            ">= %2) GROUP BY p.uid ORDER BY p.surname, p.name, p.pid")
            .arg(dayStartText(today.addDays(1)), dayStartText(firstOfMonth(today)));
    qDebug("DailyAttenReport::makeReport() people SQL: %s", qUtf8Printable(statement));

    QSqlQuery query = freshQuery(database);
    if (!execOrFail(query, statement, "DailyAttenReport::makeReport() people SQL error:"))
        return std::nullopt;
    QVector<DailyAttenPerson> people;
    while (query.next()) {
        DailyAttenPerson person;
        person.uid = query.value(0).toUInt();
        person.personalNumber = query.value(1).toDouble();
        person.name = query.value(2).toString().trimmed();
        person.group = query.value(3).toString();
        person.department = query.value(4).toString();
        person.homeBranch = query.value(5).toString();
        people.append(person);
    }
    return people;
}

void DailyAttenData::loadBranches()
{
    const QString statement =
        QStringLiteral("SELECT uid, br.name FROM brape b LEFT JOIN branches br ON "
                       "b.bid=br.bid ORDER BY b.since ASC");
    QSqlQuery query = freshQuery(database);
    if (!execOrWarn(query, statement, "DailyAttenReport::makeReport() branch SQL error:"))
        return;
    while (query.next())
        branches.insert(query.value(0).toUInt(), query.value(1).toString());
}

AttenDay DailyAttenData::day(const QDate &date) const
{
    const QString start = dayStartText(date);
    const QString end = dayStartText(date.addDays(1));
    return {date.day(), PersonStatement(attendanceStatement(start, end)),
            PersonStatement(overtimeStatement(start, end, options.advancedOvertime)),
            PersonStatement(correctionsStatement(start, end)),
            PersonStatement(interruptionsStatement(start, end))};
}

DailyAttenRow DailyAttenData::row(const DailyAttenPerson &person, const AttenDay &day) const
{
    const QString uid = QString::number(person.uid);
    DailyAttenRow row;
    row.dayOfMonth = day.dayOfMonth;
    readAttendance(uid, day, row);
    readOvertime(uid, day, row);
    readCorrections(uid, day, row);
    if (options.interruptions)
        readInterruptions(uid, day, row);
    row.branch = branch(person);
    row.shift = shifts.value({static_cast<int>(person.uid), day.dayOfMonth}, row.shift);
    return row;
}

void DailyAttenData::readAttendance(const QString &uid, const AttenDay &day,
                                    DailyAttenRow &row) const
{
    QSqlQuery query = freshQuery(database);
    row.complete &= execOrWarn(query, day.attendance.of(uid),
                               "DailyAttenReport::makeReport() atten SQL error:");
    while (query.next()) {
        row.workedSeconds = query.value(1).toDouble();
        row.unworkedSeconds = query.value(0).toDouble() - row.workedSeconds;
    }
}

void DailyAttenData::readOvertime(const QString &uid, const AttenDay &day, DailyAttenRow &row) const
{
    QSqlQuery query = freshQuery(database);
    row.complete &= execOrWarn(query, day.overtime.of(uid),
                               "DailyAttenReport::makeReport() overtime SQL error:");
    while (query.next())
        row.overtimeSeconds = query.value(2).toDouble();
}

void DailyAttenData::readCorrections(const QString &uid, const AttenDay &day,
                                     DailyAttenRow &row) const
{
    QSqlQuery query = freshQuery(database);
    row.complete &= execOrWarn(query, day.corrections.of(uid),
                               "DailyAttenReport::makeReport() pseudo inters SQL error:");
    while (query.next()) {
        const double seconds = query.value(1).toDouble();
        switch (query.value(0).toInt()) {
        case Unrecognised:
            row.unrecognisedSeconds += seconds;
            break;
        case Rounding:
            row.roundingSeconds += seconds;
            break;
        case Penalty:
            row.penaltySeconds += seconds;
            break;
        case Moved:
            row.movedSeconds += seconds;
            break;
        }
    }
}

void DailyAttenData::readInterruptions(const QString &uid, const AttenDay &day,
                                       DailyAttenRow &row) const
{
    QSqlQuery query = freshQuery(database);
    row.complete &= execOrWarn(query, day.interruptions.of(uid),
                               "DailyAttenReport::makeReport() inters SQL error:");
    while (query.next()) {
        InterruptionTotal &total = row.interruptions[query.value(2).toString()];
        total.seconds += query.value(1).toDouble();
        ++total.count;
    }
}

QString DailyAttenData::branch(const DailyAttenPerson &person) const
{
    return options.homeBranch ? person.homeBranch : branches.value(person.uid);
}
