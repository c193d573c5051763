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

/// Returns the servers that a connection's host name lists, such as "node1:3306,node2". A server
/// without a port gets `port`; a port that is not a number becomes 0. An IPv6 address with a port
/// must be in brackets.
QVector<ServerAddress> serversOf(const QString &hostName, int port);

/// Returns these servers as one text, each with its port: "node1:3306,node2:3306".
QString serverText(const QString &hostName, int port);

/// Opens `database` on one of the servers that its host name lists: on the one that this process
/// last found working, or else on the next one that works. A cluster node that has lost the others
/// does not work. Calls `open` for one server at a time, with that server's address in `database`;
/// afterwards `database` has its own host name and port again.
///
/// With one server, only calls `open`. With several, tries no further server if the thread is asked
/// to stop; on a failure, lastError() names each server and its error. Thread-safe.
bool openOnAny(QSqlDatabase &database,
               const std::function<bool(QSqlDatabase &)> &open = openTrusted);

/// Returns whether the server of an open connection still works. If the host name lists only one
/// server, returns true without asking it.
bool isAtWork(const QSqlDatabase &database);
