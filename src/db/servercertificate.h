#pragma once

#include <QSqlDatabase>

/// Opens `database`. If its options name an authority (SSL_CA), refuses a server without encryption
/// and a server whose certificate this authority has not signed; lastError() says why. From version
/// 3.4 on, MariaDB's client library does not check that itself. MySQL's client library does not
/// reveal the certificate, so only the encryption is checked here. A connection with an authority
/// does not reconnect, because the new server would not be checked: call isUsable() before using
/// it.
bool openTrusted(QSqlDatabase &database);

/// Returns whether a connection is open. If its host name lists several servers, or it does not
/// reconnect on its own, also asks the server whether the connection is still alive.
bool isUsable(const QSqlDatabase &database);
