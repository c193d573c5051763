#include "reports/monthlyattendata.h"

#include "common/freshquery.h"
#include "common/period.h"
#include "common/zascalendar.h"
#include "reports/duration.h"
#include "reports/reportquery.h"

#include <QSqlRecord>
#include <QVariant>

#include <utility>

namespace
{

double hours(const QSqlQuery &query, int column)
{
    return query.value(column).toDouble() / secondsPerHour;
}

QString ofEmployed(const AttenMonth &month)
{
    return QStringLiteral(" FROM people p WHERE p.status=1 AND p.name != '<anonym>' AND p.begin < "
                          "%1 AND (p.end IS NULL OR p.end >= %2)")
        .arg(month.end, month.start);
}

QString peopleStatement(const AttenMonth &month)
{
    return QStringLiteral("SELECT uid, pid, pamId, CONCAT_WS(' ', p.surname, p.name, p.title, "
                          "p.title2) person") +
           ofEmployed(month) + QStringLiteral(" GROUP BY p.uid ORDER BY p.surname, p.name, p.pid");
}

QString numbersStatement()
{
    return QStringLiteral("SELECT uid, pid, pamId FROM people");
}

QString totalsStatement(const QString &uids, const AttenMonth &month)
{
    return QStringLiteral("SELECT uid, fond, work, saldo, saldo_p, saldo_c, totalSaldo, holidays, "
                          "holidaySum, bonus, day6sum, day7sum, holidayFond, night, vouchers FROM "
                          "atten_month a WHERE uid IN(%1) AND a.month = %2 ORDER BY uid")
        .arg(uids, month.key);
}

QString interruptionsStatement(const QString &uids, const AttenMonth &month)
{
    return QStringLiteral(
               "SELECT uid, iid, duration FROM atten_data ad WHERE uid IN(%1) AND ad.from "
               ">= %2 AND ad.from < %3 AND del = 0 AND iid > 1 AND iid < 1000 ORDER BY "
               "uid")
        .arg(uids, month.start, month.end);
}

QString workStatement(const QString &uids, const AttenMonth &month)
{
    return QStringLiteral("SELECT uid, work FROM atten_month am WHERE uid IN(%1) AND am.month = %2 "
                          "ORDER BY uid")
        .arg(uids, month.key);
}

QString catalogueStatement()
{
    return QStringLiteral("SELECT iid, shortcut, name FROM inters ORDER BY iid");
}

} // namespace

AttenMonth::AttenMonth(const QDate &date)
    : start(dayStartText(firstOfMonth(date)))
    , end(dayStartText(firstOfMonth(date).addDays(date.daysInMonth())))
    , key(QString::number(ZAS::monthFromDate(date)))
{
}

MonthlyAttenData::MonthlyAttenData(const QSqlDatabase &db, const MonthlyAttenOptions &reportOptions,
                                   const QDate &today)
    : database(db)
    , options(reportOptions)
    , month(today)
{
}

bool MonthlyAttenData::loadPeople()
{
    const QString statement = peopleStatement(month);
    qDebug("MonthlyAttenReport::makeReport() people SQL: %s", qUtf8Printable(statement));
    QSqlQuery query = freshQuery(database);
    if (!execOrFail(query, statement, "MonthlyAttenReport::makeReport() people SQL ERROR:"))
        return false;
    while (query.next())
        people.append({query.value(0).toUInt(), query.value(3).toString().trimmed()});
    return true;
}

bool MonthlyAttenData::loadValues()
{
    const QString uids = uidText();
    bool complete = loadNumbers();
    complete &= loadTotals(uids);
    complete &= loadInterruptions(uids);
    complete &= loadWork(uids);
    return complete;
}

QString MonthlyAttenData::uidText() const
{
    QStringList uids;
    uids.reserve(people.size());
    for (const Person &person : people)
        uids.append(QString::number(person.uid));
    return uids.join(QLatin1Char(','));
}

/// Reads the pid and pamId of all people for the first column. The statement of loadPeople()
/// selects both too, but loadPeople() does not read them.
bool MonthlyAttenData::loadNumbers()
{
    QSqlQuery query = freshQuery(database);
    if (!execOrWarn(query, numbersStatement(), "MonthlyAttenReport::makeReport() pid/pamId ERROR:"))
        return false;
    while (query.next())
        numbers.insert(query.value(0).toUInt(),
                       {query.value(1).toUInt(), query.value(2).toString()});
    return true;
}

