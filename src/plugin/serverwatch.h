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
 * Breaks off connections to servers that have fallen silent: that neither answer nor close.
 *
 * TCP notices a machine or a network that is gone, but not a server process that is frozen: its
 * kernel still acknowledges. A limit on queries would also break long ones that a live server works
 * on. So when a guarded connection has been in use for longer than `patience`, a thread of the
 * watch connects to the same server to see whether it answers at all; once it has not for
 * `silence`, the guarded connection is broken off.
 *
 * Owned and used by one thread. Without a thread for it, which is logged, nothing is watched.
 */
class ServerWatch
{
public:
    struct Limits {
        std::chrono::seconds patience; ///< of uninterrupted use, before the server is asked
        std::chrono::seconds silence;  ///< from the first question without an answer
    };

    /// A worker's query may take minutes; it ends within a minute of its server falling silent.
    static constexpr Limits limitsOfWorkers{std::chrono::seconds(10), std::chrono::seconds(20)};

    ServerWatch();
    ~ServerWatch();
    Q_DISABLE_COPY_MOVE(ServerWatch)

    /// Watches over the connection while its guard lives. `config` leads to its server.
    void add(const AutoReportDbConfig &config, const std::shared_ptr<ConnectionGuard> &guard,
             Limits limits);

    /// Asks the thread to end after the question that it is asking, ten seconds later at most. The
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
        AutoReportDbConfig config; ///< names the server by its address
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
    // The thread's own, by server.
    /// The first of the questions that it has not answered, while connections wait for it.
    QHash<QString, Clock::time_point> silentSince;
    QHash<QString, Clock::time_point> answered; ///< the last question that it has answered
    std::thread thread;
};
