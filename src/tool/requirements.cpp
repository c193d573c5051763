#include "tool/requirements.h"

#include "common/freshquery.h"

#include <QSqlError>

namespace
{

struct Table {
    const char *name;
    const char *columns;
    bool daily;
    bool monthly;
};

// A table stands twice where the reports differ too much in what they read of it.
constexpr Table tables[] = {
    {"vars", "name, value", true, true},
    {"people", "uid, pid, surname, name, title, title2, gid, did, bid, status, begin, end", true,
     false},
    {"people", "uid, pid, pamId, surname, name, title, title2, status, begin, end", false, true},
    {"groups", "gid, name", true, false}, // unquoted, as in the report: MySQL 8 refuses it
    {"departs", "did, name", true, false},
    {"branches", "bid, name", true, false},
    {"brape", "uid, bid, since", true, false},
    {"atten", "uid, date, dom, shift, fond, work, diff, expFund, saldo_p, ok", true, false},
    {"atten_data", "uid, iid, `from`, duration, del", true, true},
    // A column "del" of the catalogue would make the report's query ambiguous.
    {"atten_data ad LEFT JOIN inters i ON ad.iid = i.iid", "del", true, false},
    {"inters", "iid, shortcut, name", true, true},
    {"atten_month",
     "uid, month, fond, work, saldo, saldo_p, saldo_c, totalSaldo, holidays, holidaySum, bonus, "
     "day6sum, day7sum, holidayFond, night, vouchers",
     false, true},
    {"emails", "mid, type, status, `from`, `to`, subject, body, created, aid, uid, data", true,
     true},
};

/// Asked of the server instead of its catalogue: this tells of rights and damage, too.
void probe(const QSqlDatabase &database, const Table &table, QStringList &failures)
{
    QSqlQuery query = freshQuery(database);
    if (!query.exec(QStringLiteral("SELECT %1 FROM %2 LIMIT 0")
                        .arg(QLatin1String(table.columns), QLatin1String(table.name))))
        failures.append(
            QStringLiteral("table %1: %2")
                .arg(QLatin1String(table.name), query.lastError().databaseText().simplified()));
}

} // namespace

QStringList Requirements::unmet(const QSqlDatabase &database, ReportKind kind)
{
    QStringList failures;
    for (const Table &table : tables) {
        if (kind == ReportKind::Daily ? table.daily : table.monthly)
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
