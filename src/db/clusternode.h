#pragma once

#include <QSqlDatabase>
#include <QString>

#include <optional>

/// A server's view of its Galera cluster.
struct ClusterNode {
    QString name;
    int members = 0;      ///< number of nodes in the part of the cluster that this node can see
    bool isReady = false; ///< false while the node is cut off or lags behind: it refuses all tables
    QString state;        ///< as the server describes it, such as "Primary, Synced"
};

/// Returns the server's view, or nothing if the server is not part of a cluster or does not answer.
std::optional<ClusterNode> clusterNodeOf(const QSqlDatabase &database);
