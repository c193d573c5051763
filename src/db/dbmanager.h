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
 * Holds two master connections: one to the information database, which has the table `schemas`,
 * and one to the product's own database. Opens a connection per schema and calling thread. Callers
 * identify a schema by its token.
 *
 * Any thread may call the functions: a mutex guards the state. Functions marked "No lock" do not
 * lock the mutex: call them only while no other thread uses the manager. No function throws. On an
 * error, a function logs it and returns an empty value, unless stated otherwise.
 *
 * The fields are a binary interface: a host and its plug-ins are each built with this class and
 * share its objects. The fields' order and types must not change, no field may be added, and no
 * function may be virtual.
 */
class DBManager
{
public:
    /// Above 0, many functions log their calls; above 1, isInfoDB() and getDatabase() do, too. Set
    /// it only while no other thread uses the manager.
    quint8 debugLevel = 0;

    DBManager();
    DBManager(const QSqlDatabase &info, const QSqlDatabase &zas);
    Q_DISABLE_COPY(DBManager)

    /// Resets debugLevel and what setCloseInfoDB() and isInfoDB() refer to. Until the next
    /// setInfoDB(), the connection named "KVH.InfoDB" counts as the information database's. No
    /// lock.
    void init();

    QSqlDatabase getInfoDB() const;
    QSqlDatabase getZasDB() const;
    void setInfoDB(const QSqlDatabase &db);
    void setZasDB(const QSqlDatabase &db);

    /// Sets whether to close the information database after each query. The next query reopens it.
    void setCloseInfoDB(bool close);

    /// Returns whether checkOpenDB() succeeded when it last tried to open the information database.
    /// Returns false before the first attempt, even if the database passed to setInfoDB() was open.
    bool isInfoDB() const;

    /// Opens `db` unless isUsable(db) returns true. Returns whether `db` is open. No lock.
    bool checkOpenDB(QSqlDatabase &db);

    /// Returns the name of the calling thread's connection to the schema `token`.
    QString getConnectionNameFromToken(const QString &token) const;
    /// Returns whether the calling thread has an open or closed connection to the schema `token`.
    bool isDatabase(const QString &token) const;
    /// Returns whether this manager created the calling thread's connection to the schema `token`.
    bool isConnection(const QString &token) const;
    /// Returns whether the connection `name` is open. On any thread but the connection's own, Qt
    /// warns and the result is false. No lock.
    bool connectionIsActive(const QString &name);

    /// Returns the number of active schemas (status 1) or, if `active` is false, of inactive
    /// schemas (status 0).
    uint tokensCount(bool active);
    /// Returns up to `limit` tokens of active schemas in a stable order, from position `offset` on.
    QStringList loadTokens(uint limit, uint offset);
    /// Returns up to `count` tokens of active schemas that had no maintenance in the last 900
    /// seconds, the least recently maintained first. The caller must stamp each schema with
    /// setMaintenance() before working on it.
    QStringList loadTokens4Maintenance(ushort count);
    /// Returns up to `count` tokens of active schemas, the least recently recalculated first.
    QStringList loadTokens4Recalculate(ushort count);
    /// Stamp the row of the schema `token` with the current Unix second. Return false on an error,
    /// if no active schema has this token, or if the row already has this stamp.
    bool setMaintenance(const QString &token);
    bool setRecalculated(const QString &token);
    /// Returns the token of the active schema in the database `name`, or an empty text if there is
    /// no such schema.
    QString getTokenBySchemaName(const QString &name);

    /// Reads and caches the row of the active schema `token`, and returns it. Returns an empty
    /// record if the server cannot be reached or no row was found. If the query fails, returns the
    /// result of getDbConnRecord(). No lock.
    DBSchemeRecord loadScheme(const QString &token);
    /// Returns the row that loadScheme() has cached for `token`, or an empty record.
    DBSchemeRecord getDbConnRecord(const QString &token) const;

    /// Returns the calling thread's open connection to the schema `token`, or the connection to the
    /// product's own database if `token` is empty. Returns Qt's default connection, which may be
    /// invalid, if no complete row was found for the schema or the thread's first attempt to
    /// connect fails. After that attempt, each call reopens the thread's connection if necessary,
    /// and returns it even if that fails.
    ///
    /// Before a thread ends, it must pass the names of its connections to addUnusedConnection().
    /// Otherwise a later thread with the same id would get these connections but could not use
    /// them.
    QSqlDatabase getDatabase(const QString &token);

    /// The pool: names of connections that their threads no longer use. A thread adds the names of
    /// its connections before it ends; master connections are refused. removeUnusedConnections()
    /// empties the pool and removes these connections, except for those that are open in the
    /// calling thread. Disabling the pool clears it.
    void addUnusedConnection(const QString &name);
    void setUnusedConnectionsEnabled(bool on);
    void removeUnusedConnections();

private:
    // The caller holds the mutex.
    template <typename Ask>
    auto askRegistry(const QString &errorPrefix, const Ask &ask);
    void closeInfoIfSet();
    QSqlDatabase openSchema(const QString &token, const QString &connectionName,
                            const DBSchemeRecord &scheme);
    bool isMaster(const QString &name) const;
    void removeUnused(const QString &name);

    QHash<QString, DBSchemeRecord> schemaCache; // by token; never shrinks
    QSqlDatabase infoDatabase;
    QSqlDatabase zasDatabase;
    QVector<QString> connections;       // names of connections from getDatabase()
    QVector<QString> unusedConnections; // in the order in which they were added
    bool closeInfoAfterUse = false;
    bool infoOpen = false;
    QString zasConnectionName;
    QString infoConnectionName;
    mutable QMutex mutex;
    QHash<QString, QString> reserved; // unused, but part of the binary interface
    bool poolEnabled = true;
};
