#include "tool/clustercheck.h"

#include "common/freshquery.h"
#include "db/clusternode.h"

#include <QStringList>
#include <QVariant>

namespace
{

constexpr int leastMembers = 3; // if one of two nodes fails, the other has no majority

/// What keeps a cluster from copying a table, or from noticing a conflict.
struct TableFault {
    const char *statement; ///< selects the names of the tables
    const char *text;
    const char *change; ///< the clause of ALTER TABLE that repairs the table
};

constexpr TableFault tableFaults[] = {
    {"SELECT table_name FROM information_schema.tables WHERE table_schema = DATABASE() AND "
     "table_type = 'BASE TABLE' AND engine <> 'InnoDB' ORDER BY table_name",
     "table %1 is not InnoDB: the cluster does not copy its rows to the other nodes",
     "ENGINE=InnoDB"},
    {"SELECT table_name FROM information_schema.tables AS t WHERE table_schema = DATABASE() AND "
     "table_type = 'BASE TABLE' AND NOT EXISTS (SELECT 1 FROM "
     "information_schema.table_constraints AS c WHERE c.table_schema = t.table_schema AND "
     "c.table_name = t.table_name AND c.constraint_type = 'PRIMARY KEY') ORDER BY table_name",
     "table %1 has no primary key: two nodes may change the same row without noticing",
     "ADD PRIMARY KEY (...)"},
};

/// Returns the first column of the result; empty if the statement fails.
QStringList names(const QSqlDatabase &database, const char *statement)
{
    QStringList found;
    QSqlQuery query = freshQuery(database);
    query.exec(QLatin1String(statement));
    while (query.next())
        found.append(query.value(0).toString());
    return found;
}

} // namespace

QString serverName(const QSqlDatabase &master)
{
    if (const auto node = clusterNodeOf(master))
        return QStringLiteral("%1, one of %2 nodes").arg(node->name).arg(node->members);
    return names(master, "SELECT CONCAT(@@hostname, ':', @@port)").value(0);
}

QVector<Finding> checkCluster(const QSqlDatabase &master)
{
    Findings findings(QStringLiteral("server"));
    const auto node = clusterNodeOf(master);
    if (!node)
        return findings.list;
    if (node->members < leastMembers)
        findings.add(Gravity::Notice, "cluster",
                     QStringLiteral("the cluster has too few nodes to survive the loss of one: "
                                    "%1")
                         .arg(node->members),
                     QStringLiteral("use three, of which one may be an arbitrator "
                                    "(garbd)"));
    // With either of these options, both parts of a divided cluster would make the reports.
    const QStringList halves =
        names(master, "SELECT 1 FROM DUAL WHERE REPLACE(@@wsrep_provider_options, ' ', '') REGEXP "
                      "'pc\\\\.ignore_(quorum|sb)=(true|yes|on|1)'");
    if (!halves.isEmpty())
        findings.add(Gravity::Harm, "cluster",
                     QStringLiteral("pc.ignore_quorum or pc.ignore_sb is set: if the cluster "
                                    "is divided, both parts make the reports"),
                     QStringLiteral("remove both from wsrep_provider_options"));
    return findings.list;
}

void checkClusterTables(const QSqlDatabase &database, Findings &findings)
{
    if (!clusterNodeOf(database))
        return;
    for (const TableFault &fault : tableFaults) {
        for (const QString &table : names(database, fault.statement))
            findings.add(
                Gravity::Harm, "storage", QString::fromLatin1(fault.text).arg(table),
                QStringLiteral("ALTER TABLE %1 %2").arg(table, QLatin1String(fault.change)));
    }
}
