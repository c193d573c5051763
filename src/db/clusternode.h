#pragma once

#include <QSqlDatabase>
#include <QString>

#include <optional>

/// What a server says of its place in a Galera cluster.
struct ClusterNode {
    QString name;
    int members = 0;      ///< of the part of the cluster that the node sees
    bool isReady = false; ///< else the node refuses every table: it has lost the others, or lags
};

/// Returns nothing if the server is not part of a cluster, or does not answer.
std::optional<ClusterNode> clusterNodeOf(const QSqlDatabase &database);
