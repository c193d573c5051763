#pragma once

#include "db/dbschemerecord.h"

#include <QHash>
#include <QMutex>
#include <QSqlDatabase>
#include <QStringList>
#include <QVector>

/**
 * Hands out database connections.
 *
 * It holds two master connections, the information database with the table `schemas` and the
 * product's own database, and opens a connection to each schema for each thread that asks. Schemas
 * are addressed by their token.
 *
 * Any thread may call it: one mutex guards the state. Operations marked "no lock" are called with
 * the mutex held from inside, and otherwise only while no other thread uses the manager. Nothing
 * throws: an error is an empty result and a log line.
 *
 * The fields are a binary interface: a host and its plug-ins each carry a copy of this class and
 * share the objects. Their order and types must not change, no field may be added, and no function
 * may be virtual.
 */
class DBManager
{
public:
    /// Above 0 most operations log what they do, above 1 the frequent ones too. Set it while no
    /// other thread uses the manager.
    quint8 debugLevel = 0;

    DBManager();
    DBManager(const QSqlDatabase &info, const QSqlDatabase &zas);
    Q_DISABLE_COPY(DBManager)

    /// Back to the state before the host's settings; the connections stay. No lock.
    void init();

    QSqlDatabase getInfoDB() const;
    QSqlDatabase getZasDB() const;
    void setInfoDB(const QSqlDatabase &db);
    void setZasDB(const QSqlDatabase &db);

    /// With true the information database is closed after each query and reopened by the next.
    void setCloseInfoDB(bool close);

    /// Whether the last attempt to open the information database succeeded. One that was handed
    /// over open counts only once checkOpenDB() has opened it.
    bool isInfoDB() const;

    /// Opens `db` unless it is open. No lock.
    bool checkOpenDB(QSqlDatabase &db);

    /// The name of the calling thread's connection to that schema.
    QString getConnectionNameFromToken(const QString &token) const;
    /// Whether Qt knows the calling thread's connection to that schema.
    bool isDatabase(const QString &token) const;
    /// Whether this manager made it.
    bool isConnection(const QString &token) const;
    /// Whether the connection of that name is open. Only its own thread gets a true answer: for
    /// others Qt warns and the result is false. No lock.
    bool connectionIsActive(const QString &name);

    uint tokensCount(bool active);
    /// One page of the active schemas' tokens, in a stable order.
    QStringList loadTokens(uint limit, uint offset);
    /// Schemas without maintenance for 900 seconds, longest waiting first. The caller stamps each
    /// one with setMaintenance() before working on it.
    QStringList loadTokens4Maintenance(ushort count);
    QStringList loadTokens4Recalculate(ushort count);
    /// The two stamps: false also when the row already held the current second.
    bool setMaintenance(const QString &token);
    bool setRecalculated(const QString &token);
    QString getTokenBySchemaName(const QString &name);

    /// Reads and caches one row of `schemas`: empty without a server or such a row, the row as last
    /// read when the query fails. No lock.
    DBSchemeRecord loadScheme(const QString &token);
    DBSchemeRecord getDbConnRecord(const QString &token) const;

    /// The calling thread's connection to that schema, opened; the product's own database for an
    /// empty token; Qt's default connection, valid or not, when there is no way to the schema.
    /// After a failed attempt later calls give the schema's own connection, tried again, and open
    /// only if that helped.
    QSqlDatabase getDatabase(const QString &token);

    /// The pool of connections that their threads no longer use. A thread offers names before it
    /// ends; removeUnusedConnections() removes those that are closed. Master connections are
    /// refused. Switching the pool off forgets what it held.
    void addUnusedConnection(const QString &name);
    void setUnusedConnectionsEnabled(bool on);
    void removeUnusedConnections();

private:
    // All of these: with the mutex held.
    template <typename Ask>
    auto askRegistry(const QString &errorPrefix, const Ask &ask);
    void closeInfoIfSet();
    QSqlDatabase openSchema(const QString &token, const QString &connectionName,
                            const DBSchemeRecord &scheme);
    bool isMaster(const QString &name) const;
    void removeUnused(const QString &name);

    QHash<QString, DBSchemeRecord> schemaCache; // by token; only grows
    QSqlDatabase infoDatabase;
    QSqlDatabase zasDatabase;
    QVector<QString> connections;       // names made by getDatabase(), each once
    QVector<QString> unusedConnections; // in order of arrival
    bool closeInfoAfterUse = false;
    bool infoOpen = false;
    QString zasConnectionName;
    QString infoConnectionName;
    mutable QMutex mutex;
    QHash<QString, QString> reserved; // part of the layout, unused
    bool poolEnabled = true;
};
