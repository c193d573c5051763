#pragma once

#include <QSqlDatabase>

#include <mysql.h>

extern "C" {
#include <ma_pvio.h>
}

// The client library's functions, looked up through the driver. Only the driver links the library:
// linking it here too could load two different ones into the process. The headers are enough.

/// Returns the library's handle of an open connection; null for other drivers.
MYSQL *clientHandle(const QSqlDatabase &database);

/// Returns a function of the client library that the driver links, or of one that it links itself;
/// null if there is no `name`.
void *clientFunction(const QSqlDatabase &database, const char *name);

/// Returns whether the library matches the headers: MySQL's has other structures.
bool isMariaDb(const QSqlDatabase &database);
