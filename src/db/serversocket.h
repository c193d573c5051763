#pragma once

#include <QSqlDatabase>

#include <chrono>

/**
 * A duplicate of the socket descriptor of an open connection.
 *
 * The client library waits on its socket without a limit and cannot be interrupted. shutDown(),
 * called from any thread, makes it fail at once. Because the descriptor is a duplicate, it stays
 * valid after the library has closed its own, whose number may by then be another file's.
 *
 * Construct it in the connection's thread. The constructor sets SO_KEEPALIVE and TCP_USER_TIMEOUT,
 * so that a peer that vanished is noticed within half a minute. Invalid if the driver does not
 * reveal its socket.
 */
class ServerSocket
{
public:
    ServerSocket() = default;
    explicit ServerSocket(const QSqlDatabase &database);
    ~ServerSocket() { close(); }
    Q_DISABLE_COPY(ServerSocket)

    /// Takes over the descriptor of `other` and closes its own.
    ServerSocket &operator=(ServerSocket &&other) noexcept;

    bool isValid() const { return descriptor != -1; }
    /// Returns the numeric address of the peer, or an empty text for a Unix socket.
    QString peerAddress() const;
    /// Ends every read and write on the socket, those under way too.
    void shutDown() const;

private:
    void close();

    int descriptor = -1;
};

/// What a time limit applies to: only opening, or queries too if they are known to be short.
enum class Limited { Connecting, Queries };

/// Opens `database`, with a limit of `seconds` for each step. A reconnect by the client library has
/// the same limit. The text of the connection's options is unchanged.
bool openWithin(QSqlDatabase &database, int seconds, Limited limited = Limited::Connecting);

/// Limits the reconnects of an open connection to `seconds` each.
void limitReconnect(const QSqlDatabase &database, int seconds);

/// The limit that callers of openWithin() use by default.
constexpr int connectSeconds = 5;

/// Returns after how long a failed call counts as timed out by a limit of `seconds`: a little less,
/// because timers are not exact.
constexpr std::chrono::milliseconds limitReached(int seconds)
{
    return std::chrono::milliseconds(seconds * 1000 - 500);
}

/// Keeps the client library from reconnecting on its own, even if the connection's options ask for
/// it: it would do so in the middle of a run, and after a shutDown(). For an open connection, until
/// it is opened again.
void forbidReconnect(const QSqlDatabase &database);
