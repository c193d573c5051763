#pragma once

#include "db/serversocket.h"

#include <atomic>
#include <chrono>
#include <mutex>

/**
 * Lets other threads break off a connection, on a stop or because its server fell silent.
 *
 * Call guard() and release(), and create objects of Use, in the connection's thread. All other
 * functions are thread-safe.
 */
class ConnectionGuard
{
public:
    using Clock = std::chrono::steady_clock;

    ConnectionGuard() = default;
    ~ConnectionGuard() = default;
    Q_DISABLE_COPY_MOVE(ConnectionGuard)

    /// Guards the open connection of `database` instead of the previous one.
    void guard(const QSqlDatabase &database);
    /// Ends the guarding. Call it before closing the connection.
    void release();

    /// Makes every call on the guarded connection fail at once.
    void breakOff();
    /// Like breakOff(), but also breaks off all connections guarded later.
    void breakForGood();
    bool isGuarding() const;
    /// Returns whether the connection that was guarded last was broken off.
    bool isBroken() const { return broken; }

    /// Returns the server's numeric address. The address has an empty host for a Unix socket, or if
    /// no connection is guarded.
    ServerAddress serverAddress() const;
    /// Returns how long the current Use has lasted, or zero if there is none.
    Clock::duration busyTime() const;

    /// Marks the connection as in use, from construction to destruction.
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
    std::atomic<Clock::rep> busySince{0}; ///< start of the current Use in units of Clock; 0 if none
};
