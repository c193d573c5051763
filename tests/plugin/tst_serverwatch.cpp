#include "plugin/serverwatch.h"
#include "worker/autoreportworker.h"
#include "worker/connectionguard.h"

#include "support/relay.h"
#include "support/testhost.h"

#include <QSemaphore>

namespace
{

/// A worker with both reports due, in a thread, whose server falls silent at a statement.
class SilentRun
{
public:
    SilentRun(const QByteArray &statement, ServerWatch::Limits limits)
    {
        addPeople(schema, 2);
        enableBothReports(schema, "a@firma.sk");
        schema.exec("CREATE TRIGGER slow AFTER INSERT ON emails FOR EACH ROW DO SLEEP(4)");
        relay.failAt({}, statement, Relay::Fault::Freeze);
        connections = schema.connectionsIn("%");
        thread = std::thread([this, limits] { run(limits); });
    }
    ~SilentRun()
    {
        nextTick.release(2);
        thread.join();
    }
    Q_DISABLE_COPY(SilentRun)

    int failures() const { return relay.failures(); }
    int mails() const { return schema.mails(); }
    QString lineOfWatch() const
    {
        return QString("the server 127.0.0.1:%1 does not answer, connections broken off: 1")
            .arg(relay.port());
    }
    QString lineOfWorker() const
    {
        return QString("the connection to db='%1' was lost and made again").arg(schema.name());
    }
    void answerNextTick()
    {
        relay.thaw();
        // The connection that was broken off holds the run's lock until the server notices its end.
        QTRY_COMPARE_WITH_TIMEOUT(schema.connectionsIn("%"), connections, patienceMs);
        nextTick.release();
    }

private:
    void run(ServerWatch::Limits limits)
    {
        const AutoReportDbConfig config{
            "QMYSQL",      "worker." + schema.name(), TestServer::host,     relay.port(),
            schema.name(), TestServer::user,          TestServer::password, {}};
        AutoReportWorker worker(config, nullptr);
        watch.add(config, worker.connectionGuard(), limits);
        worker.start();
        for (int tick = 0; tick < 2; ++tick) {
            worker.activateReports();
            nextTick.acquire();
        }
        worker.stop();
    }

    const TestDatabase schema{TestDatabase::Tables::Schema};
    Relay relay{TestServer::port()};
    ServerWatch watch;
    QSemaphore nextTick;
    int connections = 0; // the bench's own
    std::thread thread;
};

} // namespace

class TestServerWatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// A run whose server falls silent ends by itself, within a minute with the limits that workers
    /// have, and afterwards both reports go out once. A long query on a server that still answers
    /// is not broken off.
    void runsEnd()
    {
        const QTemporaryDir temporary;
        qputenv("TMPDIR", temporary.path().toLocal8Bit());
        const LogCapture log;
        constexpr ServerWatch::Limits brief{std::chrono::seconds(1), std::chrono::seconds(1)};
        SilentRun ofWorker("g.name grp", ServerWatch::limitsOfWorkers);
        SilentRun daily("g.name grp", brief);
        SilentRun monthly("pamId FROM people", brief);
        const auto runs = {&daily, &monthly, &ofWorker};
        for (const SilentRun *run : runs)
            QTRY_COMPARE_WITH_TIMEOUT(run->failures(), 1, patienceMs);
        for (SilentRun *run : runs) {
            QTRY_COMPARE_WITH_TIMEOUT(log.countContaining(run->lineOfWatch()), 1, 60000);
            run->answerNextTick();
        }
        for (const SilentRun *run : runs) {
            QTRY_COMPARE_WITH_TIMEOUT(run->mails(), 2, patienceMs);
            QCOMPARE(log.countContaining(run->lineOfWorker()), 1);
            QCOMPARE(log.countContaining(run->lineOfWatch()), 1);
        }
    }
};

QTEST_GUILESS_MAIN(TestServerWatch)
#include "tst_serverwatch.moc"
