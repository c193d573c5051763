#include "options/temporarydirectory.h"

#include "support/plugintest.h"

#include <atomic>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/statvfs.h>

namespace
{

constexpr int stopMs = 12000;

std::atomic<int> threadsLeft{-1}; ///< how many the system still gives; any number if negative
std::atomic<bool> diskStalled{false};
std::atomic<int> waitingForDisk{0};

template <typename Function>
Function systemFunction(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

void waitForDisk()
{
    ++waitingForDisk;
    while (diskStalled)
        QThread::msleep(10);
    --waitingForDisk;
}

} // namespace

// The whole process calls these instead of the system's.

extern "C" Q_DECL_EXPORT int pthread_create(pthread_t *thread, const pthread_attr_t *attributes,
                                            void *(*run)(void *), void *argument) noexcept
{
    static const auto create = systemFunction<decltype(&pthread_create)>("pthread_create");
    if (threadsLeft == 0)
        return EAGAIN;
    if (threadsLeft > 0)
        --threadsLeft;
    return create(thread, attributes, run, argument);
}

extern "C" Q_DECL_EXPORT int rename(const char *from, const char *to) noexcept
{
    static const auto move = systemFunction<decltype(&rename)>("rename");
    waitForDisk();
    return move(from, to);
}

extern "C" Q_DECL_EXPORT int statvfs(const char *path, struct statvfs *room) noexcept
{
    static const auto measure = systemFunction<decltype(&statvfs)>("statvfs");
    waitForDisk();
    return measure(path, room);
}

/// The plug-in on a machine that is short of something, or stuck.
class TestShortage : public PluginTest
{
    Q_OBJECT

private Q_SLOTS:
    void tooFew_data()
    {
        addRow("file descriptors", 120, -1, "too few file descriptors left (ulimit -n)", 6, 29);
        addRow("threads", 0, 11, "cannot start a thread for a worker", 10,
               10); // one is the watch's
        addRow("no thread at all", 0, 0, "cannot start a thread for a worker", 0, 0);
    }

    /// What fits is served, and the next scan serves the others.
    void tooFew()
    {
        const auto [files, threadLimit, line, least, most] = fetch<int, int, QString, int, int>();
        constexpr int total = 40;
        enableDailyReport(*schema);
        for (int i = 0; i < total; ++i)
            host->addSchemas({QString("firma%1").arg(i)}, *schema);
        rlimit limit = {};
        getrlimit(RLIMIT_NOFILE, &limit);
        const rlim_t all = limit.rlim_cur;
        const auto givePlenty = [&limit, all] {
            limit.rlim_cur = all;
            setrlimit(RLIMIT_NOFILE, &limit);
            threadsLeft = -1;
        };
        const auto plenty = qScopeGuard(givePlenty);
        if (files > 0)
            limit.rlim_cur = rlim_t(fcntl(0, F_DUPFD, 0)) + rlim_t(files);
        setrlimit(RLIMIT_NOFILE, &limit);
        threadsLeft = threadLimit;
        QVERIFY(plugin->start());
        QVERIFY(logs(line));
        const int served = logged("worker created");
        QVERIFY2(served >= least && served <= most, qPrintable(QString::number(served)));
        QCOMPARE(threads(), served);
        QCOMPARE(logged("cannot start the thread that watches for silent servers"),
                 threadLimit == 0 ? 1 : 0);
        QVERIFY(logs("AutoReportWorker initialized", served));

        givePlenty();
        beginScan();
        QVERIFY(logs("AutoReportWorker initialized", total));
        plugin->stop();
        QCOMPARE(logged("AutoReportWorker - stop()"), total);
        QCOMPARE(logged(line), 1);
    }

    /// A thread in a system call that does not return is left behind, and ends when it returns.
    void stalledDisk()
    {
        enableDailyReport(*schema, "a@firma.sk");
        addPeople(*schema, 2);
        host->addSchemas({"firma"}, *schema);
        diskStalled = true;
        const auto getsOn = qScopeGuard([] { diskStalled = false; });
        QVERIFY(plugin->start());
        QTRY_COMPARE_WITH_TIMEOUT(int(waitingForDisk), 1, patienceMs);
        const QPointer<QThread> thread = plugin->findChild<QThread *>("AutoReport_firma");
        QVERIFY(thread);

        stopWithin(stopMs);
        QCOMPARE(logged("thread 'AutoReport_firma' did not stop in time"), 1);
        QCOMPARE(logged("thread 'AutoReport_firma' cannot be ended and is left behind"), 1);
        QCOMPARE(threads(), 0);

        // Until then its connection has the name that a new worker would need.
        QVERIFY(plugin->start());
        QVERIFY(logs("start() - duplicate connection name"));
        plugin->stop();
        QVERIFY(thread && thread->isRunning());
        diskStalled = false;
        QTRY_VERIFY_WITH_TIMEOUT(thread.isNull(), patienceMs);
        QCOMPARE(schema->mails(), 0);
        QVERIFY(plugin->start());
        QTRY_COMPARE_WITH_TIMEOUT(schema->mails(), 1, patienceMs);
        plugin->stop();
    }

    /// However many callers ask, one thread waits for the disk; a late answer is ignored.
    void stalledTemporaryDirectory()
    {
        using State = TemporaryDirectory::State;
        constexpr auto patience = std::chrono::milliseconds(50);
        constexpr auto manyTimes = std::chrono::seconds(10);
        TemporaryDirectoryProbe probe;
        QCOMPARE(probe.check(manyTimes).state, State::Usable);
        diskStalled = true;
        const auto getsOn = qScopeGuard([] { diskStalled = false; });
        QCOMPARE(probe.check(patience).state, State::Silent);
        QCOMPARE(probe.check(manyTimes).path, temporary->path()); // at once
        QCOMPARE(int(waitingForDisk), 1);
        qputenv("TMPDIR", "/proc");
        diskStalled = false;
        QTRY_COMPARE(probe.check(manyTimes).state, State::NotWritable);
        QVERIFY(QDir(temporary->path()).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestShortage)
#include "tst_shortage.moc"
