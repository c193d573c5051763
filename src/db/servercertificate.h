#pragma once

#include <QSqlDatabase>

/// Opens `database`. If its options name a certificate authority (SSL_CA), refuses a server without
/// encryption and a server whose certificate this authority has not signed; lastError() says why.
/// From version 3.4 on, MariaDB's client library does not check the signature itself. With MySQL's
/// client library only the encryption is checked, because it does not reveal the certificate.
///
/// With MariaDB's library, a connection with an authority does not reconnect, because the new
/// server would not be checked: call isUsable() before using the connection.
bool openTrusted(QSqlDatabase &database);

/// Returns whether a connection is open. If its host name lists several servers, or its
/// options name an authority, also asks the server whether it still works.
bool isUsable(const QSqlDatabase &database);
