#pragma once

#include "db/serversocket.h"

#include <atomic>
#include <chrono>
#include <mutex>

/**
 * The handle by which other threads break a connection off: a stop does, and the watch over servers
 * that fall silent.
 *
 * The connection's thread calls guard(), release() and makes Uses; any thread may call the others.
 */
class ConnectionGuard
{
public:
    using Clock = std::chrono::steady_clock;

    ConnectionGuard() = default;
    ~ConnectionGuard() = default;
    Q_DISABLE_COPY_MOVE(ConnectionGuard)

    /// Watches over `database`, just opened, instead of the one before.
    void guard(const QSqlDatabase &database);
    /// The connection is about to be closed.
    void release();

    /// Makes what waits on the connection fail at once, until it is opened and guarded anew.
    void breakOff();
    /// The same, and whatever is opened from now on.
    void breakForGood();
    bool isGuarding() const;
    bool isBroken() const { return broken; }

    /// The server's numeric address, empty if it has none or no connection is guarded.
    QString serverAddress() const;
    /// How long the connection has been in use without an end; zero while it is idle.
    Clock::duration busyTime() const;

    /// Marks the connection as in use while it lives.
    class Use
    {
    public:
        explicit Use(ConnectionGuard &connectionGuard);
        ~Use() { guard.busySince = 0; }
        Q_DISABLE_COPY_MOVE(Use)

    private:
        ConnectionGuard &guard;
    };

private:
    mutable std::mutex mutex;
    ServerSocket socket;
    bool forGood = false;
    std::atomic<bool> broken{false};
    std::atomic<Clock::rep> busySince{0}; ///< ticks of the clock, 0 while idle
};
