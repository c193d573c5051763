#pragma once

#include <QSqlDatabase>
#include <QSqlError>
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

/// Returns the names of the tables that these statements read or write, each once.
QStringList tablesOf(const QStringList &statements);

/// Returns a statement that makes the server prepare `statement`, which may have placeholders.
/// Unlike those of the driver, several of these can share a packet.
QString preparation(const QSqlDatabase &database, const QString &statement);

/// Returns what it means that the server could not prepare `statement`.
UnmetRequirement unmetBy(const QString &statement, const QSqlError &error);

/// Returns whether the server can prepare all of these queries. Sends a single statement.
bool areReadable(const QSqlDatabase &database, const QStringList &queries);

/// Returns which of these statements the server cannot prepare, and why.
QVector<UnmetRequirement> unmetOf(const QSqlDatabase &database, const QStringList &statements);

} // namespace Requirements
