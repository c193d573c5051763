#pragma once

#include <QSqlDatabase>
#include <QString>

/**
 * Returns the server's id of the connection, or 0 if the server does not answer or has no such id.
 *
 * A connection that is set to reconnect does so silently; its transaction and its locks are gone.
 * The id then differs.
 */
qulonglong serverConnectionId(const QSqlDatabase &database);

/// Returns whether the server answers on this connection, numbered or not.
bool serverAnswers(const QSqlDatabase &database);

/// Makes lastError() say why `database` was not opened, as the driver does for what it notices.
void setOpenError(const QSqlDatabase &database, const QString &text, const QString &code);
