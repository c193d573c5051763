#include "inquiry/hostconnection.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{

// An answer with 10,000 schemas takes 5 MiB, or 20 MiB if each schema has 300 letters of errors.
constexpr int maxAnswerMiB = 64;
constexpr int bytesPerMiB = 1048576;

} // namespace

HostConnection::HostConnection(const QString &socketPath)
    : path(socketPath)
    , socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))
{
    if (socket == -1)
        error = qt_error_string(errno);
    else
        connect();
}

HostConnection::~HostConnection()
{
    end(error);
}

void HostConnection::connect()
{
    sockaddr_un address = {};
    const QByteArray name = QFile::encodeName(path);
    if (size_t(name.size()) >= sizeof(address.sun_path))
        return end(qt_error_string(ENAMETOOLONG));
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, name.constData(), size_t(name.size()));
    isConnected =
        ::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) == 0;
    if (isConnected || errno == EAGAIN || errno == EINTR)
        return;
    isHost = errno != ECONNREFUSED && errno != ENOENT;
    end(qt_error_string(errno));
}

void HostConnection::take()
{
    if (isOpen() && !isConnected)
        connect();
    if (!isConnected)
        return;
    std::array<char, 65536> part; // NOLINT(*-member-init): recv() fills it
    const ssize_t size = ::recv(socket, part.data(), part.size(), 0);
    if (size > 0)
        bytes.append(part.data(), int(size));
    else if (size == 0)
        end({}); // the host closes the connection after its answer
    else if (errno != EAGAIN && errno != EINTR)
        end(qt_error_string(errno));
    if (bytes.size() > maxAnswerMiB * bytesPerMiB) {
        bytes.clear();
        end(QStringLiteral("its answer is longer than %1 MiB").arg(maxAnswerMiB));
    }
}

void HostConnection::end(const QString &why)
{
    error = why;
    isConnected = false;
    if (socket != -1)
        ::close(socket);
    socket = -1;
}
