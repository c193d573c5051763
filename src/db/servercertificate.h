#pragma once

#include <QSqlDatabase>

/// Opens `database`. If its options name an authority (SSL_CA), refuses a server without encryption
/// and one whose certificate this authority has not signed; lastError() says why. MariaDB's client
/// library does not check that itself from version 3.4 on. MySQL's does not reveal the certificate:
/// with it, only the encryption is checked here. Such a connection does not reconnect, because
/// the new server would go unchecked: call isUsable() before using it.
bool openTrusted(QSqlDatabase &database);

/// Returns whether a connection is open. If it lists several servers or does not reconnect by
/// itself, also asks the server whether the connection is still alive.
bool isUsable(const QSqlDatabase &database);
