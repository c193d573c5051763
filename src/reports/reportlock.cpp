#include "reports/reportlock.h"

#include "common/freshquery.h"
#include "db/serverconnection.h"

#include <QCryptographicHash>
#include <QVariant>

namespace
{

/// Returns the class name and a hash of the database's name. Lock names are global to the server
/// and limited to 64 characters; a database's name alone may have 64.
QString lockName(const QSqlDatabase &database, const char *className)
{
    const QByteArray schema =
        QCryptographicHash::hash(database.databaseName().toUtf8(), QCryptographicHash::Md5);
    return QLatin1String(className) + QLatin1Char('.') + QLatin1String(schema.toHex());
}

} // namespace

ReportLock::ReportLock(const QSqlDatabase &db, const char *className)
    : database(db)
    , name(lockName(db, className))
{
}

bool ReportLock::acquire()
{
    QSqlQuery query = freshQuery(database);
    if (!query.exec(QStringLiteral("SELECT GET_LOCK('%1', 0), CONNECTION_ID()").arg(name)) ||
        !query.next()) {
        connection = serverConnectionId(database); // known even if the server has no locks
        return true;
    }
    connection = query.value(1).toULongLong();
    held = query.value(0).toInt() == 1;
    return held || query.value(0).isNull(); // NULL: an error of the server
}

void ReportLock::release()
{
    if (held)
        freshQuery(database).exec(QStringLiteral("SELECT RELEASE_LOCK('%1')").arg(name));
    held = false;
}
