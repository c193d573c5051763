#include "plugin/workerhandle.h"
#include "worker/autoreportworker.h"

#include "support/connectionguard.h"
#include "support/logcapture.h"
#include "support/testhost.h"

#include <QProcess>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

namespace
{

constexpr int patienceMs = 60000;

bool server(const char *command, const QString &folder)
{
    return QProcess::execute(AUTOREPORT_PRIVATE_MARIADB, {command, folder}) == 0;
}

} // namespace

/// Workers whose server restarts or drops them; on a server of this test's own.
class TestConnection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { QVERIFY(server("stop", serverFolder)); }
    void init();
    void cleanup();
    void lostBetweenTicks_data();
    void lostBetweenTicks();
    void lostDuringRun_data();
    void lostDuringRun();

private:
    AutoReportDbConfig config(const QString &options) const
    {
        AutoReportDbConfig config;
        config.driverName = "QMYSQL";
        config.connectionName = "worker";
        config.hostName = TestServer::host();
        config.port = TestServer::port();
        config.databaseName = schema->name();
        config.userName = TestServer::user();
        config.password = TestServer::password();
        config.connectOptions = options;
        return config;
    }
    int logged(const char *part) const { return log->countContaining(part); }
    int mails() const { return schema->value("SELECT COUNT(*) FROM emails").toInt(); }
    void killConnection() const
    {
        const QVariant id = schema->value(QString("SELECT id FROM information_schema.processlist "
                                                  "WHERE db = '%1' AND id <> CONNECTION_ID()")
                                              .arg(schema->name()));
        QVERIFY(id.isValid());
        schema->exec("KILL " + id.toString());
    }

    QTemporaryDir folder;
    QString serverFolder = folder.filePath("server");
    QScopedPointer<LogCapture> log;
    QScopedPointer<TestDatabase> schema;
};

void TestConnection::initTestCase()
{
    QVERIFY(server("start", serverFolder));
    qputenv("AUTOREPORT_TEST_SERVER", serverFolder.toLocal8Bit());
    qputenv("TMPDIR", folder.path().toLocal8Bit());
}

void TestConnection::init()
{
    log.reset(new LogCapture);
    schema.reset(new TestDatabase(TestDatabase::Tables::Schema));
    enableDailyReport(*schema, "a@firma.sk,b@firma.sk");
}

void TestConnection::cleanup()
{
    schema.reset();
    checkConnections(*log);
    log.reset();
}

void TestConnection::lostBetweenTicks_data()
{
    QTest::addColumn<bool>("restart");
    QTest::addColumn<QString>("options");
    for (const char *options : {"MYSQL_OPT_RECONNECT=1;CLIENT_IGNORE_SPACE=1", ""}) {
        const char *how = *options ? "driver reconnects" : "driver does not";
        QTest::addRow("server restarted, %s", how) << true << QString(options);
        QTest::addRow("connection killed, %s", how) << false << QString(options);
    }
}

void TestConnection::lostBetweenTicks()
{
    QFETCH(bool, restart);
    QFETCH(QString, options);
    AutoReportWorker worker(config(options), nullptr);
    QVERIFY(worker.start());
    worker.activateReports();
    QCOMPARE(logged("no people!"), 1);
    if (restart)
        QVERIFY(server("restart", serverFolder));
    else
        killConnection();
    schema->database().close();
    QVERIFY(schema->database().open());

    addPeople(*schema, 2);
    worker.activateReports();
    QCOMPARE(logged("was lost and made again"), 1);
    QCOMPARE(mails(), 2);
    worker.activateReports();
    QCOMPARE(logged("was lost and made again"), 1);
    QCOMPARE(mails(), 2);
    worker.stop();
}

void TestConnection::lostDuringRun_data()
{
    QTest::addColumn<QString>("where");
    QTest::addColumn<QString>("options");
    QTest::newRow("while it reads") << "people SQL:"
                                    << "MYSQL_OPT_RECONNECT=1";
    QTest::newRow("while it reads, for good") << "people SQL:"
                                              << "";
    QTest::newRow("while it queues") << "first mail"
                                     << "MYSQL_OPT_RECONNECT=1";
}

/// Nothing is done half, and the next tick does it whole.
void TestConnection::lostDuringRun()
{
    QFETCH(QString, where);
    QFETCH(QString, options);
    const bool queueing = where == "first mail";
    addPeople(*schema, queueing ? 2 : peopleForSeconds());
    if (queueing)
        schema->exec("CREATE TRIGGER slow AFTER INSERT ON emails FOR EACH ROW DO SLEEP(0.5)");
    auto *worker = new AutoReportWorker(config(options), nullptr);
    QThread thread;
    WorkerHandle handle(worker);
    const auto end = qScopeGuard([&] {
        handle.post("stop");
        thread.wait();
    });
    worker->moveToThread(&thread);
    connect(&thread, &QThread::started, worker, &AutoReportWorker::start);
    connect(worker, &AutoReportWorker::finished, worker, &QObject::deleteLater);
    connect(
        worker, &AutoReportWorker::finished, worker,
        [&] {
            handle.clear();
            thread.quit();
        },
        Qt::DirectConnection);
    thread.start();
    if (queueing) {
        QTRY_COMPARE_WITH_TIMEOUT(
            schema
                ->value("SELECT COUNT(*) FROM information_schema.processlist WHERE info LIKE "
                        "'INSERT INTO emails%' OR state = 'User sleep'")
                .toInt(),
            1, patienceMs);
    } else {
        QTRY_COMPARE_WITH_TIMEOUT(log->countContaining(where), 1, patienceMs);
    }
    killConnection();
    QTRY_COMPARE_WITH_TIMEOUT(logged("database connection lost, no mail queued!"), 1, patienceMs);
    QCOMPARE(mails(), 0);
    QVERIFY(!schema->value("SELECT 1 FROM vars WHERE name LIKE 'autoReport.%.lastGenerated'")
                 .isValid());

    handle.post("activateReports");
    QTRY_COMPARE_WITH_TIMEOUT(mails(), 2, patienceMs);
    QCOMPARE(logged("was lost and made again"), 1);
}

QTEST_GUILESS_MAIN(TestConnection)
#include "tst_connection.moc"
