#pragma once

#include "db/serverlist.h"

#include <QSqlDatabase>

#include <chrono>

/**
 * A duplicate of the socket descriptor of an open connection.
 *
 * The client library waits on its socket without a limit and cannot be interrupted. shutDown(),
 * called from any thread, makes the wait fail at once. The duplicate stays valid after the library
 * has closed its own descriptor, while the number of that descriptor may be reused for another
 * file.
 *
 * Construct it in the connection's thread. The constructor sets SO_KEEPALIVE and TCP_USER_TIMEOUT,
 * so that the system notices within half a minute that the peer has vanished. The object is invalid
 * if the connection is closed or the driver does not reveal its socket.
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
    /// Returns the numeric address of the peer. The host is empty for a Unix socket, and if the
    /// socket is invalid or not connected.
    ServerAddress peerAddress() const;
    /// Makes all reads and writes on the socket fail, including those in progress.
    void shutDown() const;

private:
    void close();

    int descriptor = -1;
};

/// Whether a time limit applies only to connecting, or to queries, too. Limit queries only if all
/// of them are known to be short.
enum class Limited { Connecting, Queries };

/// Opens `database` on one of its servers. Each single step, such as connecting or logging in, may
/// take up to `seconds`. If the client library reconnects later, Limited::Connecting limits only
/// the connecting itself, not the login. Leaves QSqlDatabase::connectOptions() unchanged.
bool openWithin(QSqlDatabase &database, int seconds, Limited limited = Limited::Connecting);

/// Limits the connecting to `seconds` whenever the client library reconnects an open connection.
/// Has no effect with MySQL's client library.
void limitReconnect(const QSqlDatabase &database, int seconds);

/// The usual limit for openWithin().
constexpr int connectSeconds = 5;

/// Returns how long a failed call must have taken to count as timed out. This is slightly less than
/// the limit of `seconds`, because timers are inexact.
constexpr std::chrono::milliseconds limitReached(int seconds)
{
    return std::chrono::milliseconds(seconds * 1000 - 500);
}

/// Prevents the client library from reconnecting until `database` is opened again. Otherwise the
/// library could reconnect in the middle of a run or after a shutDown(). The connection must be
/// open. Has no effect with MySQL's client library.
void forbidReconnect(const QSqlDatabase &database);
