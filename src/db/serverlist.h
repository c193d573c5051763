#pragma once

#include "db/servercertificate.h"

#include <QSqlDatabase>
#include <QString>
#include <QVector>

#include <functional>

struct ServerAddress {
    QString host;
    int port = 0;
};

/// Returns the servers that a connection's host name lists, such as "node1:3306,node2". Those
/// without a port have `port`; a port that is not a number is 0. An address of IPv6 that has a port
/// is in brackets.
QVector<ServerAddress> serversOf(const QString &hostName, int port);

/// Returns them as one text, each with its port: "node1:3306,node2:3306".
QString serverText(const QString &hostName, int port);

/// Opens `database` on one of the servers that its host name lists: on the one that this process
/// last found at work, else on the next that is. Host name and port are unchanged. A node of a
/// cluster that has lost the others is not at work. `open` opens it on a single server.
///
/// With one server, the same as `open`. With several, gives up after the current one if the thread
/// is asked to stop; on a failure, lastError() names each server and its error. Thread-safe.
bool openOnAny(QSqlDatabase &database,
               const std::function<bool(QSqlDatabase &)> &open = openTrusted);

/// Returns whether the server of an open connection is still at work, so that no other one is
/// needed. True if it lists one server: to ask costs statements only with several.
bool isAtWork(const QSqlDatabase &database);
