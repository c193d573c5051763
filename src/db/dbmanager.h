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

    /// Resets debugLevel, setCloseInfoDB() and isInfoDB() to their initial values, and the assumed
    /// name of the information database's connection to "KVH.InfoDB". No lock.
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

    /// Returns the name of the calling thread's connection to that schema.
    QString getConnectionNameFromToken(const QString &token) const;
    /// Returns whether the calling thread has a connection to that schema, open or not.
    bool isDatabase(const QString &token) const;
    /// Returns whether this manager created the calling thread's connection to that schema.
    bool isConnection(const QString &token) const;
    /// Returns whether the connection of that name is open. On any thread but the connection's own,
    /// Qt warns and the result is false. No lock.
    bool connectionIsActive(const QString &name);

    /// Returns the number of active schemas or, if `active` is false, of inactive ones.
    uint tokensCount(bool active);
    /// Returns up to `limit` tokens of active schemas, beginning at `offset`, in a stable order.
    QStringList loadTokens(uint limit, uint offset);
    /// Returns up to `count` tokens of active schemas that had no maintenance in the last 900
    /// seconds, the longest waiting first. The caller must stamp each schema with setMaintenance()
    /// before working on it.
    QStringList loadTokens4Maintenance(ushort count);
    /// Returns up to `count` tokens of active schemas, the least recently recalculated first.
    QStringList loadTokens4Recalculate(ushort count);
    /// Stamp the schema's row with the current second. Return false on an error, if there is no
    /// such active schema, or if the row already has this stamp.
    bool setMaintenance(const QString &token);
    bool setRecalculated(const QString &token);
    /// Returns the token of the active schema in the database `name`; empty if there is none.
    QString getTokenBySchemaName(const QString &name);

    /// Reads and caches the schema's row if the schema is active. Returns an empty record if the
    /// server cannot be reached or there is no such row, and the cached row if the query fails. No
    /// lock.
    DBSchemeRecord loadScheme(const QString &token);
    /// Returns the row that loadScheme() has cached, or an empty record.
    DBSchemeRecord getDbConnRecord(const QString &token) const;

    /// Returns the calling thread's open connection to that schema, or the product's own database
    /// if `token` is empty. Returns Qt's default connection, which may be invalid, if the schema
    /// has no complete row or the first attempt to connect fails. After that attempt, each call
    /// reopens the schema's connection if necessary and returns it, open or not.
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
    QVector<QString> connections;       // names of those that getDatabase() created
    QVector<QString> unusedConnections; // in the order in which they were added
    bool closeInfoAfterUse = false;
    bool infoOpen = false;
    QString zasConnectionName;
    QString infoConnectionName;
    mutable QMutex mutex;
    QHash<QString, QString> reserved; // unused, but part of the binary interface
    bool poolEnabled = true;
};
