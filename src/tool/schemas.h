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
    /// Seconds since the table was last written, by the server's clock; the largest number if
    /// unknown.
    qint64 secondsSinceListed = std::numeric_limits<qint64>::max();

    /// Returns an error if the name, user or password is empty, because then no host can open the
    /// schema. Otherwise, and always with "--single", returns an empty text.
    QString error() const;
};

/// Returns the active rows, which hosts serve.
QVector<SchemaRow> activeOf(const QVector<SchemaRow> &rows);

/**
 * The schemas that the information database lists. With "--single", there is only one schema: the
 * database of the connection options, whose name is its token.
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

    /// Returns the rows with this token, or all rows if `token` is empty. Includes inactive rows.
    /// The order is that of tokens().
    Result<QVector<SchemaRow>> rows(const QString &token) const;

    /// Returns how to connect to the active schema `token`, with the account and password of its
    /// row. Returns nothing if there is no such schema.
    Result<std::optional<ConnectionOptions>> find(const QString &token) const;

    /// Returns whether the server still answers within the time limit.
    bool isAnswering() const;

    /// Returns the connection to the information database or, with "--single", to the only schema.
    QSqlDatabase master() const;

private:
    ConnectionOptions options;
};

/**
 * A connection to one schema. The destructor closes and removes the connection.
 *
 * Use it only on the thread that constructed it. Destroy all queries on the connection before the
 * object. The connection never reconnects.
 */
class SchemaConnection
{
public:
    /// The server enforces ReadOnly for as long as the connection lasts.
    enum class Access { ReadOnly, ReadWrite };

    /// The server must answer a short statement within the time limit. A long statement has no
    /// limit, but a SilenceWatch ends it if the server no longer answers other connections.
    enum class Statements { Short, Long };

    SchemaConnection(const Schemas &schemas, const QString &token, Access access,
                     Statements statements = Statements::Short);
    explicit SchemaConnection(const SchemaRow &row, Access access = Access::ReadWrite);
    ~SchemaConnection();
    Q_DISABLE_COPY(SchemaConnection)

    QSqlDatabase database() const;

    QString databaseName;
    QString error; ///< why the connection cannot be used; empty if it can

private:
    void open(const ConnectionOptions &options, Access access);

    const QString name;                  ///< of the registered connection
    std::unique_ptr<SilenceWatch> watch; ///< null for short statements
};
