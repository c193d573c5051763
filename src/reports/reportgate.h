#pragma once

#include <QtGlobal>

#include <chrono>
#include <functional>
#include <list>
#include <mutex>

/**
 * Lets a limited number of runs read and write at the same time. The others wait in the order in
 * which they came.
 *
 * A place that has been held for longer than `patience` no longer counts: its run is probably
 * waiting for a server that does not answer, and must not hold up the customers of other servers.
 *
 * The gate may be used from any thread. It keeps nothing but memory, so a thread that is terminated
 * while it waits or holds a pass leaves the gate in order.
 */
class ReportGate
{
public:
    using Clock = std::chrono::steady_clock;

    ReportGate(int placeCount, std::chrono::milliseconds placePatience);
    ~ReportGate() = default;
    Q_DISABLE_COPY_MOVE(ReportGate)

    /// The gate that all workers of this process share.
    static ReportGate &ofProcess();

    /// A place at the gate, released by the destructor.
    class Pass
    {
    public:
        /// Waits for a place, or until `isStopped` returns true. It is polled at the beginning and
        /// then at least four times a second, without a lock of the gate held.
        Pass(ReportGate &reportGate, const std::function<bool()> &isStopped);
        ~Pass();
        Q_DISABLE_COPY_MOVE(Pass)

        /// False if the wait was stopped.
        bool isHeld() const { return held; }
        /// Whether the moment at which the pass was asked for may be long gone.
        bool hasWaited() const { return waited; }

    private:
        ReportGate &gate;
        std::list<Clock::time_point>::iterator place; ///< valid if held
        bool held = false;
        bool waited = false;
    };

private:
    class Waiter;

    bool admits(const Waiter &waiter) const;
    void wakeFirst();

    const int places;
    const std::chrono::milliseconds patience;
    std::mutex mutex;                   ///< guards what follows
    std::list<Waiter *> queue;          ///< the first is the next to enter
    std::list<Clock::time_point> taken; ///< since when each place is held
};
