#pragma once

#include <QSqlDatabase>
#include <QString>

#include <optional>

/// A server's view of its Galera cluster.
struct ClusterNode {
    QString name;
    int members = 0;      ///< in the part of the cluster that the node can see
    bool isReady = false; ///< false while it refuses all tables: it has lost the others or lags
    QString state; ///< as the server calls it: "Primary, Synced" or "non-Primary, Initialized"
};

/// Returns the server's view, or nothing if it is not part of a cluster or does not answer.
std::optional<ClusterNode> clusterNodeOf(const QSqlDatabase &database);
