#pragma once

#include <QtGlobal>

#include <chrono>
#include <functional>
#include <list>
#include <mutex>

/**
 * Limits how many runs work at the same time. Further runs wait, first come, first served.
 *
 * A place held for longer than `patience` no longer counts: its run is probably waiting for a
 * silent server, and customers on other servers should not have to wait for it. Thread-safe.
 */
class ReportGate
{
public:
    using Clock = std::chrono::steady_clock;

    ReportGate(int placeCount, std::chrono::milliseconds placePatience);
    ~ReportGate() = default;
    Q_DISABLE_COPY_MOVE(ReportGate)

    /// Returns the gate that all workers of this process share.
    static ReportGate &ofProcess();

    /// A place at the gate, released by the destructor.
    class Pass
    {
    public:
        /// Waits for a place, or until `isStopped` returns true. Calls `isStopped` at once and then
        /// about four times a second, without holding the gate's mutex.
        Pass(ReportGate &reportGate, const std::function<bool()> &isStopped);
        ~Pass();
        Q_DISABLE_COPY_MOVE(Pass)

        /// Returns false if the wait was stopped.
        bool isHeld() const { return held; }
        /// Returns whether the constructor had to wait.
        bool hasWaited() const { return waited; }

    private:
        ReportGate &gate;
        std::list<Clock::time_point>::iterator place; ///< in `taken`; valid if held
        bool held = false;
        bool waited = false;
    };

private:
    class Waiter;

    bool admits(const Waiter &waiter) const;
    void wakeFirst();

    const int places;
    const std::chrono::milliseconds patience;
    std::mutex mutex; ///< guards `queue` and `taken`
    std::list<Waiter *> queue;
    std::list<Clock::time_point> taken; ///< when each held pass got its place
};
