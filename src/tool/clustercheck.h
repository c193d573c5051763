#pragma once

#include "tool/finding.h"

#include <QSqlDatabase>

// What a check looks at because the server may be one of several. A failed statement is not a
// finding.

/// Returns which server answers: the node's name in a cluster, else the machine's name and the
/// port; empty if it does not say.
QString serverName(const QSqlDatabase &master);

/// Checks whether the cluster outlives the loss of a node. Returns nothing outside of a cluster.
QVector<Finding> checkCluster(const QSqlDatabase &master);

/// Names the tables of the schema that a cluster does not keep alike on its nodes. Finds nothing
/// outside of a cluster.
void checkClusterTables(const QSqlDatabase &database, Findings &findings);
