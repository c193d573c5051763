#include "db/clusternode.h"

#include "common/freshquery.h"

#include <QMap>
#include <QVariant>

std::optional<ClusterNode> clusterNodeOf(const QSqlDatabase &database)
{
    // Both statements run even on a node that refuses access to all tables. The first one fails on
    // a server without cluster variables.
    QSqlQuery query = freshQuery(database);
    if (!query.exec(QStringLiteral("SELECT @@wsrep_on, @@wsrep_node_name")) || !query.next() ||
        query.value(0).toInt() != 1)
        return std::nullopt;
    ClusterNode node;
    node.name = query.value(1).toString();
    if (!query.exec(QStringLiteral("SHOW STATUS WHERE variable_name IN ('wsrep_cluster_size', "
                                   "'wsrep_cluster_status', 'wsrep_local_state_comment', "
                                   "'wsrep_ready')")))
        return std::nullopt;
    QMap<QString, QString> status;
    while (query.next())
        status.insert(query.value(0).toString(), query.value(1).toString());
    node.members = status.value(QStringLiteral("wsrep_cluster_size")).toInt();
    node.isReady = status.value(QStringLiteral("wsrep_ready")) == QLatin1String("ON");
    node.state =
        QStringLiteral("%1, %2").arg(status.value(QStringLiteral("wsrep_cluster_status")),
                                     status.value(QStringLiteral("wsrep_local_state_comment")));
    return node;
}
