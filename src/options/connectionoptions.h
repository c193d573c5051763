#pragma once

#include <QSqlDatabase>
#include <QString>

/// The way to the database server, the same for every command.
struct ConnectionOptions {
    bool single = false; ///< one schema instead of all that an information database lists
    QString host;
    int port = 0;
    QString user;
    QString password;
    QString databaseName;

    /// What a lost connection means: a host goes on over a new one, an operator's command fails.
    enum class OnLoss { Reconnect, Fail };

    /// Registers a connection of that name, not opened. Who asked for it removes it.
    QSqlDatabase addDatabase(const QString &connectionName, OnLoss onLoss) const;
};
