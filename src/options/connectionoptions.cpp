#include "options/connectionoptions.h"

QSqlDatabase ConnectionOptions::addDatabase(const QString &connectionName, OnLoss onLoss) const
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), connectionName);
    db.setHostName(host);
    db.setPort(port);
    db.setUserName(user);
    db.setPassword(password);
    db.setDatabaseName(databaseName);
    // The same options as the manager's for schemas: a host survives a restart of the server. The
    // driver reconnects silently, though, and session settings such as read-only are lost.
    db.setConnectOptions(onLoss == OnLoss::Reconnect
                             ? QStringLiteral("MYSQL_OPT_RECONNECT=1;CLIENT_IGNORE_SPACE=1")
                             : QStringLiteral("CLIENT_IGNORE_SPACE=1"));
    return db;
}
