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

/// Returns the servers of serversOf() as one text, each with its port: "node1:3306,node2:3306".
QString serverText(const QString &hostName, int port);

/// Opens `database` on one of the servers that its host name lists. Tries the servers in order,
/// beginning with the one that this process last found working. Skips servers that do not work,
/// such as a cluster node that has lost the other nodes. Before each call of `open`, sets the host
/// name and port of `database` to those of the server; restores them at the end.
///
/// If the host name lists only one server, does not query whether that server works. If it lists
/// several, tries no further server once the thread's interruption is requested; if none works,
/// lastError() names each server that was tried and its error. Thread-safe.
bool openOnAny(QSqlDatabase &database,
               const std::function<bool(QSqlDatabase &)> &open = openTrusted);

/// Returns whether the server of an open connection still works. If the host name lists only one
/// server, returns true without querying it.
bool isAtWork(const QSqlDatabase &database);
