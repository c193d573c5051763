#pragma once

#include "db/serverlist.h"

#include <QSqlDatabase>

#include <chrono>

/**
 * A duplicate of the socket descriptor of an open connection.
 *
 * The client library waits on its socket without a limit and cannot be interrupted. shutDown(),
 * called from any thread, makes the wait fail at once. The duplicate stays valid after the library
 * has closed its own descriptor, whose number may by then be another file's.
 *
 * Construct it in the connection's thread. The constructor sets SO_KEEPALIVE and TCP_USER_TIMEOUT,
 * so that a peer that vanished is noticed within half a minute. The object is invalid if the
 * connection is closed or the driver does not reveal its socket.
 */
class ServerSocket
{
public:
    ServerSocket() = default;
    explicit ServerSocket(const QSqlDatabase &database);
    ~ServerSocket() { close(); }
    Q_DISABLE_COPY(ServerSocket)

    /// Closes the descriptor of this object and takes over that of `other`.
    ServerSocket &operator=(ServerSocket &&other) noexcept;

    bool isValid() const { return descriptor != -1; }
    /// Returns the numeric address of the peer; its host is empty for a Unix socket, and if the
    /// socket is invalid or not connected.
    ServerAddress peerAddress() const;
    /// Makes all reads and writes on the socket fail, including those in progress.
    void shutDown() const;

private:
    void close();

    int descriptor = -1;
};

/// Whether a time limit applies to connecting alone or to queries too. Limit queries only if all of
/// them are known to be short.
enum class Limited { Connecting, Queries };

/// Opens `database` on one of its servers. Each single step, such as connecting or logging in, may
/// take `seconds`. With Limited::Connecting, later reconnects of the client library are limited in
/// connecting alone. Leaves QSqlDatabase::connectOptions() unchanged.
bool openWithin(QSqlDatabase &database, int seconds, Limited limited = Limited::Connecting);

/// Limits the reconnects of an open connection to `seconds` each. Has no effect with MySQL's client
/// library.
void limitReconnect(const QSqlDatabase &database, int seconds);

/// The usual limit for openWithin().
constexpr int connectSeconds = 5;

/// Returns how long a failed call must have taken to count as timed out under a limit of `seconds`:
/// slightly less than the limit, because timers are inexact.
constexpr std::chrono::milliseconds limitReached(int seconds)
{
    return std::chrono::milliseconds(seconds * 1000 - 500);
}

/// Disables the client library's reconnect until `database` is opened again. The library would
/// otherwise reconnect in the middle of a run, and after a shutDown(). The connection must be open.
/// Has no effect with MySQL's client library.
void forbidReconnect(const QSqlDatabase &database);
