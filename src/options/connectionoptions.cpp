#include "options/connectionoptions.h"

QSqlDatabase ConnectionOptions::addDatabase(const QString &connectionName, OnLoss onLoss) const
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), connectionName);
    db.setHostName(host);
    db.setPort(port);
    db.setUserName(user);
    db.setPassword(password);
    db.setDatabaseName(databaseName);
    // As the manager opens schemas: a restart of the server does not end a host. But the driver
    // reconnects in silence, and what held for the session, read-only for example, is gone.
    db.setConnectOptions(onLoss == OnLoss::Reconnect
                             ? QStringLiteral("MYSQL_OPT_RECONNECT=1;CLIENT_IGNORE_SPACE=1")
                             : QStringLiteral("CLIENT_IGNORE_SPACE=1"));
    return db;
}
