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
 * Breaks off connections to servers that have fallen silent: servers that neither answer nor close
 * the connection.
 *
 * TCP detects a dead machine or network, but not a frozen server process, whose kernel still
 * acknowledges packets. A limit on the duration of queries would also end long queries on a healthy
 * server. Therefore, when a guarded connection has been in use for longer than `Limits::patience`,
 * the watch's own thread probes the server by connecting to it. If the probes fail for at least
 * `Limits::silence`, the watch breaks off the guarded connection.
 *
 * Owned and used by one thread. If the system cannot start the watch's thread, logs a warning and
 * watches nothing.
 */
class ServerWatch
{
public:
    struct Limits {
        std::chrono::seconds patience; ///< how long a connection is in use before the first probe
        std::chrono::seconds silence;  ///< how long probes fail before the connection is broken off
    };

    /// With these limits, a worker's query ends within a minute after its server falls silent.
    static constexpr Limits limitsOfWorkers{std::chrono::seconds(10), std::chrono::seconds(20)};

    ServerWatch();
    ~ServerWatch();
    Q_DISABLE_COPY_MOVE(ServerWatch)

    /// Watches the connection of `guard` until the guard is destroyed. Probes use the account in
    /// `config`. They use the host and port in `config` only if the connection does not reveal the
    /// server's address.
    void add(const AutoReportDbConfig &config, const std::shared_ptr<ConnectionGuard> &guard,
             Limits limits);

    /// Makes the thread end after its current probe, whose steps take at most five seconds each.
    /// The destructor waits for the thread.
    void requestEnd();

private:
    using Clock = std::chrono::steady_clock;
    struct Watched {
        AutoReportDbConfig config;
        std::weak_ptr<ConnectionGuard> guard;
        Limits limits;
    };
    /// A connection that has been in use for longer than `limits.patience`.
    struct Waiting {
        AutoReportDbConfig config; ///< with the server's numeric address if it is known
        std::shared_ptr<ConnectionGuard> guard;
        Limits limits;
    };

    void run();
    bool isEnded();
    bool pauseUntilNextLook();
    std::vector<Waiting> waitingConnections();
    void look();
    void breakSilent(const std::vector<Waiting> &waiting);

    std::mutex mutex;
    std::condition_variable wake;
    bool ended = false;           ///< guarded by `mutex`
    std::vector<Watched> watched; ///< guarded by `mutex`
    // Used only by the watch's thread. The keys are "HOST:PORT".
    QHash<QString, Clock::time_point>
        silentSince;                            ///< when the current series of failed probes began
    QHash<QString, Clock::time_point> answered; ///< when the last successful probe began
    std::thread thread;
};
