#include "db/dbmanager.h"

#include "db/connectiondefaults.h"
#include "db/servercertificate.h"
#include "db/serversocket.h"

#include <QDebug>
#include <QSqlError>
#include <QThread>

namespace
{

QString defaultConnectionName()
{
    return QLatin1String(QSqlDatabase::defaultConnection);
}

/// Returns Qt's default connection, which callers get if a schema cannot be reached. The connection
/// is invalid unless the host has registered it: callers must check.
QSqlDatabase defaultConnection()
{
    return QSqlDatabase::database(defaultConnectionName(), true);
}

/// Opens `db` unless isUsable(db) returns true. Opening may fail: callers must check the result.
QSqlDatabase reopened(QSqlDatabase db)
{
    if (!isUsable(db)) {
        db.close();
        openWithin(db, connectSeconds);
    }
    return db;
}

void logMaster(const char *operation, const QSqlDatabase &db)
{
    qDebug("DBManager::%s(host: '%s', port: %i, database: '%s', connection: '%s')", operation,
           qUtf8Printable(db.hostName()), db.port(), qUtf8Printable(db.databaseName()),
           qUtf8Printable(db.connectionName()));
}

/// Returns the encryption options among `connectOptions`, each preceded by a semicolon.
QString encryptionIn(const QString &connectOptions)
{
    QString found;
    for (const QString &option : connectOptions.split(QLatin1Char(';'))) {
        if (option.startsWith(QLatin1String("SSL_")))
            found += QLatin1Char(';') + option;
    }
    return found;
}

} // namespace

DBManager::DBManager()
    : DBManager(QSqlDatabase(), QSqlDatabase())
{
}

DBManager::DBManager(const QSqlDatabase &info, const QSqlDatabase &zas)
    : infoDatabase(info)
    , zasDatabase(zas)
{
    init();
}

void DBManager::init()
{
    debugLevel = 0;
    closeInfoAfterUse = false;
    infoOpen = false;
    infoConnectionName = informationConnection;
}

QSqlDatabase DBManager::getInfoDB() const
{
    const QMutexLocker locker(&mutex);
    return infoDatabase;
}

QSqlDatabase DBManager::getZasDB() const
{
    const QMutexLocker locker(&mutex);
    return zasDatabase;
}

void DBManager::setInfoDB(const QSqlDatabase &db)
{
    if (debugLevel)
        logMaster("setInfoDB", db);
    const QMutexLocker locker(&mutex);
    infoDatabase = db;
    infoConnectionName = db.connectionName();
}

void DBManager::setZasDB(const QSqlDatabase &db)
{
    if (debugLevel)
        logMaster("setZasDB", db);
    const QMutexLocker locker(&mutex);
    zasDatabase = db;
    zasConnectionName = db.connectionName();
}

void DBManager::setCloseInfoDB(bool close)
{
    const QMutexLocker locker(&mutex);
    closeInfoAfterUse = close;
}

bool DBManager::isInfoDB() const
{
    const QMutexLocker locker(&mutex);
    if (debugLevel > 1)
        qDebug("DBManager::isInfoDB(): %s", infoOpen ? "TRUE" : "FALSE");
    return infoOpen;
}

bool DBManager::checkOpenDB(QSqlDatabase &db)
{
    if (isUsable(db))
        return true;
    db.close();
    const bool open = openWithin(db, connectSeconds);
    if (!open) {
        qWarning().noquote() << "DBManager:: database" << db.databaseName()
                             << "can NOT open! ERROR:" << db.lastError().text();
    }
    // `db` may be any connection, but only the information database's state is remembered.
    const QString name = db.connectionName();
    if (!name.isEmpty() && name == infoConnectionName)
        infoOpen = open;
    return open;
}

/// The name contains the thread's id, because only the thread that created a connection may use it.
QString DBManager::getConnectionNameFromToken(const QString &token) const
{
    return QStringLiteral("%2_dbc_%1")
        .arg(token, QString::asprintf("%p", QThread::currentThreadId()));
}

bool DBManager::isDatabase(const QString &token) const
{
    const QMutexLocker locker(&mutex);
    return QSqlDatabase::contains(getConnectionNameFromToken(token));
}

bool DBManager::isConnection(const QString &token) const
{
    const QMutexLocker locker(&mutex);
    return connections.contains(getConnectionNameFromToken(token));
}

