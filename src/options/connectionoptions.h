#pragma once

#include <QSqlDatabase>
#include <QString>

/// How to reach the database; the same for every command.
struct ConnectionOptions {
    bool single = false; ///< `databaseName` is one schema, not an information database
    QString host;
    int port = 0;
    QString user;
    QString password;
    QString databaseName;

    /// After a lost connection a host reconnects; an operator's command fails.
    enum class OnLoss { Reconnect, Fail };

    /// Registers a connection under that name and does not open it. The caller removes it.
    QSqlDatabase addDatabase(const QString &connectionName, OnLoss onLoss) const;
};
