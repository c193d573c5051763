#pragma once

#include <QSqlDatabase>
#include <QStringList>
#include <QVector>

/// A statement of the reports that the server would not execute.
struct UnmetRequirement {
    QString text;             ///< the statement's tables and the server's error
    QStringList tables;       ///< the first one is what the statement is about
    bool isForbidden = false; ///< a right is missing; otherwise a table or column is, or is damaged
};

/**
 * What reports need from a schema's tables.
 *
 * The server prepares the reports' own statements without executing them, and thus names what is
 * missing, ambiguous, damaged or forbidden. It checks rights to write only over a connection that
 * may write.
 */
namespace Requirements
{

/// Returns whether this error code of the server means a missing right: on the database, a table or
/// a column.
bool isRight(const QString &code);

/// Returns whether the server can prepare all of these queries. Asks once.
bool areReadable(const QSqlDatabase &database, const QStringList &queries);

/// Returns which of these queries the server cannot prepare, and why. Asks for each.
QVector<UnmetRequirement> unreadable(const QSqlDatabase &database, const QStringList &queries);

/// Returns why reports could not queue mails.
QVector<UnmetRequirement> unqueuable(const QSqlDatabase &database);

/// Returns why reports could not store when they were generated.
QVector<UnmetRequirement> unmarkable(const QSqlDatabase &database);

} // namespace Requirements
