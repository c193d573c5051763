#pragma once

#include "tool/finding.h"

#include <QSqlDatabase>

/// What the server and this machine must have, apart from any schema.
QVector<Finding> checkServer(const QSqlDatabase &master);

/// Whether a host gets all its connections: for `schemas` served, `enabled` of them with a report.
QVector<Finding> checkConnections(const QSqlDatabase &master, int schemas, int enabled);

/// The temporary directory of this process.
QVector<Finding> checkTemporaryDirectory();
