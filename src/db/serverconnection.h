#pragma once

#include <QSqlDatabase>
#include <QString>

/**
 * Returns the server's id of the connection, or 0 if the server does not answer or has no such id.
 *
 * A connection that is set to reconnect does so silently, and loses its transaction and its locks.
 * Its id then changes.
 */
qulonglong serverConnectionId(const QSqlDatabase &database);

/// Returns whether the server answers on this connection, whether or not it has connection ids.
bool serverAnswers(const QSqlDatabase &database);

/// Sets lastError() of `database` to why it was not opened, as the driver does for its own errors.
void setOpenError(const QSqlDatabase &database, const QString &text, const QString &code);
