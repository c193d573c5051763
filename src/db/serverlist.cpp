#include "db/serverlist.h"

#include "db/clusternode.h"
#include "db/serverconnection.h"

#include <QHash>
#include <QMutex>
#include <QSqlError>
#include <QStringList>
#include <QThread>

namespace
{

/// Remembers for each list of servers the position of the server that was last found working.
class LastServers
{
public:
    static LastServers &ofProcess()
    {
        static LastServers servers;
        return servers;
    }

    int of(const QString &list) const
    {
        const QMutexLocker locker(&mutex);
        return positions.value(list);
    }
    void set(const QString &list, int position)
    {
        const QMutexLocker locker(&mutex);
        positions.insert(list, position);
    }

private:
    mutable QMutex mutex;
    QHash<QString, int> positions;
};

ServerAddress addressOf(const QString &text, int defaultPort)
{
    const int colon = text.lastIndexOf(QLatin1Char(':'));
    const bool bracketed = text.startsWith(QLatin1Char('['));
    const int hostEnd = bracketed ? text.indexOf(QLatin1Char(']')) : text.indexOf(QLatin1Char(':'));
    if (bracketed && hostEnd != -1)
        return {text.mid(1, hostEnd - 1),
                colon > hostEnd ? text.mid(colon + 1).toInt() : defaultPort};
    // Without brackets, several colons mean an IPv6 address.
    if (colon == -1 || colon != hostEnd)
        return {text, defaultPort};
    return {text.left(colon), text.mid(colon + 1).toInt()};
}

/// Returns why the server does not work, or an empty text if it works. A cluster node that has lost
/// the other nodes accepts connections but refuses access to all tables.
QString serverFault(const QSqlDatabase &database)
{
    const std::optional<ClusterNode> node = clusterNodeOf(database);
    if (node && !node->isReady)
        return QStringLiteral("node %1 of the cluster is not ready: %2")
            .arg(node->name, node->state);
    return node || serverAnswers(database) ? QString()
                                           : QStringLiteral("the server does not answer");
}

using Open = std::function<bool(QSqlDatabase &)>;

bool openOn(const ServerAddress &server, QSqlDatabase &database, const Open &open)
{
    database.setHostName(server.host);
    database.setPort(server.port);
    return open(database);
}

/// Opens `database` on `server`, but leaves it closed if the server does not work. Returns the
/// error, or an empty text.
QString openWorking(const ServerAddress &server, QSqlDatabase &database, const Open &open)
{
    if (!openOn(server, database, open))
        return database.lastError().databaseText();
    const QString fault = serverFault(database);
    if (!fault.isEmpty()) {
        database.close();
        setOpenError(database, fault, QString());
    }
    return fault;
}

bool openOnOneOf(const QVector<ServerAddress> &servers, const QString &list, QSqlDatabase &database,
                 const Open &open)
{
    const int first = LastServers::ofProcess().of(list);
    QStringList errors;
    for (int i = 0; i < servers.size(); ++i) {
        // Each call of `open` may take as long as its time limit. A thread that was asked to stop
        // must not try all servers.
        if (i > 0 && QThread::currentThread()->isInterruptionRequested())
            break;
        const int position = (first + i) % servers.size();
        const ServerAddress &server = servers.at(position);
        const QString error = openWorking(server, database, open);
        if (database.isOpen()) {
            LastServers::ofProcess().set(list, position);
            return true;
        }
        errors.append(QStringLiteral("%1: %2").arg(serverText(server.host, server.port), error));
    }
    setOpenError(database, errors.join(QStringLiteral("; ")),
                 database.lastError().nativeErrorCode());
    return false;
}

} // namespace

QVector<ServerAddress> serversOf(const QString &hostName, int port)
{
    QVector<ServerAddress> servers;
    for (const QString &text : hostName.split(QLatin1Char(',')))
        servers.append(addressOf(text.trimmed(), port));
    return servers;
}

QString serverText(const QString &hostName, int port)
{
    QStringList servers;
    for (const ServerAddress &server : serversOf(hostName, port)) {
        const bool isIpV6 = server.host.contains(QLatin1Char(':'));
        servers.append((isIpV6 ? QStringLiteral("[%1]:%2") : QStringLiteral("%1:%2"))
                           .arg(server.host)
                           .arg(server.port));
    }
    return servers.join(QLatin1Char(','));
}

bool openOnAny(QSqlDatabase &database, const std::function<bool(QSqlDatabase &)> &open)
{
    const QString list = database.hostName();
    const int port = database.port();
    const QVector<ServerAddress> servers = serversOf(list, port);
    const bool isOpen = servers.size() == 1 ? openOn(servers.first(), database, open)
                                            : openOnOneOf(servers, list, database, open);
    database.setHostName(list);
    database.setPort(port);
    return isOpen;
}

bool isAtWork(const QSqlDatabase &database)
{
    return serversOf(database.hostName(), 0).size() == 1 || serverFault(database).isEmpty();
}
