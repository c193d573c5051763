#include "inquiry/hostinquiry.h"

#include "inquiry/hostconnection.h"
#include "inquiry/socketfolder.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QJsonDocument>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <vector>

#include <poll.h>

namespace
{

using Connections = std::vector<std::unique_ptr<HostConnection>>;

constexpr int connectIntervalMs = 50;

/// Returns why the sockets in `folder` cannot be used, or an empty text. A folder that does not
/// exist is not an error.
QString folderError(const QString &folder)
{
    const QFileInfo info(folder);
    if (!info.exists())
        return QString();
    if (!info.isReadable())
        return qt_error_string(EACCES);
    return isTrustedFolder(folder) ? QString() : QStringLiteral("it belongs to another account");
}

Connections connectAll(HostsFound &found)
{
    Connections all;
    for (const QString &folder : socketFolders()) {
        const QString error = folderError(folder);
        if (!error.isEmpty()) {
            found.errors.append(QStringLiteral("'%1': %2").arg(folder, error));
            continue;
        }
        for (const QString &path : socketsIn(folder))
            all.push_back(std::make_unique<HostConnection>(path));
    }
    return all;
}

/// Receives all hosts' answers in parallel, so that a silent host does not delay the others.
void receive(const Connections &all, const QDeadlineTimer &deadline)
{
    const auto isOpen = [](const auto &connection) {
        return connection->isOpen();
    };
    std::vector<pollfd> waiting(all.size());
    while (std::any_of(all.begin(), all.end(), isOpen) && !deadline.hasExpired()) {
        std::transform(all.begin(), all.end(), waiting.begin(), [](const auto &connection) {
            return pollfd{connection->descriptor(), POLLIN, 0};
        });
        ::poll(waiting.data(), waiting.size(),
               int(std::min<qint64>(deadline.remainingTime(), connectIntervalMs)));
        for (const auto &connection : all)
            connection->take();
    }
    for (const auto &connection : all) {
        if (connection->isOpen())
            connection->end(QStringLiteral("it did not answer in time"));
    }
}

void addAnswer(const HostConnection &connection, HostsFound &found)
{
    const auto answer = HostAnswer::fromJson(QJsonDocument::fromJson(connection.bytes).object());
    if (answer)
        found.hosts.append(*answer);
    else if (connection.isHost)
        found.errors.append(
            QStringLiteral("'%1': %2")
                .arg(connection.path, connection.error.isEmpty()
                                          ? QStringLiteral("its answer is incomplete")
                                          : connection.error));
}

} // namespace

HostsFound askHosts(int timeoutMs)
{
    HostsFound found;
    const Connections all = connectAll(found);
    receive(all, QDeadlineTimer(timeoutMs));
    for (const auto &connection : all)
        addAnswer(*connection, found);
    return found;
}
