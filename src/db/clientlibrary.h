#pragma once

#include <QSqlDatabase>

#include <mysql.h>

extern "C" {
#include <ma_pvio.h>
}

// Access to the database's client library through the driver QMYSQL. Only the driver links the
// library: linking it here, too, could load a second, different library into the process. This
// program needs only the library's headers.

/// Returns the library's handle for the connection. Returns null if the connection is closed or
/// uses another driver.
MYSQL *clientHandle(const QSqlDatabase &database);

/// Returns the function `name` of the client library that the driver links, or of a library that
/// the client library links in turn. Returns null if there is no such function.
void *clientFunction(const QSqlDatabase &database, const char *name);

/// Returns whether the client library is MariaDB's. The headers used here are MariaDB's, and the
/// structures of MySQL's library differ.
bool isMariaDb(const QSqlDatabase &database);
