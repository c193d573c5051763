#pragma once

#include "worker/autoreportdbconfig.h"

#include <QHash>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class ConnectionGuard;

/**
 * Ends the waiting for servers that have fallen silent: that neither answer nor close.
 *
 * TCP notices a machine or a network that is gone, but not a server process that stands still: its
 * kernel goes on acknowledging. Nor may a query that takes long be broken off. So a thread of the
 * watch asks over a connection of its own whether the server answers at all, once a guarded
 * connection has been in use for longer than its patience; after the limit of silence it breaks the
 * guarded connection off.
 *
 * Owned and used by one thread. Without a thread for it, which is logged, nothing is watched.
 */
class ServerWatch
{
public:
    struct Limits {
        std::chrono::seconds patience; ///< of use without an end, before the server is asked
        std::chrono::seconds silence;  ///< from the first question without an answer
    };

    /// A worker's query may take minutes; a minute after its server has fallen silent it is over.
    static constexpr Limits limitsOfWorkers{std::chrono::seconds(10), std::chrono::seconds(20)};

    ServerWatch();
    ~ServerWatch();
    Q_DISABLE_COPY_MOVE(ServerWatch)

    /// Watches over the connection while its guard lives. `config` leads to its server.
    void add(const AutoReportDbConfig &config, const std::shared_ptr<ConnectionGuard> &guard,
             Limits limits);

    /// Lets the thread end after the question that it may be at, ten seconds later at the most. The
    /// destructor waits for it.
    void requestEnd();

private:
    using Clock = std::chrono::steady_clock;
    struct Watched {
        AutoReportDbConfig config;
        std::weak_ptr<ConnectionGuard> guard;
        Limits limits;
    };
    /// A connection that has been in use for longer than its patience.
    struct Waiting {
        AutoReportDbConfig config; ///< of the very server, by its address
        std::shared_ptr<ConnectionGuard> guard;
        Limits limits;
    };

    void run();
    bool pauseUntilNextLook();
    std::vector<Waiting> waitingConnections();
    void look();
    void breakSilent(const std::vector<Waiting> &waiting);

    std::mutex mutex;
    std::condition_variable wake;
    bool ended = false;           ///< under the mutex
    std::vector<Watched> watched; ///< under the mutex
    /// By server, while connections wait for it: the first question that was not answered. The
    /// thread's own.
    QHash<QString, Clock::time_point> silentSince;
    QHash<QString, Clock::time_point> answered; ///< by server: the last question that was
    std::thread thread;
};
