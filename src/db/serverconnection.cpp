#include "db/serverconnection.h"

#include "common/freshquery.h"

#include <QSqlDriver>
#include <QSqlError>
#include <QVariant>

namespace
{

/// Makes setLastError() accessible.
struct Driver : QSqlDriver {
    using QSqlDriver::setLastError;
};

} // namespace

qulonglong serverConnectionId(const QSqlDatabase &database)
{
    QSqlQuery query = freshQuery(database);
    return query.exec(QStringLiteral("SELECT CONNECTION_ID()")) && query.next()
               ? query.value(0).toULongLong()
               : 0;
}

bool serverAnswers(const QSqlDatabase &database)
{
    return freshQuery(database).exec(QStringLiteral("SELECT 1"));
}

bool isClientError(const QString &code)
{
    const int number = code.toInt();
    return (number >= 2000 && number < 3000) || number >= 5000;
}

void setOpenError(const QSqlDatabase &database, const QString &text, const QString &code)
{
    (database.driver()->*(&Driver::setLastError))(QSqlError(
        QStringLiteral("QMYSQL: Unable to connect"), text, QSqlError::ConnectionError, code));
}
