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
 * Caches nothing: every call runs its statement, and an error is the driver's text. Tokens and
 * names are not escaped: an apostrophe in one breaks the statement. For the thread that owns the
 * connection, which must be open.
 */
class SchemaRegistry
{
public:
    explicit SchemaRegistry(const QSqlDatabase &infoDatabase);

    /// The size of a page for callers that read all tokens page by page.
    static constexpr uint tokensPerPage = 1000;

    /// Returns the number of active or of inactive schemas.
    Result<uint> count(bool active) const;

    /// Returns one page of the active schemas' tokens, in a stable order.
    Result<QStringList> tokens(uint limit, uint offset) const;
    /// Returns the tokens of all active schemas, read page by page.
    Result<QStringList> allTokens() const;
    /// A row, active (status 1) or not.
    struct Listed {
        DBSchemeRecord record;
        int status = 0;
    };
    /// Returns all rows, in the order of tokens().
    Result<QVector<Listed>> all() const;
    /// Returns up to `count` tokens of schemas without maintenance for 900 seconds, the longest
    /// waiting first.
    Result<QStringList> tokensForMaintenance(ushort count) const;
    /// Returns up to `count` tokens, the least recently recalculated schemas first.
    Result<QStringList> tokensForRecalculation(ushort count) const;

    /// Stamp the schema's row with the current second. Return false if there is no such active
    /// schema, or if it was stamped within the same second.
    Result<bool> stampMaintenance(const QString &token) const;
    Result<bool> stampRecalculation(const QString &token) const;

    /// Returns the token of the active schema in that database, or an empty text if there is none.
    Result<QString> tokenOf(const QString &databaseName) const;
    /// Returns the row of that active schema, or nothing if there is none.
    Result<std::optional<DBSchemeRecord>> find(const QString &token) const;

    /// Checks that the columns that find() needs can be read. Returns the error, if any.
    std::optional<Error> check() const;

private:
    Result<QStringList> readTokens(const QString &sql) const;
    Result<bool> stamp(const QString &sql) const;

    QSqlDatabase database;
};
