#pragma once

#include "tool/finding.h"

#include <QSqlDatabase>

// The checks that concern clusters. A failed statement is not a finding.

/// Returns the name of the server that answers: in a cluster that of the node, otherwise machine
/// and port; empty if unknown.
QString serverName(const QSqlDatabase &master);

/// Checks whether the cluster survives the loss of a node. Returns nothing outside of a cluster.
QVector<Finding> checkCluster(const QSqlDatabase &master);

/// Finds the tables of the schema that a cluster does not keep identical on its nodes. Finds
/// nothing outside of a cluster.
void checkClusterTables(const QSqlDatabase &database, Findings &findings);
