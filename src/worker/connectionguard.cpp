#include "worker/connectionguard.h"

void ConnectionGuard::guard(const QSqlDatabase &database)
{
    const std::lock_guard lock(mutex);
    socket = ServerSocket(database);
    broken = forGood;
    if (forGood)
        socket.shutDown();
}

void ConnectionGuard::release()
{
    const std::lock_guard lock(mutex);
    socket = ServerSocket();
}

void ConnectionGuard::breakOff()
{
    const std::lock_guard lock(mutex);
    broken = true;
    socket.shutDown();
}

void ConnectionGuard::breakForGood()
{
    const std::lock_guard lock(mutex);
    forGood = true;
    broken = true;
    socket.shutDown();
}

bool ConnectionGuard::isGuarding() const
{
    const std::lock_guard lock(mutex);
    return socket.isValid();
}

ServerAddress ConnectionGuard::serverAddress() const
{
    const std::lock_guard lock(mutex);
    return socket.peerAddress();
}

ConnectionGuard::Clock::duration ConnectionGuard::busyTime() const
{
    const Clock::rep since = busySince;
    return since == 0 ? Clock::duration::zero()
                      : Clock::now().time_since_epoch() - Clock::duration(since);
}

ConnectionGuard::Use::Use(ConnectionGuard &connectionGuard)
    : guard(connectionGuard)
{
    guard.busySince = Clock::now().time_since_epoch().count();
}
