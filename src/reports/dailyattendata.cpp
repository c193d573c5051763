#include "reports/dailyattendata.h"

#include "common/freshquery.h"
#include "common/period.h"
#include "reports/reportquery.h"

#include <QSqlError>
#include <QVariant>

namespace
{

QString isEmployed(const QDate &today)
{
    return QStringLiteral("p.status=1 AND p.name != '<anonym>' AND p.begin < %1 AND (p.end IS NULL "
                          "OR p.end >= %2)")
        .arg(dayStartText(today.addDays(1)), dayStartText(firstOfMonth(today)));
}

QString peopleStatement(const QDate &today)
{
    return QStringLiteral(
               "SELECT uid, pid, CONCAT_WS(' ', p.surname, p.name, p.title, p.title2) person, "
               "g.name grp, d.name depart, b.name branch FROM people p LEFT JOIN groups g "
               "USING(gid) LEFT JOIN departs d USING(did) LEFT JOIN branches b USING(bid) WHERE "
               "%1 GROUP BY p.uid ORDER BY p.surname, p.name, p.pid")
        .arg(isEmployed(today));
}

QString branchesStatement()
{
    return QStringLiteral("SELECT uid, br.name FROM brape b LEFT JOIN branches br ON "
                          "b.bid=br.bid ORDER BY b.since ASC");
}

QString shiftsStatement()
{
    return QStringLiteral("\n        SELECT uid, dom, shift\n        FROM atten\n        "
                          "WHERE date >= :tsFrom AND date < :tsTo\n    ");
}

} // namespace

ShiftTable loadShifts(const QSqlDatabase &database, const QDate &date)
{
    ShiftTable shifts;
    const QDate first = firstOfMonth(date);
    QSqlQuery query = freshQuery(database);
    query.prepare(shiftsStatement());
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

DailyAttenData::DailyAttenData(const QSqlDatabase &db, const DailyAttenOptions &reportOptions,
                               const QDate &lastDay, std::function<bool()> isStopped)
    : database(db)
    , options(reportOptions)
    , today(lastDay)
    , ahead(db, reportOptions, lastDay, std::move(isStopped))
    , reader(db, reportOptions)
{
}

bool DailyAttenData::loadPeople()
{
    const QString statement = peopleStatement(today);
    qDebug("DailyAttenReport::makeReport() people SQL: %s", qUtf8Printable(statement));

    QSqlQuery query = freshQuery(database);
    if (!execOrFail(query, statement, "DailyAttenReport::makeReport() people SQL error:"))
        return false;
    QVector<unsigned int> uids;
    while (query.next()) {
        DailyAttenPerson person;
        person.uid = query.value(0).toUInt();
        person.personalNumber = query.value(1).toDouble();
        person.name = query.value(2).toString().trimmed();
        person.group = query.value(3).toString();
        person.department = query.value(4).toString();
        person.homeBranch = query.value(5).toString();
        allPeople.append(person);
        uids.append(person.uid);
    }
    ahead.setPeople(uids);
    return true;
}

void DailyAttenData::loadBranches()
{
    QSqlQuery query = freshQuery(database);
    if (!execOrWarn(query, branchesStatement(), "DailyAttenReport::makeReport() branch SQL error:"))
        return;
    while (query.next())
        branches.insert(query.value(0).toUInt(), query.value(1).toString());
}

QStringList DailyAttenData::statements(const DailyAttenOptions &options, const QDate &today)
{
    QStringList all{peopleStatement(today), branchesStatement(), shiftsStatement()};
    const DailyAttenStatements ofDays(options);
    for (const DayValue value : dayValues) {
        if (ofDays.values().testFlag(value))
            all.append(ofDays.forOne(value, 0, DaySpan::of(today)));
    }
    return all;
}

QString DailyAttenData::countStatement(const QDate &today)
{
    return QStringLiteral("SELECT COUNT(DISTINCT p.uid) FROM people p WHERE ") + isEmployed(today);
}

DailyAttenRow DailyAttenData::row(const DailyAttenPerson &person, int dayOfMonth)
{
    const auto known = ahead.row(person.uid, dayOfMonth);
    if (!known) {
        DailyAttenRow unread;
        unread.complete = false;
        return unread;
    }
    DailyAttenRow row = known->row;
    if (known->open != DayValues()) {
        const QDate date = firstOfMonth(today).addDays(dayOfMonth - 1);
        reader.read(known->open, person.uid, DaySpan::of(date), row);
    }
    row.dayOfMonth = dayOfMonth;
    row.branch = branch(person);
    row.shift = shifts.value({static_cast<int>(person.uid), dayOfMonth}, row.shift);
    return row;
}

QString DailyAttenData::branch(const DailyAttenPerson &person) const
{
    return options.homeBranch ? person.homeBranch : branches.value(person.uid);
}
