#pragma once

#include <QSqlDatabase>
#include <QString>

/// How to reach the database; the same for every command.
struct ConnectionOptions {
    bool single = false; ///< `databaseName` is one schema, not an information database
    QString host;        ///< one host, or several: "node1:3306,node2"
    int port = 0;        ///< for hosts that name none; may be 0 if every host names one
    QString user;
    QString password;
    QString databaseName;
    /// Files for encryption, empty if not set: the authority that must have signed the server's
    /// certificate, and this client's own certificate with its key.
    QString authorityFile;
    QString certificateFile;
    QString keyFile;
    int timeoutSeconds = 0;       ///< to connect, to send and to wait for an answer; 0: no limit
    bool waitsForAnswers = false; ///< answers have no limit, because statements may run long

    /// After a lost connection a host reconnects; an operator's command fails.
    enum class OnLoss { Reconnect, Fail };

    /// Registers a connection as `connectionName` without opening it. The caller removes it.
    QSqlDatabase addDatabase(const QString &connectionName, OnLoss onLoss) const;

    /// Returns why `db` could not be opened, as one sentence without the password.
    static QString openError(const QSqlDatabase &db);

private:
    QString encryption() const;
    QString limits() const;
};
