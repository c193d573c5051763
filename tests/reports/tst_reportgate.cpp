#include "reports/reportgate.h"

#include "support/testdata.h"

#include <atomic>
#include <chrono>
#include <deque>
#include <future>
#include <thread>
#include <vector>

using namespace std::chrono_literals;

namespace
{

/// A thread that asks for a pass and keeps it until it leaves. Of the standard library throughout:
/// ThreadSanitizer does not see what Qt's threads wait for.
class Visitor
{
public:
    explicit Visitor(ReportGate &gate)
        : thread([this, &gate] { visit(gate); })
    {
        while (!queued)
            std::this_thread::yield();
    }
    ~Visitor()
    {
        if (thread.joinable())
            leave();
    }
    Q_DISABLE_COPY_MOVE(Visitor)

    bool isInside() const { return inside; }
    /// Leaves the gate or its queue.
    void leave()
    {
        left = true;
        thread.join();
    }

private:
    void visit(ReportGate &gate)
    {
        const ReportGate::Pass pass(gate, [this] {
            queued = true;
            return left.load();
        });
        inside = pass.isHeld();
        while (inside && !left)
            std::this_thread::sleep_for(1ms);
    }

    std::atomic<bool> queued{false};
    std::atomic<bool> inside{false};
    std::atomic<bool> left{false};
    std::thread thread; // begun with all members in place
};

} // namespace

class TestReportGate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entersInOrder()
    {
        ReportGate gate(1, 1h);
        std::deque<Visitor> visitors;
        for (int i = 0; i < 20; ++i)
            visitors.emplace_back(gate);
        for (Visitor &visitor : visitors) {
            QTRY_VERIFY(visitor.isInside());
            visitor.leave();
        }
    }

    /// Each lost wake-up would cost a time slice.
    void admitsNoMoreThanItsPlaces()
    {
        constexpr int places = 3, passes = 2000, threadCount = 8;
        ReportGate gate(places, 1h);
        std::atomic<int> inside{0}, full{0}, overfull{0};
        const auto visit = [&] {
            for (int pass = 0; pass < passes / threadCount; ++pass) {
                const ReportGate::Pass held(gate, [] { return false; });
                const int now = ++inside;
                full += now == places ? 1 : 0;
                overfull += now > places ? 1 : 0;
                std::this_thread::sleep_for(50us);
                --inside;
            }
        };
        QElapsedTimer timer;
        timer.start();
        {
            std::vector<std::future<void>> visits(threadCount); // their destructors wait
            for (std::future<void> &one : visits)
                one = std::async(std::launch::async, visit);
        }
        QVERIFY(full > 0 && overfull == 0);
        QVERIFY2(timer.elapsed() < patienceMs, qPrintable(QString::number(timer.elapsed())));
    }

    void othersGo()
    {
        ReportGate gate(1, 1h);
        Visitor holder(gate);
        Visitor waiting(gate);
        Visitor next(gate);
        QTRY_VERIFY(holder.isInside());
        waiting.leave();
        QVERIFY(!waiting.isInside() && !next.isInside());
        holder.leave();
        QTRY_VERIFY(next.isInside());
        QVERIFY(!ReportGate::Pass(gate, [] { return true; }).isHeld());
    }

    void holderWithoutEnd()
    {
        ReportGate gate(1, 100ms);
        const ReportGate::Pass stuck(gate, [] { return false; });
        QVERIFY(!stuck.hasWaited());
        const ReportGate::Pass pass(gate, [] { return false; });
        QVERIFY(pass.isHeld());
        QVERIFY(pass.hasWaited());
    }
};

QTEST_APPLESS_MAIN(TestReportGate)
#include "tst_reportgate.moc"
