#pragma once

#include <QSqlDatabase>

/**
 * The server's own number of the connection, 0 when the server does not answer or has no such
 * number.
 *
 * A connection that is set to reconnect does so in silence, and what belonged to the old one, a
 * transaction or a lock, is gone. The number tells: it changes.
 */
qulonglong serverConnectionId(const QSqlDatabase &database);

/// Returns whether the server answers on this connection, numbered or not.
bool serverAnswers(const QSqlDatabase &database);
