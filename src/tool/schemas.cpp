#include "tool/schemas.h"

#include "common/freshquery.h"
#include "db/connectiondefaults.h"
#include "db/schemaregistry.h"
#include "db/serverlist.h"
#include "db/serversocket.h"
#include "tool/silencewatch.h"
#include "tool/tablefacts.h"

#include <algorithm>
#include <atomic>
#include <iterator>

namespace
{

QString masterName()
{
    return informationConnection;
}

/// Returns a new name at each call, because several threads have a connection each.
QString newName()
{
    static std::atomic<int> made{0};
    return QStringLiteral("AutoReport.tool.%1").arg(++made);
}

/// Returns whether `token` can be part of a statement: the registry does not escape tokens.
bool isPlain(const QString &token)
{
    return !token.contains(QLatin1Char('\'')) && !token.contains(QLatin1Char('\\'));
}

/// Requires a user, because without one the client library would log in as the account that runs
/// this program.
bool isComplete(const ConnectionOptions &row)
{
    return !row.databaseName.isEmpty() && !row.user.isEmpty() && !row.password.isEmpty();
}

ConnectionOptions withRow(ConnectionOptions options, const DBSchemeRecord &row)
{
    options.databaseName = row.name;
    options.user = row.user;
    options.password = row.pass;
    return options;
}

} // namespace

QString SchemaRow::error() const
{
    if (options.single || isComplete(options))
        return {};
    return QStringLiteral("the name, user or pass of schema '%1' is empty").arg(token);
}

QVector<SchemaRow> activeOf(const QVector<SchemaRow> &rows)
{
    QVector<SchemaRow> active;
    std::copy_if(rows.cbegin(), rows.cend(), std::back_inserter(active),
                 [](const SchemaRow &row) { return row.status == 1; });
    return active;
}

Schemas::Schemas(const ConnectionOptions &connectionOptions)
    : options(connectionOptions)
{
    options.addDatabase(masterName(), ConnectionOptions::OnLoss::Fail);
}

Schemas::~Schemas()
{
    QSqlDatabase::removeDatabase(masterName());
}

std::optional<Error> Schemas::open() const
{
    QSqlDatabase db = master();
    if (!openOnAny(db))
        return Error{ConnectionOptions::openError(db)};
    if (options.single)
        return std::nullopt;
    // Checks the table `schemas` now, so that a wrong database is one error, not one per schema.
    const auto error = SchemaRegistry(db).check();
    if (!error)
        return std::nullopt;
    return Error{QStringLiteral("the database '%1' is not an information database: %2; with "
                                "--single it is treated as one schema")
                     .arg(db.databaseName(), error->text.simplified())};
}

QSqlDatabase Schemas::master() const
{
    return QSqlDatabase::database(masterName(), false);
}

bool Schemas::isAnswering() const
{
    return freshQuery(master()).exec(QStringLiteral("DO 0"));
}

Result<QStringList> Schemas::tokens() const
{
    if (options.single)
        return QStringList(options.databaseName);
    return SchemaRegistry(master()).allTokens();
}

Result<std::optional<ConnectionOptions>> Schemas::find(const QString &token) const
{
    if (options.single) // the database's name is the only token
        return token == options.databaseName ? std::optional(options) : std::nullopt;
    if (!isPlain(token))
        return std::optional<ConnectionOptions>();
    const auto row = SchemaRegistry(master()).find(token);
    if (!row.isOk())
        return Error{row.error().simplified()};
    if (!row.value())
        return std::optional<ConnectionOptions>();
    return std::optional(withRow(options, *row.value()));
}

Result<QVector<SchemaRow>> Schemas::rows(const QString &token) const
{
    QVector<SchemaRow> rows;
    const auto add = [&](const SchemaRow &row) {
        if (token.isEmpty() || row.token == token)
            rows.append(row);
    };
    if (options.single) {
        add({options.databaseName, 1, options, std::numeric_limits<qint64>::max()});
        return rows;
    }
    const auto found = SchemaRegistry(master()).all();
    if (!found.isOk())
        return Error{found.error().simplified()};
    const qint64 age = secondsSinceWritten(master(), "schemas");
    for (const SchemaRegistry::Listed &one : found.value())
        add({one.record.token, one.status, withRow(options, one.record), age});
    return rows;
}

SchemaConnection::SchemaConnection(const Schemas &schemas, const QString &token, Access access,
                                   Statements statements)
    : name(newName())
{
    const auto found = schemas.find(token);
    if (!found.isOk()) {
        error = found.error();
        return;
    }
    if (!found.value()) {
        error = QStringLiteral("there is no active schema '%1': see autoreport status").arg(token);
        return;
    }
    SchemaRow row;
    row.token = token;
    row.options = *found.value();
    row.options.waitsForAnswers = statements == Statements::Long;
    databaseName = row.options.databaseName;
    error = row.error();
    if (error.isEmpty())
        open(row.options, access);
}

SchemaConnection::SchemaConnection(const SchemaRow &row, Access access)
    : databaseName(row.options.databaseName)
    , error(row.error())
    , name(newName())
{
    if (error.isEmpty())
        open(row.options, access);
}

/// Does not use DBManager, which reconnects and keeps its connections.
void SchemaConnection::open(const ConnectionOptions &options, Access access)
{
    QSqlDatabase db = options.addDatabase(name, ConnectionOptions::OnLoss::Fail);
    const bool isOpen =
        options.waitsForAnswers ? openWithin(db, options.timeoutSeconds) : openOnAny(db);
    if (!isOpen) {
        error = ConnectionOptions::openError(db);
        return;
    }
    if (options.waitsForAnswers)
        watch = std::make_unique<SilenceWatch>(db, options);
    // A safeguard against mistakes in commands that must not write. The setting cannot get lost,
    // because the connection never reconnects.
    if (access == Access::ReadOnly &&
        !freshQuery(db).exec(QStringLiteral("SET SESSION TRANSACTION READ ONLY")))
        error = QStringLiteral("the server cannot make the connection read-only");
}

SchemaConnection::~SchemaConnection()
{
    watch.reset();
    QSqlDatabase::removeDatabase(name);
}

QSqlDatabase SchemaConnection::database() const
{
    return QSqlDatabase::database(name, false);
}
