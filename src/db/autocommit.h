#pragma once

#include <QSqlDatabase>

/// Enables autocommit, whatever the server's default is, so that each statement outside a
/// transaction takes effect at once. Enables it again whenever the driver reconnects. Without
/// autocommit, the first SELECT would begin a transaction, and every later SELECT would return the
/// data as of that moment.
///
/// If the server refuses autocommit, closes the connection and returns false; lastError() says why.
/// Does nothing and returns true if the connection is closed or the driver is not QMYSQL.
bool enableAutocommit(QSqlDatabase &database);
