#include "reports/reportgate.h"

#include "support/testdata.h"

#include <QElapsedTimer>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <thread>
#include <vector>

using namespace std::chrono_literals;

namespace
{

constexpr auto soon = 5s; // for machines under load; what is wrong never happens
constexpr auto limit = 60s;

const auto goOn = [] {
    return false;
};

/// Of the standard library throughout: ThreadSanitizer does not see what Qt's threads wait for.
class Signal
{
public:
    void give()
    {
        const std::lock_guard lock(mutex);
        given = true;
        changed.notify_all();
    }
    bool wait(std::chrono::milliseconds timeout)
    {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, timeout, [this] { return given; });
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    bool given = false;
};

/// A thread that asks for a pass and keeps it until it is let go, stopped or terminated.
class Visitor
{
public:
    Visitor(ReportGate &gate, const std::function<void()> &entered)
        : thread([this, &gate, entered] { visit(gate, entered); })
    {
        queued.wait(limit);
    }
    ~Visitor()
    {
        letGo.give();
        if (thread.joinable())
            thread.join();
    }
    Q_DISABLE_COPY_MOVE(Visitor)

    void stop()
    {
        stopped = true;
        thread.join();
    }
    /// As QThread::terminate() does it.
    void terminate()
    {
        pthread_cancel(thread.native_handle());
        thread.join();
    }

    Signal inside;
    Signal letGo;

private:
    void visit(ReportGate &gate, const std::function<void()> &entered)
    {
        const ReportGate::Pass pass(gate, [this] {
            queued.give(); // it has its position in the queue
            return stopped.load();
        });
        if (!pass.isHeld())
            return;
        entered();
        inside.give();
        letGo.wait(limit);
    }

    Signal queued;
    std::atomic<bool> stopped{false};
    std::thread thread; // begun with all members in place
};

const auto nothing = [] {
};

} // namespace

class TestReportGate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entersInOrder()
    {
        ReportGate gate(1, 1h);
        std::vector<int> order;
        std::vector<std::unique_ptr<Visitor>> visitors;
        for (int i = 0; i < 20; ++i) {
            visitors.push_back(
                std::make_unique<Visitor>(gate, [&order, i] { order.push_back(i); }));
            if (i > 0)
                visitors.back()->letGo.give();
        }
        visitors.front()->letGo.give();
        visitors.clear();
        QCOMPARE(order.size(), std::size_t(20));
        QVERIFY(std::is_sorted(order.cbegin(), order.cend()));
    }

    /// Each lost wake-up would cost a time slice.
    void admitsNoMoreThanItsPlaces()
    {
        constexpr int places = 3;
        constexpr int passes = 2000;
        constexpr int threadCount = 8;
        ReportGate gate(places, 1h);
        std::atomic<int> inside{0};
        std::atomic<int> most{0};
        std::vector<std::thread> threads;
        threads.reserve(threadCount);
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < threadCount; ++i) {
            threads.emplace_back([&] {
                for (int pass = 0; pass < passes / threadCount; ++pass) {
                    const ReportGate::Pass held(gate, goOn);
                    const int now = ++inside;
                    for (int seen = most; seen < now && !most.compare_exchange_weak(seen, now);)
                        ;
                    std::this_thread::sleep_for(50us);
                    --inside;
                }
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(most.load(), places);
        QVERIFY2(timer.elapsed() < std::chrono::milliseconds(limit).count(),
                 qPrintable(QString::number(timer.elapsed())));
    }

    void leavesTheQueue_data()
    {
        addColumns<bool>("terminated");
        addRow("stopped", false);
        addRow("terminated", true);
    }

    void leavesTheQueue()
    {
        QFETCH(bool, terminated);
        ReportGate gate(1, 1h);
        Visitor holder(gate, nothing);
        Visitor leaving(gate, nothing);
        Visitor next(gate, nothing);
        QVERIFY(holder.inside.wait(soon));
        QVERIFY(!leaving.inside.wait(0s));
        terminated ? leaving.terminate() : leaving.stop();
        QVERIFY(!next.inside.wait(0s));
        holder.letGo.give();
        QVERIFY(next.inside.wait(soon));
        const ReportGate::Pass late(gate, [] { return true; });
        QVERIFY(!late.isHeld());
    }

    void terminatedHolder()
    {
        ReportGate gate(1, 1h);
        Visitor holder(gate, nothing);
        Visitor next(gate, nothing);
        QVERIFY(holder.inside.wait(soon));
        holder.terminate();
        QVERIFY(next.inside.wait(soon));
    }

    void holderWithoutEnd()
    {
        ReportGate gate(1, 100ms);
        const ReportGate::Pass stuck(gate, goOn);
        QVERIFY(!stuck.hasWaited());
        const ReportGate::Pass pass(gate, goOn);
        QVERIFY(pass.isHeld());
        QVERIFY(pass.hasWaited());
    }
};

QTEST_APPLESS_MAIN(TestReportGate)
#include "tst_reportgate.moc"
