#pragma once

#include <QByteArray>
#include <QVector>

#include <atomic>
#include <list>
#include <mutex>
#include <thread>

/// A TCP relay to the private server that can be made to fail. It listens on the loopback
/// interface, in its own thread. Frozen, it behaves like a server process that is stopped or a
/// network that drops packets: connections stay, new ones are accepted, nothing is forwarded. It
/// reads what clients send, so that it fails at the statement that the test names.
class Relay
{
public:
    explicit Relay(int serverPort);
    ~Relay();
    Q_DISABLE_COPY(Relay)

    int port() const { return listeningPort; }

    void freeze() { frozen = true; }
    /// Forwards again, also what silent connections held back, and forgets what was planned.
    void thaw();

    enum class Fault {
        Silence,  ///< this connection is frozen; the statement is held back
        Freeze,   ///< all are
        Cut,      ///< this connection is closed; the server never sees the statement
        CutAnswer ///< it is closed when the server has executed the statement
    };
    /// Fails once, at the `ordinal`-th statement that contains `text` on connections to `database`.
    /// An empty text means any statement that has an answer, an empty name any database; "login" is
    /// that with which a client logs in. Texts that clients prepare are seen when they are
    /// prepared.
    void failAt(const QByteArray &database, const QByteArray &text, Fault fault, int ordinal = 1);
    /// Returns how often that has happened.
    int failures() const { return failed; }

private:
    struct Plan {
        QByteArray database;
        QByteArray text;
        Fault fault;
        int left;
    };
    struct Link {
        Link() = default;
        ~Link();
        Q_DISABLE_COPY(Link)

        int client = -1;
        int server = -1;
        QByteArray database;
        QByteArray unread; ///< from the client: not yet a whole packet
        bool silent = false;
        bool deaf = false; ///< the server's next words are its last
        bool over = false;
    };

    void run();
    void accept();
    void pump(Link &link, short clientEvents, short serverEvents);
    void forwardPackets(Link &link);
    bool mayForward(Link &link, const QByteArray &packet);

    const int serverPort;
    int listener = -1;
    int listeningPort = 0;
    std::list<Link> links; ///< the thread's own
    std::mutex mutex;
    QVector<Plan> plans; ///< under the mutex
    std::atomic<bool> thawing{false};
    std::atomic<bool> frozen{false};
    std::atomic<bool> ended{false};
    std::atomic<int> failed{0};
    std::thread thread; ///< last: it uses all of these
};
