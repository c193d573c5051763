#pragma once

#include "tool/finding.h"

#include <QSqlDatabase>

// The checks that concern clusters. A statement that fails adds no finding.

/// Returns the name of the server: in a cluster, the name of the node that answers and the number
/// of nodes; otherwise, machine and port. Returns an empty text if the name is unknown.
QString serverName(const QSqlDatabase &master);

/// Checks whether the cluster survives the loss of a node, and whether both parts of a divided
/// cluster would make the reports. Returns no findings outside of a cluster.
QVector<Finding> checkCluster(const QSqlDatabase &master);

/// Adds a finding for each table whose rows could differ between the nodes. Adds no findings
/// outside of a cluster.
void checkClusterTables(const QSqlDatabase &database, Findings &findings);