bool MonthlyAttenData::loadTotals(const QString &uids)
{
    QSqlQuery query = freshQuery(database);
    if (!execOrWarn(query, totalsStatement(uids, month),
                    "MonthlyAttenReport::makeReport() atten_month ERROR:"))
        return false;
    // Finds the columns by name, so that their order in the statement does not matter. Some columns
    // are never read.
    const QSqlRecord columns = query.record();
    const auto at = [&columns](const char *name) {
        return columns.indexOf(QLatin1String(name));
    };
    const int overtime = at(options.advancedOvertime == 1 ? "saldo_p" : "totalSaldo");
    const std::pair<double AttMonthValues::*, int> sums[] = {
        {&AttMonthValues::holidayFond, at("holidayFond")},
        {&AttMonthValues::holidaySum, at("holidaySum")},
        {&AttMonthValues::bonus, at("bonus")},
        {&AttMonthValues::day6sum, at("day6sum")},
        {&AttMonthValues::day7sum, at("day7sum")},
        {&AttMonthValues::night, at("night")},
    };
    const int uid = at("uid");
    const int planned = at("fond");
    const int vouchers = at("vouchers");
    while (query.next()) {
        Totals total;
        total.plannedHours = hours(query, planned);
        total.overtimeHours = hours(query, overtime);
        for (const auto &[member, column] : sums)
            total.values.*member = hours(query, column);
        total.values.vouchers = query.value(vouchers).toDouble();
        totals.insert(query.value(uid).toUInt(), total);
    }
    return true;
}

bool MonthlyAttenData::loadInterruptions(const QString &uids)
{
    QSqlQuery query = freshQuery(database);
    if (!execOrWarn(query, interruptionsStatement(uids, month),
                    "MonthlyAttenReport::makeReport() atten_data ERROR:"))
        return false;
    while (query.next())
        interruptionHours[query.value(0).toUInt()][query.value(1).toUInt()] += hours(query, 2);
    return true;
}

/// Reads the worked hours with a separate statement, although totalsStatement() selects them too.
bool MonthlyAttenData::loadWork(const QString &uids)
{
    QSqlQuery query = freshQuery(database);
    if (!execOrWarn(query, workStatement(uids, month),
                    "MonthlyAttenReport::makeReport() work ERROR:"))
        return false;
    while (query.next())
        workedHours.insert(query.value(0).toUInt(), hours(query, 1));
    return true;
}

QStringList MonthlyAttenData::statements(const QDate &today)
{
    const AttenMonth month(today);
    const QString nobody = QStringLiteral("0");
    return {peopleStatement(month),         numbersStatement(),
            totalsStatement(nobody, month), interruptionsStatement(nobody, month),
            workStatement(nobody, month),   catalogueStatement()};
}

QString MonthlyAttenData::countStatement(const QDate &today)
{
    return QStringLiteral("SELECT COUNT(DISTINCT p.uid)") + ofEmployed(AttenMonth(today));
}

MonthlyAttenRow MonthlyAttenData::row(int index) const
{
    const Person &person = people.at(index);
    const Numbers number = numbers.value(person.uid);
    const Totals total = totals.value(person.uid);
    MonthlyAttenRow row;
    row.pid = number.pid;
    row.pamId = number.pamId;
    row.name = person.name;
    row.plannedHours = total.plannedHours;
    row.overtimeHours = total.overtimeHours;
    row.values = total.values;
    row.interruptionHours = interruptionHours.value(person.uid);
    const auto worked = workedHours.constFind(person.uid);
    if (worked != workedHours.constEnd())
        row.workedHours = *worked;
    return row;
}

bool loadInterruptionCatalogue(const QSqlDatabase &database,
                               QHash<unsigned int, QString> &iidToName,
                               QHash<QString, unsigned int> &shortcutToIid, const char *failure)
{
    QSqlQuery query = freshQuery(database);
    if (!execOrWarn(query, catalogueStatement(), failure))
        return false;
    while (query.next()) {
        const unsigned int iid = query.value(0).toUInt();
        shortcutToIid.insert(query.value(1).toString(), iid);
        iidToName.insert(iid, query.value(2).toString());
    }
    return true;
}
