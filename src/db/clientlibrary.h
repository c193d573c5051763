#pragma once

#include <QSqlDatabase>

#include <mysql.h>

extern "C" {
#include <ma_pvio.h>
}

// The client library's functions, looked up through the driver. Only the driver links the library:
// linking it here too could load two different libraries into the process. The headers are enough.

/// Returns the library's handle of the connection; null if it is closed or has another driver.
MYSQL *clientHandle(const QSqlDatabase &database);

/// Returns the function `name` of the client library that the driver links, or of a library that
/// the client library links in turn. Returns null if there is none.
void *clientFunction(const QSqlDatabase &database, const char *name);

/// Returns whether the library is MariaDB's, whose headers are used here. MySQL's structures
/// differ.
bool isMariaDb(const QSqlDatabase &database);
