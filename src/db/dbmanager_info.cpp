// DBManager's functions that query the information database. They call SchemaRegistry and log its
// errors.

#include "db/dbmanager.h"

#include "db/schemaregistry.h"

#include <QDebug>

#include <type_traits>

/// Opens the information database and calls `ask`. Returns the value that `ask` has found. On an
/// error, logs it and returns an empty value. The registry and its queries are destroyed before the
/// database is closed.
template <typename Ask>
auto DBManager::askRegistry(const QString &errorPrefix, const Ask &ask)
{
    using Value = typename std::invoke_result_t<Ask, const SchemaRegistry &>::Value;
    if (!checkOpenDB(infoDatabase))
        return Value();
    const auto result = ask(SchemaRegistry(infoDatabase));
    closeInfoIfSet();
    if (result.isOk())
        return result.value();
    qCritical().noquote() << errorPrefix << result.error();
    return Value();
}

void DBManager::closeInfoIfSet()
{
    if (closeInfoAfterUse)
        infoDatabase.close();
}

uint DBManager::tokensCount(bool active)
{
    const QMutexLocker locker(&mutex);
    if (debugLevel)
        qDebug("DBManager::tokensCount(%s)", active ? "TRUE" : "FALSE");
    // Every scan first calls this function. Without an information database, the scan ends without
    // a log line.
    if (!infoDatabase.isValid())
        return 0;
    return askRegistry(QStringLiteral("DBManager::tokensCount() - ERROR:"),
                       [&](const SchemaRegistry &registry) { return registry.count(active); });
}

QStringList DBManager::loadTokens(uint limit, uint offset)
{
    const QMutexLocker locker(&mutex);
    if (debugLevel)
        qDebug("DBManager::loadTokens(limit: %u, offset: %u)", limit, offset);
    return askRegistry(
        QStringLiteral("DBManager::loadTokens NOT load schemas from infoDB!\nERROR:"),
        [&](const SchemaRegistry &registry) { return registry.tokens(limit, offset); });
}

QStringList DBManager::loadTokens4Maintenance(ushort count)
{
    const QMutexLocker locker(&mutex);
    if (debugLevel)
        qDebug() << "DBManager::loadTokens4Maintenance(" << count << ")";
    return askRegistry(
        QStringLiteral("DBManager:: NOT load schemas for maintenance from infoDB!\nERROR:"),
        [&](const SchemaRegistry &registry) { return registry.tokensForMaintenance(count); });
}

QStringList DBManager::loadTokens4Recalculate(ushort count)
{
    const QMutexLocker locker(&mutex);
    if (debugLevel)
        qDebug() << "DBManager::loadTokens4Recalculate(" << count << ")";
    return askRegistry(
        QStringLiteral("DBManager:: NOT load schemas for recalculate from infoDB!\nERROR:"),
        [&](const SchemaRegistry &registry) { return registry.tokensForRecalculation(count); });
}

bool DBManager::setMaintenance(const QString &token)
{
    const QMutexLocker locker(&mutex);
    return askRegistry(
        QStringLiteral("DBManager:: cannot set maintenance for token%1!\nERROR:").arg(token),
        [&](const SchemaRegistry &registry) { return registry.stampMaintenance(token); });
}

bool DBManager::setRecalculated(const QString &token)
{
    const QMutexLocker locker(&mutex);
    return askRegistry(
        QStringLiteral("DBManager:: cannot set recalc of %1!\nERROR:").arg(token),
        [&](const SchemaRegistry &registry) { return registry.stampRecalculation(token); });
}

QString DBManager::getTokenBySchemaName(const QString &name)
{
    const QMutexLocker locker(&mutex);
    return askRegistry(QStringLiteral("DBManager:: NOT load scheme from infoDB!\nERROR:"),
                       [&](const SchemaRegistry &registry) { return registry.tokenOf(name); });
}

DBSchemeRecord DBManager::loadScheme(const QString &token)
{
    // Without a server, a cached row is of no use.
    if (!checkOpenDB(infoDatabase))
        return {};
    const auto found = SchemaRegistry(infoDatabase).find(token);
    closeInfoIfSet();
    if (!found.isOk()) {
        qCritical().noquote() << "DBManager:: NOT load scheme from infoDB!\nERROR:"
                              << found.error();
        // While the table cannot be read, the cached row is the best guess.
        return schemaCache.value(token);
    }
    if (!found.value())
        return {};
    schemaCache.insert(token, *found.value());
    return *found.value();
}
