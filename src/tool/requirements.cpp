#include "tool/requirements.h"

#include "common/freshquery.h"
#include "db/zasdbsettings.h"
#include "reports/dailyattenoptions.h"

#include <QSqlError>

namespace
{

/// Who reads it; the daily report reads some of it only where a setting asks for it.
enum Reader : unsigned { Daily = 1, Interruptions = 2, AdvancedOvertime = 4, Monthly = 8 };

struct Table {
    const char *name;
    const char *columns;
    unsigned readers;
};

// A table stands once for each set of readers of the same columns.
constexpr Table tables[] = {
    {"vars", "name, value", Daily | Monthly},
    {"people", "uid, pid, surname, name, title, title2, gid, did, bid, status, begin, end", Daily},
    {"people", "uid, pid, pamId, surname, name, title, title2, status, begin, end", Monthly},
    {"groups", "gid, name", Daily}, // unquoted, as in the report: MySQL 8 refuses it
    {"departs", "did, name", Daily},
    {"branches", "bid, name", Daily},
    {"brape", "uid, bid, since", Daily},
    {"atten", "uid, date, dom, shift, fond, work, diff, expFund, ok", Daily},
    {"atten", "saldo_p", AdvancedOvertime},
    {"atten_data", "uid, iid, `from`, duration", Daily | Monthly},
    {"atten_data", "del", Interruptions | Monthly},
    {"inters", "iid, shortcut, name", Interruptions | Monthly},
    // Joined, as the report does it: with a column "del" of the catalogue the name is ambiguous.
    {"atten_data ad LEFT JOIN inters i ON ad.iid = i.iid", "del", Interruptions},
    {"atten_month",
     "uid, month, fond, work, saldo, saldo_p, saldo_c, totalSaldo, holidays, holidaySum, bonus, "
     "day6sum, day7sum, holidayFond, night, vouchers",
     Monthly},
    {"emails", "mid, type, status, `from`, `to`, subject, body, created, aid, uid, data",
     Daily | Monthly},
};

/// The report itself is asked what its settings mean, so that this list never knows better.
unsigned readersIn(const QSqlDatabase &database, const ReportKind &kind)
{
    if (&kind == &monthlyReport)
        return Monthly;
    const DailyAttenOptions options = DailyAttenOptions::read(ZasDbSettings(database));
    unsigned readers = Daily;
    if (options.interruptions)
        readers |= Interruptions;
    if (options.advancedOvertime)
        readers |= AdvancedOvertime;
    return readers;
}

/// Asked of the server instead of its catalogue: this tells of rights and damage, too.
void probe(const QSqlDatabase &database, const Table &table, QStringList &failures)
{
    QSqlQuery query = freshQuery(database);
    if (query.exec(QStringLiteral("SELECT %1 FROM %2 LIMIT 0")
                       .arg(QLatin1String(table.columns), QLatin1String(table.name))))
        return;
    const QString failure =
        QStringLiteral("table %1: %2")
            .arg(QLatin1String(table.name), query.lastError().databaseText().simplified());
    if (!failures.contains(failure)) // a table that is missing fails once for each of its rows
        failures.append(failure);
}

} // namespace

QStringList Requirements::unmet(const QSqlDatabase &database, const ReportKind &kind)
{
    QStringList failures;
    const unsigned readers = readersIn(database, kind);
    for (const Table &table : tables) {
        if (table.readers & readers)
            probe(database, table, failures);
    }
    return failures;
}

QStringList Requirements::unmet(const QSqlDatabase &database, const QString &name)
{
    QStringList failures;
    for (const Table &table : tables) {
        if (name == QLatin1String(table.name))
            probe(database, table, failures);
    }
    return failures;
}
