#pragma once

#include "common/result.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>

/**
 * Returns a new query on `database`, forward only.
 *
 * QSqlQuery(database) would fall back to the default connection when the handle is invalid, and so
 * read or write a database that nobody asked for. On this one every statement fails instead.
 */
inline QSqlQuery freshQuery(const QSqlDatabase &database)
{
    QSqlQuery query(database.driver()->createResult());
    query.setForwardOnly(true);
    return query;
}

/// Returns the driver's words for the query's last step, which failed.
inline Error errorOf(const QSqlQuery &query)
{
    return {query.lastError().text(), query.lastError().nativeErrorCode()};
}
