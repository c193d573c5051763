#pragma once

#include "db/dbmanager.h"
#include "options/connectionoptions.h"

#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <memory>

/**
 * The schemas that a host would serve, as the information database lists them; with "--single"
 * the one database, under its own name.
 *
 * It keeps one connection, which it removes with itself: one object at a time. Failures after
 * open() are warnings in the log.
 */
class Schemas
{
public:
    explicit Schemas(const ConnectionOptions &options);
    ~Schemas();
    Q_DISABLE_COPY(Schemas)

    /// To be called first. Gives the reason of a failure, or an empty text.
    QString open();

    /// The tokens of all active schemas, in a stable order. A failure is a warning, and the list
    /// may end early.
    QStringList tokens();

    /// How to reach that schema, with the account and the password of its row; without a database
    /// name when there is no such active schema.
    ConnectionOptions find(const QString &token);

    /// The information database's connection, or the one database's.
    QSqlDatabase master() const;

private:
    ConnectionOptions options;
    std::unique_ptr<DBManager> manager; ///< null with "--single"
};

/**
 * A connection to one schema, closed and removed with the object: however many schemas there are,
 * no more than two connections are open at a time.
 *
 * One object at a time, and no query may outlive it. The connection does not come back by itself.
 */
class SchemaConnection
{
public:
    /// ReadOnly is enforced by the server, for as long as the connection lasts.
    enum class Access { ReadOnly, ReadWrite };

    SchemaConnection(Schemas &schemas, const QString &token, Access access);
    ~SchemaConnection();
    Q_DISABLE_COPY(SchemaConnection)

    QSqlDatabase database() const;

    QString databaseName;
    QString error; ///< why there is no connection, with what to do about it; empty when it is open
};
