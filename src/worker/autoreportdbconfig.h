#pragma once

#include <QString>

class QSqlDatabase;

/// Everything a worker needs to open its own connection to one schema. Holds no connection itself.
struct AutoReportDbConfig {
    QString driverName;
    QString connectionName; ///< the name under which the worker registers its connection
    QString hostName;
    int port = -1; ///< 0 or less: the driver's default
    QString databaseName;
    QString userName;
    QString password;
    QString connectOptions; ///< empty when none
};

/// Sets the parameters of `config` on `database`, except for the driver and the connection name.
/// `database` must be registered and closed.
void applyConfig(const AutoReportDbConfig &config, QSqlDatabase &database);
