#include "worker/autoreportdbconfig.h"

#include <QSqlDatabase>

void applyConfig(const AutoReportDbConfig &config, QSqlDatabase &database)
{
    database.setHostName(config.hostName);
    if (config.port > 0)
        database.setPort(config.port);
    database.setDatabaseName(config.databaseName);
    database.setUserName(config.userName);
    database.setPassword(config.password);
    if (!config.connectOptions.isEmpty())
        database.setConnectOptions(config.connectOptions);
}
