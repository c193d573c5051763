#pragma once

#include <QSqlDatabase>
#include <QString>

/// How to reach the database; the same for every command.
struct ConnectionOptions {
    bool single = false; ///< `databaseName` names one schema, not an information database
    QString host;        ///< one host, or several: "node1:3306,node2"
    int port = 0;        ///< for each host without a port in `host`; may be 0 if all have one
    QString user;
    QString password;
    QString databaseName;
    /// Files for encryption, empty if not set: the authority that must have signed the server's
    /// certificate, and this client's own certificate with its key.
    QString authorityFile;
    QString certificateFile;
    QString keyFile;
    int timeoutSeconds = 0;       ///< limit for connecting, sending and receiving; 0: no limit
    bool waitsForAnswers = false; ///< if true, receiving has no limit: statements may run long

    /// What to do if the connection is lost: a host reconnects, an operator's command fails.
    enum class OnLoss { Reconnect, Fail };

    /// Registers a connection as `connectionName` without opening it. The caller removes it.
    QSqlDatabase addDatabase(const QString &connectionName, OnLoss onLoss) const;

    /// Returns why `db` could not be opened, as one sentence without the password.
    static QString openError(const QSqlDatabase &db);

private:
    QString encryption() const;
    QString limits() const;
};
