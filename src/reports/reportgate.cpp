#include "reports/reportgate.h"

#include <QThread>

#include <algorithm>
#include <ctime>

#include <pthread.h>

namespace
{

/// How long a stop may go unnoticed. Shorter slices would keep a thousand waiters busy.
constexpr long sliceNs = 250'000'000;
constexpr long nsPerSecond = 1'000'000'000;

/// Runs per core: while one of them waits for its server, another one works.
constexpr int runsPerCore = 2;
constexpr std::chrono::minutes processPatience{1};

/// Releases a lock and acquires it again on destruction, even if the thread is being terminated.
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
 * A thread's position in the queue, given up by the destructor.
 *
 * Each waiter has a condition of its own, so that a free place wakes one thread instead of all. It
 * is a POSIX condition, because a thread waiting on it can be terminated, unlike one waiting on
 * QWaitCondition or on the conditions of older standard libraries. Created and destroyed with the
 * mutex locked.
 */
class ReportGate::Waiter
{
public:
    explicit Waiter(ReportGate &reportGate)
        : gate(reportGate)
    {
        pthread_condattr_t attributes;
        pthread_condattr_init(&attributes);
        pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
        pthread_cond_init(&condition, &attributes);
        pthread_condattr_destroy(&attributes);
        gate.queue.push_back(this);
    }

    ~Waiter()
    {
        gate.queue.remove(this);
        gate.wakeFirst();
        pthread_cond_destroy(&condition);
    }
    Q_DISABLE_COPY_MOVE(Waiter)

    void wake() { pthread_cond_signal(&condition); }

    void waitForSlice(std::unique_lock<std::mutex> &lock)
    {
        timespec until;
        clock_gettime(CLOCK_MONOTONIC, &until);
        until.tv_nsec += sliceNs;
        until.tv_sec += until.tv_nsec / nsPerSecond;
        until.tv_nsec %= nsPerSecond;
        pthread_cond_timedwait(&condition, lock.mutex()->native_handle(), &until);
    }

private:
    ReportGate &gate;
    pthread_cond_t condition;
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
