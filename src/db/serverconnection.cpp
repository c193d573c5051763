#include "db/serverconnection.h"

#include "common/freshquery.h"

#include <QVariant>

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
