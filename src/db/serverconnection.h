#pragma once

#include <QSqlDatabase>
#include <QString>

/**
 * Returns the server's id for the connection, or 0 if the server does not answer or does not
 * support connection ids.
 *
 * A connection that reconnects loses its transaction and its locks. The driver reconnects silently,
 * but the id changes.
 */
qulonglong serverConnectionId(const QSqlDatabase &database);

/// Returns whether the server answers on this connection.
bool serverAnswers(const QSqlDatabase &database);

/// Returns whether the error is one of the client library: the server refused nothing, and may have
/// executed the statement. `code` is a native error code.
bool isClientError(const QString &code);

/// Sets `database`.lastError() to a connection error with `text` and the native error code `code`.
void setOpenError(const QSqlDatabase &database, const QString &text, const QString &code);
