#pragma once

#include <QSqlDatabase>

/// Opens `database`. Where its options name an authority (SSL_CA), a server without encryption, or
/// with a certificate that this authority has not signed, is refused, and lastError() says why. The
/// client library checks that by itself only up to version 3.3. The connection does not reconnect
/// by itself then, as nobody would check the server that answers: ask isUsable() before using it.
bool openTrusted(QSqlDatabase &database);

/// Returns whether a connection is open and, if it does not reconnect by itself or lists several
/// servers, still alive. To ask costs statements only in these cases.
bool isUsable(const QSqlDatabase &database);
