#include "db/serversocket.h"

#include <QSqlDriver>
#include <QVariant>

#include <utility>

#include <arpa/inet.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{

// The client library's interface, as far as it is used here. It is the driver that links the
// library; linking it a second time could end with two different ones in the process.
using GetSocket = int (*)(void *connection);
using SetOption = int (*)(void *connection, int option, const void *value);
constexpr int connectTimeoutOption = 0; // MYSQL_OPT_CONNECT_TIMEOUT, an unsigned int
constexpr int reconnectOption = 20;     // MYSQL_OPT_RECONNECT, a char

// How long a dead peer goes unnoticed: on an idle connection the sum, with data on its way the
// last.
constexpr int keepIdleSeconds = 15;
constexpr int keepIntervalSeconds = 5;
constexpr int userTimeoutMs = 25000;

/// The library's handle of an open connection; null for other drivers.
void *clientHandle(const QSqlDatabase &database)
{
    const QVariant handle = database.driver()->handle();
    if (!database.isOpen() || qstrcmp(handle.typeName(), "MYSQL*") != 0)
        return nullptr;
    return *static_cast<void *const *>(handle.constData());
}

/// A function of the library that the database's driver is linked to, null if it lacks `name`.
void *clientFunction(const QSqlDatabase &database, const char *name)
{
    Dl_info driver = {};
    if (dladdr(database.driver()->metaObject(), &driver) == 0)
        return nullptr;
    void *library = dlopen(driver.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
    if (!library)
        return nullptr;
    void *function = dlsym(library, name); // looks through what the driver is linked to as well
    dlclose(library);
    return function;
}

void setOption(const QSqlDatabase &database, int option, const void *value)
{
    void *connection = clientHandle(database);
    // The options' numbers are those of MariaDB's library; MySQL's of today has others.
    if (!connection || !clientFunction(database, "mariadb_get_infov"))
        return;
    if (const auto set = reinterpret_cast<SetOption>(clientFunction(database, "mysql_options")))
        set(connection, option, value);
}

int clientSocket(const QSqlDatabase &database)
{
    void *connection = clientHandle(database);
    const auto get = reinterpret_cast<GetSocket>(
        connection ? clientFunction(database, "mysql_get_socket") : nullptr);
    return get ? get(connection) : -1;
}

void noticeDeadPeer(int descriptor)
{
    const auto set = [descriptor](int level, int name, int value) {
        setsockopt(descriptor, level, name, &value, sizeof value); // a Unix socket needs none
    };
    set(SOL_SOCKET, SO_KEEPALIVE, 1);
    set(IPPROTO_TCP, TCP_KEEPIDLE, keepIdleSeconds);
    set(IPPROTO_TCP, TCP_KEEPINTVL, keepIntervalSeconds);
    set(IPPROTO_TCP, TCP_USER_TIMEOUT, userTimeoutMs);
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

QString ServerSocket::peerAddress() const
{
    sockaddr_storage peer = {};
    socklen_t size = sizeof peer;
    if (!isValid() || getpeername(descriptor, reinterpret_cast<sockaddr *>(&peer), &size) != 0)
        return QString();
    char text[INET6_ADDRSTRLEN] = "";
    if (peer.ss_family == AF_INET)
        inet_ntop(AF_INET, &reinterpret_cast<sockaddr_in *>(&peer)->sin_addr, text, sizeof text);
    else if (peer.ss_family == AF_INET6)
        inet_ntop(AF_INET6, &reinterpret_cast<sockaddr_in6 *>(&peer)->sin6_addr, text, sizeof text);
    return QString::fromLatin1(text);
}

void ServerSocket::shutDown() const
{
    if (isValid())
        shutdown(descriptor, SHUT_RDWR);
}

bool openWithin(QSqlDatabase &database, int seconds)
{
    const QString limit = QStringLiteral("MYSQL_OPT_CONNECT_TIMEOUT");
    const QString options = database.connectOptions();
    if (database.driverName() != QLatin1String("QMYSQL") || options.contains(limit))
        return database.open();
    const QString own = QStringLiteral("%1=%2").arg(limit).arg(seconds);
    database.setConnectOptions(options.isEmpty() ? own : options + QLatin1Char(';') + own);
    const bool open = database.open();
    database.setConnectOptions(options);
    return open;
}

void forbidReconnect(const QSqlDatabase &database)
{
    const char off = 0;
    setOption(database, reconnectOption, &off);
}
