#include "reports/reportlock.h"

#include "common/freshquery.h"
#include "db/serverconnection.h"

#include <QCryptographicHash>
#include <QVariant>

namespace
{

/// Names of locks belong to the whole server and hold 64 characters, as many as a database's name.
QString lockName(const QSqlDatabase &database, const char *report)
{
    const QByteArray schema =
        QCryptographicHash::hash(database.databaseName().toUtf8(), QCryptographicHash::Md5);
    return QLatin1String(report) + QLatin1Char('.') + QLatin1String(schema.toHex());
}

} // namespace

ReportLock::ReportLock(const QSqlDatabase &db, const char *report)
    : database(db)
    , name(lockName(db, report))
{
    QSqlQuery query = freshQuery(database);
    if (!query.exec(QStringLiteral("SELECT GET_LOCK('%1', 0), CONNECTION_ID()").arg(name)) ||
        !query.next()) {
        connection = serverConnectionId(database); // a server without locks still has connections
        return;
    }
    connection = query.value(1).toULongLong();
    const QVariant answer = query.value(0); // NULL: the server could not tell
    held = answer.toInt() == 1;
    takenByAnother = !answer.isNull() && !held;
}

ReportLock::~ReportLock()
{
    if (held)
        freshQuery(database).exec(QStringLiteral("SELECT RELEASE_LOCK('%1')").arg(name));
}
