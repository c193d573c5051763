#include "inquiry/hostinquiry.h"

#include "inquiry/socketfolder.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QJsonDocument>
#include <QLocalSocket>

#include <cerrno>

namespace
{

struct Received {
    QByteArray bytes;
    QString error;
    bool isHost = true; ///< otherwise a host that was killed left the socket behind
};

Received receive(const QString &path, const QDeadlineTimer &deadline)
{
    const auto left = [&deadline] {
        return int(deadline.remainingTime());
    };
    Received received;
    QLocalSocket socket;
    socket.connectToServer(path, QIODevice::ReadOnly);
    if (!socket.waitForConnected(left())) {
        received.error = socket.errorString();
        received.isHost = socket.error() != QLocalSocket::ConnectionRefusedError &&
                          socket.error() != QLocalSocket::ServerNotFoundError;
        return received;
    }
    // The host closes the connection after its answer.
    while (socket.state() == QLocalSocket::ConnectedState && socket.waitForReadyRead(left()))
        received.bytes += socket.readAll();
    received.bytes += socket.readAll();
    if (deadline.hasExpired())
        received.error = QStringLiteral("it did not answer in time");
    return received;
}

void ask(const QString &path, const QDeadlineTimer &deadline, HostsFound &found)
{
    const Received received = receive(path, deadline);
    const auto answer = HostAnswer::fromJson(QJsonDocument::fromJson(received.bytes).object());
    if (answer)
        found.hosts.append(*answer);
    else if (received.isHost)
        found.errors.append(QStringLiteral("'%1': %2")
                                .arg(path, received.error.isEmpty()
                                               ? QStringLiteral("its answer is incomplete")
                                               : received.error));
}

} // namespace

HostsFound askHosts(int timeoutMs)
{
    HostsFound found;
    const QDeadlineTimer deadline(timeoutMs);
    const QStringList pattern{QLatin1Char('*') + QLatin1String(socketSuffix)};
    for (const QString &folder : socketFolders()) {
        const QFileInfo info(folder);
        if (info.exists() && !info.isReadable())
            found.errors.append(QStringLiteral("'%1': %2").arg(folder, qt_error_string(EACCES)));
        const QStringList sockets = QDir(folder).entryList(pattern, QDir::System, QDir::Name);
        for (const QString &socket : sockets)
            ask(folder + QLatin1Char('/') + socket, deadline, found);
    }
    return found;
}
