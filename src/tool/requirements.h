#pragma once

#include <QSqlDatabase>
#include <QStringList>
#include <QVector>

/// A statement of the reports that the server would not execute.
struct UnmetRequirement {
    QString text;             ///< the statement's tables and the server's error
    QStringList tables;       ///< the main table of the statement first
    bool isForbidden = false; ///< true: a right is missing; false: a table or column is missing or
                              ///< damaged
};

/**
 * What reports need from a schema's tables.
 *
 * These functions let the server prepare the reports' own statements without executing them. Its
 * errors name what is missing, ambiguous, damaged or forbidden. The server checks rights to write
 * only on a connection that may write.
 */
namespace Requirements
{

/// Returns whether an error code of the server means that a right is missing: on the database, a
/// table or a column.
bool isMissingRight(const QString &code);

/// Returns whether the server can prepare all of these queries. Sends a single statement.
bool areReadable(const QSqlDatabase &database, const QStringList &queries);

/// Returns which of these queries the server cannot prepare, and why. Sends one statement for each.
QVector<UnmetRequirement> unreadable(const QSqlDatabase &database, const QStringList &queries);

/// Returns why reports could not queue mails.
QVector<UnmetRequirement> unqueuable(const QSqlDatabase &database);

/// Returns why reports could not store when they were generated.
QVector<UnmetRequirement> unmarkable(const QSqlDatabase &database);

} // namespace Requirements
