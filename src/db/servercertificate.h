#pragma once

#include <QSqlDatabase>

/// Opens `database` and enables autocommit. If the connection's options name a certificate
/// authority (SSL_CA), refuses a server without encryption and a server whose certificate this
/// authority has not signed. lastError() says why opening failed.
///
/// Since version 3.4, MariaDB's client library does not check the signature itself. With MySQL's
/// client library, which does not reveal the certificate, checks only the encryption.
///
/// With MariaDB's library, a connection with an authority does not reconnect, because the new
/// server would not be checked. Call isUsable() before using such a connection.
bool openTrusted(QSqlDatabase &database);

/// Returns whether `database` is open. If its host name lists several servers, or its options name
/// an authority, also queries the server, and returns false if the server does not work.
bool isUsable(const QSqlDatabase &database);
