#include "plugin/autoreport.h"

#include "support/testhost.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QScopeGuard>
#include <QThread>

#include <atomic>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/resource.h>

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

} // namespace

// The whole process calls these two instead of the system's.

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
    ++waitingForDisk;
    while (diskStalled)
        QThread::msleep(10);
    --waitingForDisk;
    return move(from, to);
}

/// The plug-in on a machine that is short of something, or stuck.
class TestShortage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        qputenv("TMPDIR", temporary.path().toLocal8Bit());
        log = std::make_unique<LogCapture>();
        host = std::make_unique<TestHost>();
        schema = std::make_unique<TestDatabase>(TestDatabase::Tables::Schema);
        plugin = std::make_unique<AutoReport>();
        plugin->setDBManager(host->manager());
    }

    void cleanup()
    {
        plugin.reset();
        host.reset();
        schema.reset();
        log.reset();
    }

    void tooFew_data()
    {
        addColumns<int, int, QString, int, int>("descriptors", "threads", "line", "least", "most");
        addRow("file descriptors", 120, -1, "too few file descriptors left (ulimit -n)", 6, 29);
        addRow("threads", 0, 11, "no thread left for a worker", 10, 10); // one is the watch's
        addRow("no thread at all", 0, 0, "no thread left for a worker", 0, 0);
    }

    /// What fits is served, and the next scan serves the others.
    void tooFew()
    {
        QFETCH(int, descriptors);
        QFETCH(int, threads);
        QFETCH(QString, line);
        QFETCH(int, least);
        QFETCH(int, most);
        constexpr int total = 40;
        enableDailyReport(*schema);
        for (int i = 0; i < total; ++i)
            host->addSchemas({QString("firma%1").arg(i)}, *schema);
        rlimit limit = {};
        getrlimit(RLIMIT_NOFILE, &limit);
        const rlim_t all = limit.rlim_cur;
        const auto plenty = qScopeGuard([&limit, all] {
            limit.rlim_cur = all;
            setrlimit(RLIMIT_NOFILE, &limit);
            threadsLeft = -1;
        });
        if (descriptors > 0)
            limit.rlim_cur = rlim_t(fcntl(0, F_DUPFD, 0)) + rlim_t(descriptors);
        setrlimit(RLIMIT_NOFILE, &limit);
        threadsLeft = threads;
        QVERIFY(plugin->start());
        QTRY_COMPARE_WITH_TIMEOUT(logged(line), 1, patienceMs);
        const int served = logged("worker created");
        QVERIFY2(served >= least && served <= most, qPrintable(QString::number(served)));
        QCOMPARE(plugin->findChildren<QThread *>().size(), served);
        QCOMPARE(logged("no thread to watch over servers"), threads == 0 ? 1 : 0);
        QTRY_COMPARE_WITH_TIMEOUT(logged("AutoReportWorker initialized"), served, patienceMs);

        limit.rlim_cur = all;
        setrlimit(RLIMIT_NOFILE, &limit);
        threadsLeft = -1;
        QMetaObject::invokeMethod(plugin.get(), "checkSchemas", Qt::DirectConnection);
        QTRY_COMPARE_WITH_TIMEOUT(logged("AutoReportWorker initialized"), total, patienceMs);
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

        QElapsedTimer clock;
        clock.start();
        plugin->stop();
        QVERIFY2(clock.elapsed() < stopMs, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(logged("thread 'AutoReport_firma' did not stop in time"), 1);
        QCOMPARE(logged("thread 'AutoReport_firma' cannot be ended and is left behind"), 1);
        QVERIFY(plugin->findChildren<QThread *>().isEmpty());

        // Until then its connection has the name that a new worker would need.
        QVERIFY(plugin->start());
        QTRY_COMPARE_WITH_TIMEOUT(logged("start() - duplicate connection name"), 1, patienceMs);
        plugin->stop();
        QVERIFY(thread && thread->isRunning());
        diskStalled = false;
        QTRY_VERIFY_WITH_TIMEOUT(thread.isNull(), patienceMs);
        QCOMPARE(mails(), 0);
        QVERIFY(plugin->start());
        QTRY_COMPARE_WITH_TIMEOUT(mails(), 1, patienceMs);
        plugin->stop();
    }

private:
    int logged(const QString &part) const { return log->countContaining(part); }
    int mails() const { return schema->value("SELECT COUNT(*) FROM emails").toInt(); }

    const QTemporaryDir temporary;
    std::unique_ptr<LogCapture> log;
    std::unique_ptr<TestHost> host;
    std::unique_ptr<TestDatabase> schema;
    std::unique_ptr<AutoReport> plugin;
};

QTEST_GUILESS_MAIN(TestShortage)
#include "tst_shortage.moc"
