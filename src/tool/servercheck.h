#pragma once

#include "tool/finding.h"

#include <QSqlDatabase>

// A statement that fails adds no finding, because rights are checked elsewhere, for each schema.
// `master` must be open.

/// Checks the server itself: its reserved words, and whether its clock and time zone differ from
/// this machine's.
QVector<Finding> checkServer(const QSqlDatabase &master);

/// Returns the cipher of the connection; empty if it is not encrypted.
QString cipherOf(const QSqlDatabase &master);

/// Checks whether the server allows all connections of a host that serves `schemas` schemas, of
/// which `enabled` have an enabled report.
QVector<Finding> checkConnections(const QSqlDatabase &master, int schemas, int enabled);
