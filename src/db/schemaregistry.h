#pragma once

#include "common/result.h"
#include "db/dbschemerecord.h"

#include <QSqlDatabase>
#include <QStringList>

#include <optional>

/**
 * The information database's table `schemas`, which lists the customers' databases.
 *
 * It keeps nothing but a handle of the connection: every call is a statement, and an error is the
 * driver's text. Tokens and names go into the statements as they are: a quotation mark in one
 * breaks the statement. For the thread that owns the connection, which must be open.
 */
class SchemaRegistry
{
public:
    explicit SchemaRegistry(const QSqlDatabase &infoDatabase);

    Result<uint> count(bool active) const;

    /// One page of the active schemas' tokens, in a stable order.
    Result<QStringList> tokens(uint limit, uint offset) const;
    /// Those of all active schemas, read in pages.
    Result<QStringList> allTokens() const;
    /// Schemas without maintenance for 900 seconds, longest waiting first.
    Result<QStringList> tokensForMaintenance(ushort count) const;
    /// Least recently recalculated first.
    Result<QStringList> tokensForRecalculation(ushort count) const;

    /// The two stamps: false without such an active schema, and when it was stamped this second.
    Result<bool> stampMaintenance(const QString &token) const;
    Result<bool> stampRecalculation(const QString &token) const;

    /// Empty without an active schema in that database.
    Result<QString> tokenOf(const QString &databaseName) const;
    /// Nothing without such an active schema.
    Result<std::optional<DBSchemeRecord>> find(const QString &token) const;

    /// Why the columns that find() reads cannot be read, if so.
    std::optional<Error> check() const;

private:
    Result<QStringList> readTokens(const QString &sql) const;
    Result<bool> stamp(const QString &sql) const;

    QSqlDatabase database;
};
