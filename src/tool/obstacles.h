#pragma once

#include "tool/finding.h"
#include "tool/schemastatus.h"

/**
 * Returns what keeps a report of the schema `token` from going out once its time has come, the most
 * urgent first; empty when nothing does.
 *
 * The server prepares the report's statements, and the people are read as the report reads them.
 * Nothing is written to the database; a file is created in the temporary directory for a moment.
 * The connection must be one that may write, as the server checks rights only over such a one. A
 * connection that is lost meanwhile makes findings of its own.
 */
QVector<Finding> findObstacles(const QSqlDatabase &database, const QString &token,
                               const StoredSettings &stored, const ReportKind &kind,
                               const QDateTime &now);
