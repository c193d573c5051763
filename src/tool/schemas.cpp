#include "tool/schemas.h"

#include "common/freshquery.h"
#include "tool/messages.h"

#include <QSqlError>

namespace
{

constexpr uint tokensPerPage = 1000;

// The names of the connections; the manager takes the first for a master's.
QString masterName()
{
    return QStringLiteral("KVH.InfoDB");
}

QString schemaName()
{
    return QStringLiteral("AutoReport.tool");
}

/// The manager pastes tokens into its statements; one with a quotation mark would be another
/// statement.
bool isPlain(const QString &token)
{
    return !token.contains(QLatin1Char('\'')) && !token.contains(QLatin1Char('\\'));
}

} // namespace

Schemas::Schemas(const ConnectionOptions &connectionOptions)
    : options(connectionOptions)
{
    options.addDatabase(masterName(), ConnectionOptions::OnLoss::Fail);
}

Schemas::~Schemas()
{
    manager.reset();
    QSqlDatabase::removeDatabase(masterName());
}

QString Schemas::open()
{
    QSqlDatabase db = master();
    if (!db.open())
        return ConnectionOptions::openError(db);
    if (options.single)
        return {};
    // Asked here, so that a wrong database is one sentence and not a failure per schema.
    QSqlQuery query = freshQuery(db);
    if (!query.exec(
            QStringLiteral("SELECT token, name, user, pass, status FROM `schemas` LIMIT 0")))
        return QStringLiteral("the database '%1' is no information database: %2; with --single "
                              "it is taken as the one schema")
            .arg(db.databaseName(), query.lastError().text().simplified());
    manager = std::make_unique<DBManager>();
    manager->setInfoDB(db);
    return {};
}

QSqlDatabase Schemas::master() const
{
    return QSqlDatabase::database(masterName(), false);
}

QStringList Schemas::tokens()
{
    if (!manager)
        return {options.databaseName};
    QStringList all;
    QStringList page;
    do {
        page = manager->loadTokens(tokensPerPage, static_cast<uint>(all.size()));
        all += page;
    } while (!page.isEmpty());
    return all;
}

ConnectionOptions Schemas::find(const QString &token)
{
    ConnectionOptions found = options;
    // Any other token would be answered for by the wrong database.
    if (!manager) {
        if (token != options.databaseName)
            found.databaseName.clear();
        return found;
    }
    const DBSchemeRecord record = isPlain(token) ? manager->loadScheme(token) : DBSchemeRecord();
    found.databaseName = record.name;
    found.user = record.user;
    found.password = record.pass;
    return found;
}

SchemaConnection::SchemaConnection(Schemas &schemas, const QString &token, Access access)
{
    const ConnectionOptions way = schemas.find(token);
    databaseName = way.databaseName;
    if (databaseName.isEmpty()) {
        const QStringList failures = Messages::take();
        error =
            failures.isEmpty()
                ? QStringLiteral("there is no active schema '%1': see autoreport status").arg(token)
                : failures.join(QStringLiteral("; "));
        return;
    }
    // Not through the manager, which reconnects and keeps the connections that it made.
    QSqlDatabase db = way.addDatabase(schemaName(), ConnectionOptions::OnLoss::Fail);
    if (!db.open()) {
        error = ConnectionOptions::openError(db);
        return;
    }
    // Of use against our own mistakes: these commands have no business writing. It holds as long
    // as the connection, which is never replaced by another.
    if (access == Access::ReadOnly &&
        !freshQuery(db).exec(QStringLiteral("SET SESSION TRANSACTION READ ONLY")))
        error = QStringLiteral("the server cannot hold the connection read-only");
}

SchemaConnection::~SchemaConnection()
{
    QSqlDatabase::removeDatabase(schemaName());
}

QSqlDatabase SchemaConnection::database() const
{
    return QSqlDatabase::database(schemaName(), false);
}
