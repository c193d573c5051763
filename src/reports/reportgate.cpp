#include "reports/reportgate.h"

#include <QThread>

#include <algorithm>
#include <condition_variable>

namespace
{

/// How long a waiting thread sleeps before it checks again whether it must stop. If this were
/// shorter, a thousand waiting threads would keep the machine busy.
constexpr std::chrono::milliseconds slice{250};

/// Two, so that one run uses the core while the other waits for its server.
constexpr int runsPerCore = 2;
constexpr std::chrono::minutes processPatience{1};

/// Releases a lock and acquires it again in the destructor.
class Unlocked
{
public:
    explicit Unlocked(std::unique_lock<std::mutex> &heldLock)
        : lock(heldLock)
    {
        lock.unlock();
    }
    ~Unlocked() { lock.lock(); }
    Q_DISABLE_COPY_MOVE(Unlocked)

private:
    std::unique_lock<std::mutex> &lock;
};

} // namespace

/**
 * A thread in the queue: the constructor joins the queue at its end, the destructor leaves it.
 *
 * Each waiter has its own condition variable, so that a free place wakes one thread instead of all.
 * Hold the gate's mutex to create or destroy a waiter.
 */
class ReportGate::Waiter
{
public:
    explicit Waiter(ReportGate &reportGate)
        : gate(reportGate)
    {
        gate.queue.push_back(this);
    }

    ~Waiter()
    {
        gate.queue.remove(this);
        gate.wakeFirst();
    }
    Q_DISABLE_COPY_MOVE(Waiter)

    void wake() { condition.notify_one(); }

    /// Waits for wake(), but at most for the length of a slice.
    void waitForSlice(std::unique_lock<std::mutex> &lock) { condition.wait_for(lock, slice); }

private:
    ReportGate &gate;
    std::condition_variable condition;
};

ReportGate::ReportGate(int placeCount, std::chrono::milliseconds placePatience)
    : places(placeCount)
    , patience(placePatience)
{
}

ReportGate &ReportGate::ofProcess()
{
    static ReportGate gate(runsPerCore * QThread::idealThreadCount(), processPatience);
    return gate;
}

bool ReportGate::admits(const Waiter &waiter) const
{
    if (queue.front() != &waiter)
        return false;
    const auto oldest = Clock::now() - patience;
    return std::count_if(taken.cbegin(), taken.cend(),
                         [oldest](auto since) { return since > oldest; }) < places;
}

void ReportGate::wakeFirst()
{
    if (!queue.empty())
        queue.front()->wake();
}

ReportGate::Pass::Pass(ReportGate &reportGate, const std::function<bool()> &isStopped)
    : gate(reportGate)
{
    const auto stopped = [&isStopped](std::unique_lock<std::mutex> &lock) {
        const Unlocked unlocked(lock);
        return isStopped();
    };
    std::unique_lock lock(gate.mutex);
    Waiter waiter(gate);
    while (!stopped(lock)) {
        held = gate.admits(waiter);
        if (held) {
            place = gate.taken.insert(gate.taken.end(), Clock::now());
            return;
        }
        waited = true;
        waiter.waitForSlice(lock);
    }
}

ReportGate::Pass::~Pass()
{
    if (!held)
        return;
    const std::lock_guard lock(gate.mutex);
    gate.taken.erase(place);
    gate.wakeFirst();
}
