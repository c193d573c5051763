#include "db/autocommit.h"

#include "common/freshquery.h"
#include "db/clientlibrary.h"
#include "db/serverconnection.h"

#include <QSqlError>

namespace
{

constexpr char statement[] = "SET autocommit=1";

/// Returns whether autocommit is known to be on. The server sends this status at login.
bool isEnabled(const QSqlDatabase &database, const MYSQL &connection)
{
    return isMariaDb(database) && (connection.server_status & SERVER_STATUS_AUTOCOMMIT) != 0;
}

} // namespace

bool enableAutocommit(QSqlDatabase &database)
{
    using SetOption = int (*)(MYSQL *, mysql_option, const void *);
    MYSQL *connection = clientHandle(database);
    if (!connection)
        return true;
    if (const auto set = reinterpret_cast<SetOption>(clientFunction(database, "mysql_options")))
        set(connection, MYSQL_INIT_COMMAND, statement); // runs after every reconnect
    if (isEnabled(database, *connection))
        return true;
    QSqlQuery query = freshQuery(database);
    if (query.exec(QLatin1String(statement)))
        return true;
    const QSqlError error = query.lastError();
    query.clear();
    database.close();
    setOpenError(database, error.databaseText(), error.nativeErrorCode());
    return false;
}
