#pragma once

#include "tool/finding.h"

#include <QSqlDatabase>

// Statements that fail find nothing: which rights an account has is the schemas' matter. `master`
// is open and stays so.

/// What the server must have apart from any schema, its clock against this machine's included.
QVector<Finding> checkServer(const QSqlDatabase &master);

/// Whether a host gets all its connections: for `schemas` served, `enabled` of them with a report.
/// Returns the cipher that the connection is encrypted with, empty if it is not encrypted.
QString cipherOf(const QSqlDatabase &master);

QVector<Finding> checkConnections(const QSqlDatabase &master, int schemas, int enabled);

/// Whether the temporary directory of this process, by TMPDIR, takes workbooks. A file is made in
/// it for a moment.
QVector<Finding> checkTemporaryDirectory();
