#pragma once

#include "common/result.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>

/**
 * Returns a new query on `database`, forward only.
 *
 * If `database` is invalid, every statement of the returned query fails. QSqlQuery(database) would
 * silently use the default connection, which may belong to another database.
 */
inline QSqlQuery freshQuery(const QSqlDatabase &database)
{
    QSqlQuery query(database.driver()->createResult());
    query.setForwardOnly(true);
    return query;
}

/// Returns the driver's error for the query's last operation, which must have failed.
inline Error errorOf(const QSqlQuery &query)
{
    return {query.lastError().text(), query.lastError().nativeErrorCode()};
}
