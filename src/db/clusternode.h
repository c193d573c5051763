#pragma once

#include <QSqlDatabase>
#include <QString>

#include <optional>

/// A server's view of its Galera cluster.
struct ClusterNode {
    QString name;
    int members = 0;      ///< of the part of the cluster that the node belongs to
    bool isReady = false; ///< false if the node refuses all tables: it lost the others, or lags
    QString state;        ///< in the server's words: "Primary, Synced", "non-Primary, Initialized"
};

/// Returns nothing if the server is not part of a cluster, or does not answer.
std::optional<ClusterNode> clusterNodeOf(const QSqlDatabase &database);
