#pragma once

#include <QSqlDatabase>

#include <chrono>

/**
 * A descriptor of its own for the socket of an open connection.
 *
 * The client library waits on its socket without a limit and cannot be interrupted. Whoever holds
 * a ServerSocket can shut the socket down from another thread; the library then fails at once. The
 * descriptor is a duplicate, so that one which the library has closed is never taken for another.
 *
 * Made in the connection's thread, with SO_KEEPALIVE and TCP_USER_TIMEOUT set so that a peer that
 * is gone without a word is noticed within half a minute. Invalid where the driver does not tell
 * its socket.
 */
class ServerSocket
{
public:
    ServerSocket() = default;
    explicit ServerSocket(const QSqlDatabase &database);
    ~ServerSocket() { close(); }
    Q_DISABLE_COPY(ServerSocket)

    /// Takes over what `other` holds and closes its own.
    ServerSocket &operator=(ServerSocket &&other) noexcept;

    bool isValid() const { return descriptor != -1; }
    /// The numeric address of the peer, empty if it has none, as on a Unix socket.
    QString peerAddress() const;
    /// Ends every read and write that waits on the socket.
    void shutDown() const;

private:
    void close();

    int descriptor = -1;
};

/// What a limit of time holds for besides connecting: a query may take long, unless it is known to
/// be short.
enum class Limited { Connecting, Queries };

/// Opens `database`, giving each step of that `seconds`; a reconnect of the client library has the
/// same limit. The text of the connection's options stays as it is.
bool openWithin(QSqlDatabase &database, int seconds, Limited limited = Limited::Connecting);

/// Limits the reconnects of a connection that is open.
void limitReconnect(const QSqlDatabase &database, int seconds);

/// The limit of openWithin() wherever nothing else is said.
constexpr int connectSeconds = 5;

/// What failed after so long has reached a limit of `seconds`, whose timers are not exact.
constexpr std::chrono::milliseconds limitReached(int seconds)
{
    return std::chrono::milliseconds(seconds * 1000 - 500);
}

/// Stops the client library from reconnecting on its own, whatever the options said: it would do
/// so in mid-run, and again after a shutDown(). For open connections, until they are opened again.
void forbidReconnect(const QSqlDatabase &database);
