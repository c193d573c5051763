#pragma once

#include "common/result.h"
#include "options/connectionoptions.h"

#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QVector>

#include <limits>
#include <memory>
#include <optional>

class SilenceWatch;

/// A row of the table `schemas`, active or not, and how to connect to the schema's database.
struct SchemaRow {
    QString token;
    int status = 1; ///< 1 is active
    ConnectionOptions options;
    /// How long ago anybody wrote the table, by the server's clock; a large number if unknown.
    qint64 secondsSinceListed = std::numeric_limits<qint64>::max();

    /// Returns why no host can open the schema, or an empty text.
    QString error() const;
};

/// Returns the active rows, which hosts serve.
QVector<SchemaRow> activeOf(const QVector<SchemaRow> &rows);

/**
 * The schemas that a host would serve: those that the information database lists or, with
 * "--single", the one database, whose name serves as its token.
 *
 * Owns one connection, which the destructor removes. Only one object may exist at a time.
 */
class Schemas
{
public:
    explicit Schemas(const ConnectionOptions &connectionOptions);
    ~Schemas();
    Q_DISABLE_COPY(Schemas)

    /// Opens the connection; call it first. Returns the error, if any.
    std::optional<Error> open() const;

    /// Returns the tokens of all active schemas, in a stable order.
    Result<QStringList> tokens() const;

    /// Returns the rows of that token, or all rows if it is empty, including inactive ones. They
    /// are in the order of tokens().
    Result<QVector<SchemaRow>> rows(const QString &token) const;

    /// Returns how to connect to that schema, with the account and password of its row, or nothing
    /// if there is no such active schema.
    Result<std::optional<ConnectionOptions>> find(const QString &token) const;

    /// Returns whether the server still answers within the time limit.
    bool isAnswering() const;

    /// Returns the connection to the information database or to the one database.
    QSqlDatabase master() const;

private:
    ConnectionOptions options;
};

/**
 * A connection to one schema, which the destructor closes and removes.
 *
 * For the thread that constructs it. No query may outlive it. The connection never reconnects.
 */
class SchemaConnection
{
public:
    /// The server enforces ReadOnly for as long as the connection lasts.
    enum class Access { ReadOnly, ReadWrite };

    /// Short statements must be answered within the time limit. Long ones may take any time,
    /// provided that the server still accepts connections, which is tested meanwhile.
    enum class Statements { Short, Long };

    SchemaConnection(const Schemas &schemas, const QString &token, Access access,
                     Statements statements = Statements::Short);
    explicit SchemaConnection(const SchemaRow &row, Access access = Access::ReadWrite);
    ~SchemaConnection();
    Q_DISABLE_COPY(SchemaConnection)

    QSqlDatabase database() const;

    QString databaseName;
    QString error; ///< why the connection is not open, and what to do about it; empty if it is open

private:
    void open(const ConnectionOptions &options, Access access);

    const QString name;                  ///< of the registered connection
    std::unique_ptr<SilenceWatch> watch; ///< null for short statements
};