bool DBManager::connectionIsActive(const QString &name)
{
    const QSqlDatabase db = QSqlDatabase::database(name, false);
    return db.isValid() && db.isOpen();
}

DBSchemeRecord DBManager::getDbConnRecord(const QString &token) const
{
    const QMutexLocker locker(&mutex);
    return schemaCache.value(token);
}

QSqlDatabase DBManager::getDatabase(const QString &token)
{
    if (debugLevel > 1)
        qDebug("DBManager::getDatabase(%s)", qUtf8Printable(token));

    const QMutexLocker locker(&mutex);
    if (token.isEmpty())
        return zasDatabase;
    const QString name = getConnectionNameFromToken(token);
    if (QSqlDatabase::contains(name))
        return reopened(QSqlDatabase::database(name, false));

    const DBSchemeRecord scheme = loadScheme(token);
    if (scheme.name.isEmpty() || scheme.user.isEmpty() || scheme.pass.isEmpty())
        return defaultConnection();
    return openSchema(token, name, scheme);
}

QSqlDatabase DBManager::openSchema(const QString &token, const QString &connectionName,
                                   const DBSchemeRecord &scheme)
{
    if (!connections.contains(connectionName))
        connections.append(connectionName);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), connectionName);
    // All schemas are on the information database's server, so connections to schemas use the
    // encryption options of the connection to the information database.
    db.setHostName(infoDatabase.hostName());
    db.setPort(infoDatabase.port());
    db.setDatabaseName(scheme.name);
    db.setUserName(scheme.user);
    db.setPassword(scheme.pass);
    db.setConnectOptions(reconnectingOptions + encryptionIn(infoDatabase.connectOptions()));
    if (openWithin(db, connectSeconds))
        return db;

    // The connection stays registered: the next getDatabase() finds it by its name and tries again.
    qWarning().noquote() << "DBManager:: database" << connectionName << "(token:" << token
                         << ") NOT OPEN!";
    if (db.lastError().isValid())
        qWarning().noquote() << "SQL ERROR:" << db.lastError().text();
    return defaultConnection();
}

/// Returns whether `name` is the name of a master connection, which the pool must not remove. The
/// usual name of the connection to the product's database counts even if the host uses another.
bool DBManager::isMaster(const QString &name) const
{
    return name == zasConnectionName || name == infoConnectionName || name == productConnection ||
           name == defaultConnectionName();
}

void DBManager::addUnusedConnection(const QString &name)
{
    const QMutexLocker locker(&mutex);
    if (!poolEnabled)
        return;
    if (debugLevel)
        qDebug("DBManager::addUnusedConnection(%s)", qUtf8Printable(name));
    if (name.isEmpty())
        return;
    if (isMaster(name)) {
        qWarning().noquote() << "DBManager::addUnusedConnection() Master connection" << name
                             << "cannot add to unused connections!";
        return;
    }
    unusedConnections.append(name);
}

void DBManager::setUnusedConnectionsEnabled(bool on)
{
    const QMutexLocker locker(&mutex);
    if (on == poolEnabled)
        return;
    if (debugLevel)
        qDebug("DBManager::setUnusedConnectionsEnabled(%s)", on ? "true" : "false");
    poolEnabled = on;
    if (!on)
        unusedConnections.clear();
}

void DBManager::removeUnusedConnections()
{
    const QMutexLocker locker(&mutex);
    if (!poolEnabled)
        return;
    if (debugLevel) {
        qDebug().noquote() << "DBManager::removeUnusedConnections() - master connections:"
                           << zasConnectionName << infoConnectionName << defaultConnectionName();
    }
    while (!unusedConnections.isEmpty())
        removeUnused(unusedConnections.takeFirst());
}

void DBManager::removeUnused(const QString &name)
{
    if (isMaster(name)) {
        // The connection was added to the pool before it became a master connection.
        qWarning().noquote()
            << "DBManager::removeUnusedConnections() - cannot remove master connection" << name;
        return;
    }
    if (connectionIsActive(name)) {
        // The pool drops the name: this thread still uses the connection and will add it again.
        qWarning().noquote()
            << "DBManager::removeUnusedConnections() - can't remove active connection" << name;
        return;
    }
    if (debugLevel)
        qDebug().noquote() << "DBManager::removeUnusedConnections() - removing:" << name;
    QSqlDatabase::removeDatabase(name);
    connections.removeOne(name);
}
