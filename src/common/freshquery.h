#pragma once

#include "common/result.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>

/**
 * Returns a new query on `database`, forward only.
 *
 * If `database` is invalid, QSqlQuery(database) silently uses the default connection, and so the
 * wrong database. On the query returned here every statement fails instead.
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
