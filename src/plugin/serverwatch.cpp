#include "plugin/serverwatch.h"

#include "common/freshquery.h"
#include "db/serverlist.h"
#include "db/serversocket.h"
#include "worker/connectionguard.h"

#include <QSet>

#include <algorithm>
#include <system_error>

namespace
{

constexpr std::chrono::seconds lookInterval(2);
constexpr std::chrono::seconds probeAgain(8); // from a successful probe to the next probe

QString serverName(const AutoReportDbConfig &config)
{
    return serverText(config.hostName, config.port);
}

/// Opens a connection and runs a statement, each with a time limit. Returns false only on a
/// timeout: a server that refuses the connection has answered.
bool isAnswering(const AutoReportDbConfig &config, const QString &connectionName)
{
    const auto begin = std::chrono::steady_clock::now();
    bool succeeded = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(config.driverName, connectionName);
        applyConfig(config, db);
        succeeded = openWithin(db, connectSeconds, Limited::Queries) &&
                    freshQuery(db).exec(QStringLiteral("SELECT 1"));
    }
    QSqlDatabase::removeDatabase(connectionName);
    return succeeded || std::chrono::steady_clock::now() - begin < limitReached(connectSeconds);
}

} // namespace

ServerWatch::ServerWatch()
{
    try {
        thread = std::thread([this] { run(); });
    } catch (const std::system_error &error) {
        qWarning("AutoReport - cannot start the thread that watches for silent servers: %s",
                 error.what());
    }
}

ServerWatch::~ServerWatch()
{
    requestEnd();
    if (thread.joinable())
        thread.join();
}

void ServerWatch::requestEnd()
{
    const std::lock_guard lock(mutex);
    ended = true;
    wake.notify_all();
}

bool ServerWatch::isEnded()
{
    const std::lock_guard lock(mutex);
    return ended;
}

void ServerWatch::add(const AutoReportDbConfig &config,
                      const std::shared_ptr<ConnectionGuard> &guard, Limits limits)
{
    const std::lock_guard lock(mutex);
    watched.push_back({config, guard, limits});
}

void ServerWatch::run()
{
    while (pauseUntilNextLook())
        look();
}

bool ServerWatch::pauseUntilNextLook()
{
    std::unique_lock lock(mutex);
    return !wake.wait_for(lock, lookInterval, [this] { return ended; });
}

std::vector<ServerWatch::Waiting> ServerWatch::waitingConnections()
{
    std::vector<Waiting> waiting;
    const std::lock_guard lock(mutex);
    const auto gone = [](const Watched &each) {
        return each.guard.expired();
    };
    watched.erase(std::remove_if(watched.begin(), watched.end(), gone), watched.end());
    for (const Watched &each : watched) {
        const auto guard = each.guard.lock();
        if (!guard || guard->isBroken() || guard->busyTime() < each.limits.patience)
            continue;
        // Probe the numeric address: a host name takes time to resolve and may refer to several
        // servers.
        const ServerAddress address = guard->serverAddress();
        if (address.host.isEmpty() && serversOf(each.config.hostName, 0).size() > 1)
            continue; // on a Unix socket, or still connecting, which has time limits of its own
        waiting.push_back({each.config, guard, each.limits});
        if (!address.host.isEmpty()) {
            waiting.back().config.hostName = address.host;
            waiting.back().config.port = address.port;
        }
    }
    return waiting;
}

/// Probes the servers that connections are waiting for, each at most once, and none that answered
/// recently. Then breaks off the connections to silent servers.
void ServerWatch::look()
{
    const std::vector<Waiting> waiting = waitingConnections();
    QSet<QString> probed;
    QHash<QString, Clock::time_point> silent;
    for (const Waiting &each : waiting) {
        const QString server = serverName(each.config);
        if (probed.contains(server))
            continue;
        probed.insert(server);
        if (isEnded())
            return;
        const Clock::time_point begin = Clock::now();
        const QString name =
            QStringLiteral("AutoReport.watch.%1").arg(reinterpret_cast<quintptr>(this), 0, 16);
        if (begin - answered.value(server, begin - probeAgain) < probeAgain)
            continue;
        if (isAnswering(each.config, name))
            answered.insert(server, begin);
        else
            silent.insert(server, silentSince.value(server, begin));
    }
    silentSince = silent;
    breakSilent(waiting);
}

void ServerWatch::breakSilent(const std::vector<Waiting> &waiting)
{
    QHash<QString, int> broken;
    for (const Waiting &each : waiting) {
        const auto since = silentSince.constFind(serverName(each.config));
        if (since == silentSince.constEnd() || Clock::now() - *since < each.limits.silence)
            continue;
        each.guard->breakOff();
        ++broken[since.key()];
    }
    for (auto server = broken.cbegin(); server != broken.cend(); ++server)
        qWarning("AutoReport - the server %s does not answer, connections broken off: %i",
                 qUtf8Printable(server.key()), server.value());
}
