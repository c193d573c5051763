#pragma once

#include "reports/reportkind.h"

#include <QSqlDatabase>
#include <QStringList>
#include <QVector>

/// A statement of the reports that the server would not execute.
struct UnmetRequirement {
    QString text;             ///< the statement's tables and the server's error
    QStringList tables;       ///< the first one is what the statement is about
    bool isForbidden = false; ///< for want of a right; otherwise something is missing or damaged
};

/**
 * What a report needs of a schema's tables, given the schema's settings.
 *
 * The server prepares the reports' own statements without executing them, and thus names what is
 * missing, ambiguous, damaged or forbidden. It checks rights to write only over a connection that
 * may write.
 */
namespace Requirements
{

/// Returns whether the server's number stands for a right that is missing: on the database, a table
/// or a column.
bool isRight(const QString &code);

/// Returns why the report could not read the schema; empty if it can.
QVector<UnmetRequirement> unreadable(const QSqlDatabase &database, const ReportKind &kind);

/// Returns why reports could not queue mails.
QVector<UnmetRequirement> unqueuable(const QSqlDatabase &database);

/// Returns why reports could not store when they were generated.
QVector<UnmetRequirement> unmarkable(const QSqlDatabase &database);

} // namespace Requirements
