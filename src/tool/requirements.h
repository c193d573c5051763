#pragma once

#include <QSqlDatabase>
#include <QSqlError>
#include <QStringList>
#include <QVector>

/// A report's statement that the server could not prepare.
struct UnmetRequirement {
    QString text;             ///< the statement's tables and the server's error
    QStringList tables;       ///< the statement's tables; the main one first
    bool isForbidden = false; ///< true: a right is missing; false: a table or column is missing or
                              ///< damaged
};

/**
 * Checks what reports need from a schema's tables.
 *
 * These functions let the server prepare the reports' own statements without executing them. The
 * server's errors name what is missing, ambiguous, damaged or forbidden. The server checks rights
 * to write only on a connection that is not read-only.
 */
namespace Requirements
{

/// Returns whether `code`, an error code of the server, means that the account lacks a right on the
/// database, a table or a column.
bool isMissingRight(const QString &code);

/// Returns the names of the tables that these statements read or write, each once.
QStringList tablesOf(const QStringList &statements);

/// Returns an SQL statement that makes the server prepare `statement`, which may have placeholders.
/// Several such statements can share a packet, while QSqlQuery::prepare() sends a packet for each.
QString preparation(const QSqlDatabase &database, const QString &statement);

/// Returns what `error` says about `statement`, which the server could not prepare.
UnmetRequirement unmetBy(const QString &statement, const QSqlError &error);

/// Returns whether the server can prepare all of these queries. Sends them as a single statement.
bool areReadable(const QSqlDatabase &database, const QStringList &queries);

/// Returns which of these statements the server cannot prepare, and why. Of several statements with
/// the same error, returns only the first.
QVector<UnmetRequirement> unmetOf(const QSqlDatabase &database, const QStringList &statements);

} // namespace Requirements
