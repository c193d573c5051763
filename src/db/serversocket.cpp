#include "db/serversocket.h"

#include "db/clientlibrary.h"
#include "db/servercertificate.h"

#include <QStringList>

#include <utility>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{

using GetSocket = decltype(&mysql_get_socket);
using SetOption = int (*)(MYSQL *connection, mysql_option option, const void *value);

// The system notices a dead peer by probes if the connection is idle, otherwise by data that stays
// unacknowledged.
constexpr int keepIdleSeconds = 15;
constexpr int keepIntervalSeconds = 5;
constexpr int userTimeoutMs = 25000;

void setOption(const QSqlDatabase &database, mysql_option option, const void *value)
{
    MYSQL *connection = clientHandle(database);
    if (!connection || !isMariaDb(database))
        return;
    if (const auto set = reinterpret_cast<SetOption>(clientFunction(database, "mysql_options")))
        set(connection, option, value);
}

/// Removes the limits on reads and writes of an open connection, now and for later reconnects.
void liftQueryLimits(const QSqlDatabase &database)
{
    const unsigned none = 0;
    setOption(database, MYSQL_OPT_READ_TIMEOUT, &none);
    setOption(database, MYSQL_OPT_WRITE_TIMEOUT, &none);
    MYSQL *connection = clientHandle(database);
    if (!connection || !isMariaDb(database) || !connection->net.pvio)
        return;
    // The options set above take effect only at the next connect. The calls below change the open
    // connection.
    MARIADB_PVIO *io = connection->net.pvio;
    io->methods->set_timeout(io, PVIO_READ_TIMEOUT, 0);
    io->methods->set_timeout(io, PVIO_WRITE_TIMEOUT, 0);
}

int clientSocket(const QSqlDatabase &database)
{
    MYSQL *connection = clientHandle(database);
    const auto get = reinterpret_cast<GetSocket>(
        connection ? clientFunction(database, "mysql_get_socket") : nullptr);
    return get ? get(connection) : -1;
}

void noticeDeadPeer(int descriptor)
{
    const auto set = [descriptor](int level, int name, int value) {
        // The options for TCP fail on a Unix socket, which does not need them.
        setsockopt(descriptor, level, name, &value, sizeof value);
    };
    set(SOL_SOCKET, SO_KEEPALIVE, 1);
    set(IPPROTO_TCP, TCP_KEEPIDLE, keepIdleSeconds);
    set(IPPROTO_TCP, TCP_KEEPINTVL, keepIntervalSeconds);
    set(IPPROTO_TCP, TCP_USER_TIMEOUT, userTimeoutMs);
}

QString withLimits(const QStringList &names, int seconds)
{
    QStringList options;
    for (const QString &name : names)
        options.append(QStringLiteral("%1=%2").arg(name).arg(seconds));
    return options.join(QLatin1Char(';'));
}

} // namespace

ServerSocket::ServerSocket(const QSqlDatabase &database)
{
    const int socket = clientSocket(database);
    if (socket == -1)
        return;
    noticeDeadPeer(socket);
    descriptor = fcntl(socket, F_DUPFD_CLOEXEC, 0);
}

ServerSocket &ServerSocket::operator=(ServerSocket &&other) noexcept
{
    std::swap(descriptor, other.descriptor);
    other.close();
    return *this;
}

void ServerSocket::close()
{
    if (isValid())
        ::close(descriptor);
    descriptor = -1;
}

ServerAddress ServerSocket::peerAddress() const
{
    sockaddr_storage peer = {};
    socklen_t size = sizeof peer;
    if (!isValid() || getpeername(descriptor, reinterpret_cast<sockaddr *>(&peer), &size) != 0)
        return {};
    char text[INET6_ADDRSTRLEN] = "";
    int port = 0;
    if (peer.ss_family == AF_INET) {
        const auto *address = reinterpret_cast<sockaddr_in *>(&peer);
        inet_ntop(AF_INET, &address->sin_addr, text, sizeof text);
        port = ntohs(address->sin_port);
    } else if (peer.ss_family == AF_INET6) {
        const auto *address = reinterpret_cast<sockaddr_in6 *>(&peer);
        inet_ntop(AF_INET6, &address->sin6_addr, text, sizeof text);
        port = ntohs(address->sin6_port);
    }
    return {QString::fromLatin1(text), port};
}

void ServerSocket::shutDown() const
{
    if (isValid())
        shutdown(descriptor, SHUT_RDWR);
}

namespace
{

bool hasLiftableLimits(const QSqlDatabase &database)
{
    return database.driverName() == QLatin1String("QMYSQL") && isMariaDb(database) &&
           !database.connectOptions().contains(QLatin1String("MYSQL_OPT_READ_TIMEOUT"));
}

/// Opens `database` with a limit on connecting; with a driver other than QMYSQL, without one. Also
/// limits queries, including those of the login, unless `limited` is Connecting and openWithin()
/// could not lift that limit afterwards.
bool openOneWithin(QSqlDatabase &database, int seconds, Limited limited)
{
    if (database.driverName() != QLatin1String("QMYSQL"))
        return openTrusted(database);
    const QString options = database.connectOptions();
    const QStringList queries{QStringLiteral("MYSQL_OPT_READ_TIMEOUT"),
                              QStringLiteral("MYSQL_OPT_WRITE_TIMEOUT")};
    QStringList limits{QStringLiteral("MYSQL_OPT_CONNECT_TIMEOUT")};
    // The limit on connecting does not cover the login or the statements that the driver runs when
    // it opens a connection.
    if (limited == Limited::Queries || hasLiftableLimits(database))
        limits += queries;

    database.setConnectOptions(withLimits(limits, seconds) + QLatin1Char(';') + options);
    const bool open = openTrusted(database);
    database.setConnectOptions(options);
    return open;
}

} // namespace

bool openWithin(QSqlDatabase &database, int seconds, Limited limited)
{
    const bool open = openOnAny(
        database, [=](QSqlDatabase &one) { return openOneWithin(one, seconds, limited); });
    // Lift the limits only now, because openOnAny() runs queries that must be limited.
    if (open && limited == Limited::Connecting && hasLiftableLimits(database))
        liftQueryLimits(database);
    return open;
}

void limitReconnect(const QSqlDatabase &database, int seconds)
{
    const auto limit = static_cast<unsigned>(seconds);
    setOption(database, MYSQL_OPT_CONNECT_TIMEOUT, &limit);
}

void forbidReconnect(const QSqlDatabase &database)
{
    const my_bool off = 0;
    setOption(database, MYSQL_OPT_RECONNECT, &off);
}
