#include "db/clusternode.h"

#include "common/freshquery.h"

#include <QVariant>

std::optional<ClusterNode> clusterNodeOf(const QSqlDatabase &database)
{
    // Both run on a node that refuses tables. Where there are no such variables, the first fails.
    QSqlQuery query = freshQuery(database);
    if (!query.exec(QStringLiteral("SELECT @@wsrep_on, @@wsrep_node_name")) || !query.next() ||
        query.value(0).toInt() != 1)
        return std::nullopt;
    ClusterNode node;
    node.name = query.value(1).toString();
    if (!query.exec(QStringLiteral("SHOW STATUS WHERE variable_name IN ('wsrep_cluster_size', "
                                   "'wsrep_ready')")))
        return std::nullopt;
    while (query.next()) {
        const QString value = query.value(1).toString();
        if (query.value(0).toString() == QLatin1String("wsrep_ready"))
            node.isReady = value == QLatin1String("ON");
        else
            node.members = value.toInt();
    }
    return node;
}
