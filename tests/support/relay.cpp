#include "support/relay.h"

#include <vector>

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{

constexpr int pollMs = 5;      // how late the relay sees what another thread asked of it
constexpr int headerBytes = 4; // length in three bytes, lowest first, and the packet's number

// Of the commands that a packet begins with, those that have no answer.
const QByteArray quit("\x01");
const QByteArray closeStatement("\x19");

sockaddr_in loopback(int port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int tcpSocket()
{
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    if (descriptor == -1)
        qFatal("test bench: no socket for the relay");
    return descriptor;
}

/// Blocks until all of it is on its way.
bool sendAll(int descriptor, const char *data, qint64 size)
{
    return send(descriptor, data, size_t(size), MSG_NOSIGNAL) == size;
}

bool receive(int descriptor, QByteArray &bytes)
{
    char buffer[0x10000];
    const ssize_t got = recv(descriptor, buffer, sizeof buffer, 0);
    if (got <= 0)
        return false;
    bytes.append(buffer, static_cast<int>(got));
    return true;
}

} // namespace

Relay::Relay(int port)
    : serverPort(port)
    , listener(tcpSocket())
{
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    auto *any = reinterpret_cast<sockaddr *>(&address);
    if (bind(listener, any, size) != 0 || listen(listener, 512) != 0 ||
        getsockname(listener, any, &size) != 0)
        qFatal("test bench: the relay cannot listen");
    listeningPort = ntohs(address.sin_port);
    thread = std::thread([this] { run(); });
}

Relay::~Relay()
{
    ended = true;
    thread.join();
    ::close(listener);
}

Relay::Link::~Link()
{
    ::close(client);
    ::close(server);
}

void Relay::thaw()
{
    {
        const std::lock_guard lock(mutex);
        plans.clear();
    }
    frozen = false;
    thawing = true;
    while (thawing)
        std::this_thread::yield();
}

void Relay::failAt(const QByteArray &database, const QByteArray &text, Fault fault, int ordinal)
{
    // In the login the name ends with a zero byte, which parts "t1" from "t12".
    const QByteArray name = database.isEmpty() ? database : database + '\0';
    const std::lock_guard lock(mutex);
    plans.append({name, text, fault, ordinal});
}

void Relay::run()
{
    while (!ended) {
        if (thawing) {
            for (Link &link : links) {
                link.silent = false;
                forwardPackets(link);
            }
            thawing = false;
        }
        std::vector<pollfd> watched{{frozen ? -1 : listener, POLLIN, 0}};
        for (const Link &link : links) {
            const bool still = frozen || link.silent;
            watched.push_back({still ? -1 : link.client, POLLIN, 0});
            watched.push_back({still ? -1 : link.server, POLLIN, 0});
        }
        poll(watched.data(), watched.size(), pollMs);
        auto event = watched.begin() + 1;
        for (Link &link : links) {
            pump(link, event[0].revents, event[1].revents);
            event += 2;
        }
        links.remove_if([](const Link &link) { return link.over; });
        if (watched.front().revents != 0)
            accept();
    }
}

void Relay::accept()
{
    const sockaddr_in address = loopback(serverPort);
    Link &link = links.emplace_back();
    link.client = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    link.server = tcpSocket();
    link.over =
        connect(link.server, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0;
}

void Relay::pump(Link &link, short clientEvents, short serverEvents)
{
    if (clientEvents != 0) {
        link.over = !receive(link.client, link.unread);
        forwardPackets(link);
    }
    if (serverEvents != 0 && !frozen && !link.silent && !link.over) {
        QByteArray bytes;
        link.over = link.deaf || !receive(link.server, bytes) ||
                    !sendAll(link.client, bytes.constData(), bytes.size());
    }
}

/// Forwards the client's packets one by one, up to the one at which something fails.
void Relay::forwardPackets(Link &link)
{
    while (link.unread.size() >= headerBytes && !frozen && !link.silent && !link.over) {
        const auto *header = reinterpret_cast<const uchar *>(link.unread.constData());
        const int size = headerBytes + (header[0] | header[1] << 8 | header[2] << 16);
        if (link.unread.size() < size || !mayForward(link, link.unread.left(size)))
            return;
        link.over = link.over || !sendAll(link.server, link.unread.constData(), size);
        link.unread.remove(0, size);
    }
}

bool Relay::mayForward(Link &link, const QByteArray &packet)
{
    const std::lock_guard lock(mutex);
    const bool loggingIn = link.database.isNull();
    if (loggingIn) // the packet has the database's name in it, and is matched for that
        link.database = packet;
    else if (const QByteArray command = packet.mid(headerBytes, 1);
             command == quit || command == closeStatement)
        return true;
    const QByteArray text = loggingIn ? QByteArray("login") : packet.mid(headerBytes + 1);
    for (int i = 0; i < plans.size(); ++i) {
        Plan &plan = plans[i];
        if (!link.database.contains(plan.database) || !text.contains(plan.text) || --plan.left > 0)
            continue;
        const Fault fault = plan.fault;
        plans.remove(i);
        link.silent = fault == Fault::Silence;
        link.over = fault == Fault::Cut;
        link.deaf = fault == Fault::CutAnswer;
        if (fault == Fault::Freeze)
            frozen = true;
        ++failed;
        return link.deaf;
    }
    return true;
}
