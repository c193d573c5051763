#pragma once

#include "common/result.h"
#include "options/connectionoptions.h"

#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class SilenceWatch;

/**
 * The schemas that a host would serve, as the information database lists them; with "--single"
 * the one database, under its own name.
 *
 * It keeps one connection, which it removes in its destructor: one object at a time.
 */
class Schemas
{
public:
    explicit Schemas(const ConnectionOptions &options);
    ~Schemas();
    Q_DISABLE_COPY(Schemas)

    /// To be called first. Returns why the schemas cannot be asked for, if so.
    std::optional<Error> open() const;

    /// Returns the tokens of all active schemas, in a stable order.
    Result<QStringList> tokens() const;

    /// Returns how to connect to that schema, with the account and the password of its row; nothing
    /// when there is no such active schema.
    Result<std::optional<ConnectionOptions>> find(const QString &token) const;

    /// Whether the server still answers, within the limit of time.
    bool isAnswering() const;

    /// The information database's connection, or the one database's.
    QSqlDatabase master() const;

private:
    ConnectionOptions options;
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

    /// Short statements must be answered within the limit of time. Long ones are waited for as long
    /// as the server answers others.
    enum class Statements { Short, Long };

    SchemaConnection(const Schemas &schemas, const QString &token, Access access,
                     Statements statements = Statements::Short);
    ~SchemaConnection();
    Q_DISABLE_COPY(SchemaConnection)

    QSqlDatabase database() const;

    QString databaseName;
    QString error; ///< why there is no connection, with what to do about it; empty when it is open

private:
    void open(const ConnectionOptions &options, Access access);

    std::unique_ptr<SilenceWatch> watch; ///< of long statements
};
