// What the connection manager asks of the information database.

#include "db/dbmanager.h"

#include "common/freshquery.h"

#include <QDebug>
#include <QSqlError>
#include <QVariant>

namespace
{

QString schemeFailure()
{
    return QStringLiteral("DBManager:: NOT load scheme from infoDB!\nERROR:");
}

} // namespace

// The frame of every query: open, ask, let `read` take the rows, close again if so set.
bool DBManager::queryInfo(const QString &sql, const QString &failure, const Reader &read)
{
    if (!checkOpenDB(infoDatabase))
        return false;
    bool ran = false;
    { // the query must be gone before the database is closed
        QSqlQuery query = freshQuery(infoDatabase);
        ran = query.exec(sql);
        if (ran)
            read(query);
        else
            qCritical().noquote() << failure << query.lastError().text();
    }
    if (closeInfoAfterUse)
        infoDatabase.close();
    return ran;
}

QStringList DBManager::queryTokens(const QString &sql, const QString &failure)
{
    QStringList tokens;
    queryInfo(sql, failure, [&tokens](QSqlQuery &query) {
        while (query.next())
            tokens.append(query.value(0).toString());
    });
    return tokens;
}

// MySQL counts the rows that it changed, not those that it found.
bool DBManager::stamp(const QString &sql, const QString &failure)
{
    bool affected = false;
    queryInfo(sql, failure,
              [&affected](QSqlQuery &query) { affected = query.numRowsAffected() > 0; });
    return affected;
}

uint DBManager::tokensCount(bool active)
{
    const QMutexLocker locker(&mutex);
    if (debugLevel)
        qDebug("DBManager::tokensCount(%s)", active ? "TRUE" : "FALSE");
    // The first question of every scan: a manager without an information database answers it
    // without a log line.
    if (!infoDatabase.isValid())
        return 0;
    uint count = 0;
    queryInfo(
        QStringLiteral("SELECT COUNT(*) FROM `schemas` WHERE status = %1;").arg(active ? 1 : 0),
        QStringLiteral("DBManager::tokensCount() - ERROR:"), [&count](QSqlQuery &query) {
            if (query.next())
                count = query.value(0).toUInt();
        });
    return count;
}

QStringList DBManager::loadTokens(uint limit, uint offset)
{
    const QMutexLocker locker(&mutex);
    if (debugLevel)
        qDebug("DBManager::loadTokens(limit: %u, offset: %u)", limit, offset);
    return queryTokens(
        QStringLiteral(
            "SELECT token FROM `schemas` WHERE status = 1 ORDER BY token, sid LIMIT %1, %2;")
            .arg(QString::number(offset), QString::number(limit)),
        QStringLiteral("DBManager::loadTokens NOT load schemas from infoDB!\nERROR:"));
}

QStringList DBManager::loadTokens4Maintenance(ushort count)
{
    const QMutexLocker locker(&mutex);
    if (debugLevel)
        qDebug() << "DBManager::loadTokens4Maintenance(" << count << ")";
    return queryTokens(
        QStringLiteral("SELECT token FROM `schemas` WHERE status = 1 AND (maintenance IS NULL OR "
                       "maintenance + 900 < UNIX_TIMESTAMP()) ORDER BY maintenance, sid LIMIT %1;")
            .arg(count),
        QStringLiteral("DBManager:: NOT load schemas for maintenance from infoDB!\nERROR:"));
}

QStringList DBManager::loadTokens4Recalculate(ushort count)
{
    const QMutexLocker locker(&mutex);
    if (debugLevel)
        qDebug() << "DBManager::loadTokens4Recalculate(" << count << ")";
    return queryTokens(
        QStringLiteral(
            "SELECT token FROM `schemas` WHERE status = 1 ORDER BY recalc, sid LIMIT %1;")
            .arg(count),
        QStringLiteral("DBManager:: NOT load schemas for recalculate from infoDB!\nERROR:"));
}

bool DBManager::setMaintenance(const QString &token)
{
    const QMutexLocker locker(&mutex);
    return stamp(
        QStringLiteral("UPDATE `schemas` SET maintenance = UNIX_TIMESTAMP() WHERE status = 1 AND "
                       "token = '%1';")
            .arg(token),
        QStringLiteral("DBManager:: cannot set maintenance for token%1!\nERROR:").arg(token));
}

bool DBManager::setRecalculated(const QString &token)
{
    const QMutexLocker locker(&mutex);
    return stamp(QStringLiteral("UPDATE `schemas` SET recalc = UNIX_TIMESTAMP() WHERE status = 1 "
                                "AND token = '%1';")
                     .arg(token),
                 QStringLiteral("DBManager:: cannot set recalc of %1!\nERROR:").arg(token));
}

QString DBManager::getTokenBySchemaName(const QString &name)
{
    const QMutexLocker locker(&mutex);
    QString token;
    queryInfo(
        QStringLiteral("SELECT token FROM `schemas` WHERE status = 1 AND name = '%1' LIMIT 1;")
            .arg(name),
        schemeFailure(), [&token](QSqlQuery &query) {
            if (query.next())
                token = query.value(QStringLiteral("token")).toString();
        });
    return token;
}

DBSchemeRecord DBManager::loadScheme(const QString &token)
{
    // Without a server the cached record would lead nowhere, so none is given.
    if (!checkOpenDB(infoDatabase))
        return {};
    DBSchemeRecord scheme;
    const auto read = [&](QSqlQuery &query) {
        if (!query.next())
            return;
        scheme.token = query.value(QStringLiteral("token")).toString();
        const QByteArray encoded = query.value(QStringLiteral("pass")).toByteArray();
        scheme.pass = QString::fromUtf8(QByteArray::fromBase64(encoded));
        scheme.user = query.value(QStringLiteral("user")).toString();
        scheme.name = query.value(QStringLiteral("name")).toString();
        schemaCache.insert(token, scheme);
    };
    const bool ran = queryInfo(
        QStringLiteral("SELECT * FROM `schemas` WHERE status = 1 AND token = '%1' LIMIT 1;")
            .arg(token),
        schemeFailure(), read);
    // What was read last is better than nothing while the table cannot be read.
    return ran ? scheme : schemaCache.value(token);
}
