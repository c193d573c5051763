#pragma once

#include "common/result.h"
#include "db/dbschemerecord.h"

#include <QSqlDatabase>
#include <QStringList>
#include <QVector>

#include <optional>

/**
 * The information database's table `schemas`, which lists the customers' databases.
 *
 * Caches nothing: every call runs its statements. Errors have the driver's text. Tokens and names
 * are not escaped: an apostrophe breaks the statement. The connection must be open. Use it only on
 * the thread that owns the connection.
 */
class SchemaRegistry
{
public:
    explicit SchemaRegistry(const QSqlDatabase &infoDatabase);

    /// The usual `limit` of tokens().
    static constexpr uint tokensPerPage = 1000;

    /// Returns the number of active schemas (status 1) or, if `active` is false, of inactive
    /// schemas (status 0).
    Result<uint> count(bool active) const;

    /// Returns up to `limit` tokens of active schemas in a stable order, from position `offset` on.
    Result<QStringList> tokens(uint limit, uint offset) const;
    /// Returns the tokens of all active schemas, read page by page.
    Result<QStringList> allTokens() const;
    /// A row of the table. The schema is active if its status is 1.
    struct Listed {
        DBSchemeRecord record;
        int status = 0;
    };
    /// Returns all rows, in the order of tokens().
    Result<QVector<Listed>> all() const;
    /// Returns up to `count` tokens of active schemas that had no maintenance in the last 900
    /// seconds, the least recently maintained first.
    Result<QStringList> tokensForMaintenance(ushort count) const;
    /// Returns up to `count` tokens of active schemas, the least recently recalculated first.
    Result<QStringList> tokensForRecalculation(ushort count) const;

    /// Stamp the row of the schema `token` with the current Unix second. Return false if no active
    /// schema has this token, or if the row already has this stamp.
    Result<bool> stampMaintenance(const QString &token) const;
    Result<bool> stampRecalculation(const QString &token) const;

    /// Returns the token of the active schema in the database `databaseName`, or an empty text if
    /// there is no such schema.
    Result<QString> tokenOf(const QString &databaseName) const;
    /// Returns the row of the active schema `token`, or nothing if there is no such schema.
    Result<std::optional<DBSchemeRecord>> find(const QString &token) const;

    /// Checks whether the columns needed by find() can be read. Returns the error, if any.
    std::optional<Error> check() const;

private:
    Result<QStringList> readTokens(const QString &sql) const;
    Result<bool> stamp(const QString &sql) const;

    QSqlDatabase database;
};
