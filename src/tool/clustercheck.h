#pragma once

#include "tool/finding.h"

#include <QSqlDatabase>

// The checks that concern clusters. A failed statement is not a finding.

/// Returns the name of the server: of the node that answers in a cluster, otherwise the machine and
/// the port; empty if unknown.
QString serverName(const QSqlDatabase &master);

/// Checks whether the cluster survives the loss of a node. Returns no findings outside of a
/// cluster.
QVector<Finding> checkCluster(const QSqlDatabase &master);

/// Finds the schema's tables that the cluster does not keep identical on its nodes. Adds no
/// findings outside of a cluster.
void checkClusterTables(const QSqlDatabase &database, Findings &findings);
