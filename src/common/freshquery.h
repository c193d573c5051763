#pragma once

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlQuery>

/**
 * A query of one's own on `database`, forward only.
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
