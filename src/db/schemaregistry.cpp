#include "db/schemaregistry.h"

#include "common/freshquery.h"

#include <QVariant>

namespace
{

DBSchemeRecord recordOf(const QSqlQuery &query)
{
    DBSchemeRecord record;
    record.token = query.value(QStringLiteral("token")).toString();
    const QByteArray encoded = query.value(QStringLiteral("pass")).toByteArray();
    record.pass = QString::fromUtf8(QByteArray::fromBase64(encoded));
    record.user = query.value(QStringLiteral("user")).toString();
    record.name = query.value(QStringLiteral("name")).toString();
    return record;
}

} // namespace

SchemaRegistry::SchemaRegistry(const QSqlDatabase &infoDatabase)
    : database(infoDatabase)
{
}

Result<uint> SchemaRegistry::count(bool active) const
{
    QSqlQuery query = freshQuery(database);
    if (!query.exec(QStringLiteral("SELECT COUNT(*) FROM `schemas` WHERE status = %1;")
                        .arg(active ? 1 : 0)))
        return errorOf(query);
    return query.next() ? query.value(0).toUInt() : 0;
}

Result<QStringList> SchemaRegistry::tokens(uint limit, uint offset) const
{
    return readTokens(
        QStringLiteral(
            "SELECT token FROM `schemas` WHERE status = 1 ORDER BY token, sid LIMIT %1, %2;")
            .arg(QString::number(offset), QString::number(limit)));
}

Result<QStringList> SchemaRegistry::allTokens() const
{
    QStringList all;
    for (;;) {
        const auto page = tokens(tokensPerPage, static_cast<uint>(all.size()));
        if (!page.isOk() || page.value().isEmpty())
            return page.isOk() ? Result<QStringList>(all) : page;
        all += page.value();
    }
}

Result<QVector<SchemaRegistry::Listed>> SchemaRegistry::all() const
{
    QSqlQuery query = freshQuery(database);
    if (!query.exec(QStringLiteral(
            "SELECT token, name, user, pass, status FROM `schemas` ORDER BY token, sid")))
        return errorOf(query);
    QVector<Listed> rows;
    while (query.next())
        rows.append({recordOf(query), query.value(4).toInt()});
    return rows;
}

Result<QStringList> SchemaRegistry::tokensForMaintenance(ushort count) const
{
    return readTokens(
        QStringLiteral("SELECT token FROM `schemas` WHERE status = 1 AND (maintenance IS NULL OR "
                       "maintenance + 900 < UNIX_TIMESTAMP()) ORDER BY maintenance, sid LIMIT %1;")
            .arg(count));
}

Result<QStringList> SchemaRegistry::tokensForRecalculation(ushort count) const
{
    return readTokens(
        QStringLiteral(
            "SELECT token FROM `schemas` WHERE status = 1 ORDER BY recalc, sid LIMIT %1;")
            .arg(count));
}

Result<QStringList> SchemaRegistry::readTokens(const QString &sql) const
{
    QSqlQuery query = freshQuery(database);
    if (!query.exec(sql))
        return errorOf(query);
    QStringList tokens;
    while (query.next())
        tokens.append(query.value(0).toString());
    return tokens;
}

Result<bool> SchemaRegistry::stampMaintenance(const QString &token) const
{
    return stamp(
        QStringLiteral("UPDATE `schemas` SET maintenance = UNIX_TIMESTAMP() WHERE status = 1 AND "
                       "token = '%1';")
            .arg(token));
}

Result<bool> SchemaRegistry::stampRecalculation(const QString &token) const
{
    return stamp(QStringLiteral("UPDATE `schemas` SET recalc = UNIX_TIMESTAMP() WHERE status = 1 "
                                "AND token = '%1';")
                     .arg(token));
}

/// Runs the statement and returns whether it has changed the row. A row that already has the stamp
/// of the current second does not change.
Result<bool> SchemaRegistry::stamp(const QString &sql) const
{
    QSqlQuery query = freshQuery(database);
    if (!query.exec(sql))
        return errorOf(query);
    return query.numRowsAffected() > 0;
}

Result<QString> SchemaRegistry::tokenOf(const QString &databaseName) const
{
    QSqlQuery query = freshQuery(database);
    if (!query.exec(
            QStringLiteral("SELECT token FROM `schemas` WHERE status = 1 AND name = '%1' LIMIT 1;")
                .arg(databaseName)))
        return errorOf(query);
    return query.next() ? query.value(QStringLiteral("token")).toString() : QString();
}

Result<std::optional<DBSchemeRecord>> SchemaRegistry::find(const QString &token) const
{
    QSqlQuery query = freshQuery(database);
    if (!query.exec(
            QStringLiteral("SELECT * FROM `schemas` WHERE status = 1 AND token = '%1' LIMIT 1;")
                .arg(token)))
        return errorOf(query);
    return query.next() ? std::optional(recordOf(query)) : std::nullopt;
}

std::optional<Error> SchemaRegistry::check() const
{
    QSqlQuery query = freshQuery(database);
    if (query.exec(QStringLiteral("SELECT token, name, user, pass, status FROM `schemas` LIMIT 0")))
        return std::nullopt;
    return errorOf(query);
}
