#include "plugin/autoreport.h"

#include "support/connectionguard.h"
#include "support/logcapture.h"
#include "support/testhost.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <memory>
#include <vector>

namespace
{

constexpr int patienceMs = 60000;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int promptMs = 10000;
#else
constexpr int promptMs = 2000;
#endif

} // namespace

/// The plug-in with real threads, workers and connections; CTest runs it under both dispatchers.
class TestLifecycle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void startNeedsManager();
    void startStopStart();
    void pauseAndResume();
    void schemasThatCannotBeServed();
    void workerThatCannotStart();
    void singleDatabase();
    void singleDatabaseThatCannotOpen();
    void manySchemas();
    void stopDuringReport_data();
    void stopDuringReport();
    void stopOfTwoHundred();
    void twoPlugins();

private:
    int logged(const char *part) const { return log->countContaining(QString::fromUtf8(part)); }
    int threadCount(const AutoReport &plugin) const
    {
        return plugin.findChildren<QThread *>().size();
    }
    static void beginScan(AutoReport &plugin)
    {
        QVERIFY(QMetaObject::invokeMethod(&plugin, "checkSchemas", Qt::DirectConnection));
    }
    static void scan(AutoReport &plugin)
    {
        beginScan(plugin);
        QTRY_VERIFY_WITH_TIMEOUT(!isScanning(plugin), patienceMs);
    }

    QScopedPointer<LogCapture> log;
};

void TestLifecycle::init()
{
    log.reset(new LogCapture);
}

void TestLifecycle::cleanup()
{
    checkConnections(*log);
    log.reset();
    qunsetenv("TMPDIR");
}

void TestLifecycle::startNeedsManager()
{
    TestHost host;
    AutoReport plugin;
    QVERIFY(!plugin.start());
    QCOMPARE(log->count(QtCriticalMsg,
                        QStringLiteral("!!! AutoReport: Database manager not initialized !!!")),
             1);
    plugin.resume();
    plugin.stop();
    plugin.setDBManager(host.manager());
    QVERIFY(plugin.start());
    QVERIFY(plugin.start());
    QCOMPARE(logged("AutoReport - START ignored, this plugin instance is already started"), 1);
    plugin.stop();
    QCOMPARE(logged("AutoReport - STOP"), 2);
}

void TestLifecycle::startStopStart()
{
    TestHost host;
    TestDatabase schema(TestDatabase::Tables::Schema);
    enableDailyReport(schema);
    host.addSchema(QStringLiteral("firma"), schema);
    AutoReport plugin;
    plugin.setDBManager(host.manager());

    for (int round = 1; round <= 2; ++round) {
        QVERIFY(plugin.start());
        QVERIFY(logged("AutoReport - is info db: YES") == round);
        // The first scan comes by itself, a second after the start.
        QTRY_COMPARE_WITH_TIMEOUT(logged("DailyAttenReport::doWork()"), round, patienceMs);
        QCOMPARE(logged("MonthlyAttenReport::doWork()"), round);
        scan(plugin);
        QCOMPARE(logged("worker created for schema 'firma'"), round);
        QCOMPARE(threadCount(plugin), 1);
        plugin.stop();
        QCOMPARE(logged("AutoReportWorker - stop()"), round);
        QTRY_COMPARE_WITH_TIMEOUT(threadCount(plugin), 0, patienceMs);
    }
    scan(plugin);
    QCOMPARE(logged("worker created"), 2);
}

void TestLifecycle::pauseAndResume()
{
    TestHost host;
    TestDatabase schema(TestDatabase::Tables::Schema);
    enableDailyReport(schema);
    host.addSchema(QStringLiteral("firma"), schema);
    AutoReport plugin;
    plugin.setDBManager(host.manager());
    QVERIFY(plugin.start());
    scan(plugin);
    plugin.pause();
    QTRY_COMPARE_WITH_TIMEOUT(logged("AutoReportWorker - pause() db="), 1, patienceMs);
    plugin.resume();
    QTRY_COMPARE_WITH_TIMEOUT(logged("AutoReportWorker - resume() db="), 1, patienceMs);
    QCOMPARE(logged("AutoReport - PAUSE"), 1);
    QCOMPARE(logged("AutoReport - RESUME"), 1);
    // Destroyed without a stop.
}

void TestLifecycle::schemasThatCannotBeServed()
{
    TestHost host;
    TestDatabase disabled(TestDatabase::Tables::Schema);
    disabled.exec(QStringLiteral("INSERT INTO vars VALUES ('autoReport.DailyAtten.enabled', '2'), "
                                 "('autoReport.MonthlyAtten.enabled', 'true')"));
    TestDatabase withoutTables;
    host.addSchema(QStringLiteral("a-disabled"), disabled);
    host.addSchema(QStringLiteral("b-without-tables"), withoutTables);
    host.infoDatabase().exec(QStringLiteral(
        "INSERT INTO `schemas` (token, name, user, pass, status) VALUES ('c-no-name', '', '', '', "
        "1), ('d-missing', 'no_such_database', 'autoreport', 'c2VjcmV0', 1), ('e''quote', 'x', "
        "'x', "
        "'x', 1)"));
    AutoReport plugin;
    plugin.setDBManager(host.manager());
    plugin.setDebugLevel(1);
    QVERIFY(plugin.start());
    scan(plugin);
    QCOMPARE(threadCount(plugin), 0);
    QCOMPARE(logged("daily=NO, monthly=NO, result=NO"), 1);
    QCOMPARE(logged(") - SQL ERROR: "), 1);
    QCOMPARE(log->count(QtWarningMsg, QStringLiteral("AutoReport::checkSchemas() - invalid "
                                                     "database for token 'c-no-name'")),
             1);
    QCOMPARE(logged("database for token 'd-missing'"), 1);
    QCOMPARE(logged("DBManager:: NOT load scheme from infoDB!"), 1);
    QCOMPARE(logged("active workers: 0 / 5 schemas checked (total schemas: 5)"), 1);

    // The failed connection is known by now: the next scan finds and tries it again.
    scan(plugin);
    QCOMPARE(logged(" - can not open database 'no_such_database': "), 1);
    plugin.stop();
    QSqlDatabase::removeDatabase(
        host.manager()->getConnectionNameFromToken(QStringLiteral("d-missing")));
}

void TestLifecycle::workerThatCannotStart()
{
    TestHost host;
    TestDatabase schema(TestDatabase::Tables::Schema);
    enableDailyReport(schema);
    host.addSchema(QStringLiteral("firma"), schema);
    AutoReport plugin;
    plugin.setDBManager(host.manager());
    const QString taken = QStringLiteral("AutoReport.worker.firma.%1")
                              .arg(reinterpret_cast<quintptr>(&plugin), 0, 16);
    TestServer::addConnection(taken, schema.name());

    QVERIFY(plugin.start());
    scan(plugin);
    QTRY_COMPARE_WITH_TIMEOUT(
        log->count(QtCriticalMsg,
                   QStringLiteral("AutoReportWorker::start() - duplicate connection name '%1'")
                       .arg(taken)),
        1, patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(threadCount(plugin), 0, patienceMs);
    // Worker and thread are gone; the entry stays, so that the schema is not taken up again.
    plugin.pause();
    plugin.resume();
    scan(plugin);
    QCOMPARE(logged("worker created"), 1);
    QVERIFY(QSqlDatabase::contains(taken));
    plugin.stop();
    QSqlDatabase::removeDatabase(taken);
}

void TestLifecycle::singleDatabase()
{
    TestHost host(false);
    TestDatabase schema(TestDatabase::Tables::Schema);
    AutoReport plugin;
    plugin.setDBManager(host.manager());
    plugin.setDatabase(TestServer::addConnection(QStringLiteral("product"), schema.name()));
    QVERIFY(plugin.start());
    QCOMPARE(logged("AutoReport - is info db: NO"), 1);
    QTRY_COMPARE_WITH_TIMEOUT(logged("DailyAttenReport::doWork()"), 1, patienceMs);
    QCOMPARE(threadCount(plugin), 0);
    plugin.pause();
    plugin.resume();
    QCOMPARE(logged("AutoReportWorker - resume() db="), 1);
    plugin.stop();
    QCOMPARE(logged("AutoReportWorker - stop() db="), 1);
    plugin.stop();
    plugin.setDatabase(QSqlDatabase());
    QSqlDatabase::removeDatabase(QStringLiteral("product"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TestLifecycle::singleDatabaseThatCannotOpen()
{
    TestHost host(false);
    AutoReport plugin;
    plugin.setDBManager(host.manager());
    plugin.setDatabase(
        TestServer::addConnection(QStringLiteral("product"), QStringLiteral("no_such_database")));
    QVERIFY(!plugin.start());
    QCOMPARE(logged("AutoReportWorker::start() - can not open DB 'no_such_database' on "), 1);
    QTest::qWait(0); // the worker deletes itself
    QVERIFY(plugin.start());
    QCOMPARE(logged("already started"), 1);
    plugin.stop();
    plugin.setDatabase(QSqlDatabase());
    QSqlDatabase::removeDatabase(QStringLiteral("product"));
}

void TestLifecycle::manySchemas()
{
    constexpr int total = 2500;
    constexpr int enabled = 40;
    TestHost host;
    TestDatabase off(TestDatabase::Tables::Schema);
    TestDatabase on(TestDatabase::Tables::Schema);
    enableDailyReport(on);
    QStringList offTokens;
    QStringList onTokens;
    for (int i = 0; i < total; ++i)
        (i % (total / enabled) == 0 && onTokens.size() < enabled ? onTokens : offTokens)
            .append(QStringLiteral("t%1").arg(i, 4, 10, QLatin1Char('0')));
    host.addSchemas(offTokens, off);
    host.addSchemas(onTokens, on);
    host.manager()->debugLevel = 1;

    AutoReport plugin;
    plugin.setDBManager(host.manager());
    plugin.setDebugLevel(1);
    QVERIFY(plugin.start());
    scan(plugin);
    for (const char *offset : {"0", "1000", "2000"})
        QCOMPARE(
            logged(qPrintable(
                QStringLiteral("loadTokens(limit: 1000, offset: %1)").arg(QLatin1String(offset)))),
            1);
    QCOMPARE(logged("loadTokens(limit"), 3);
    QCOMPARE(logged("active workers: 40 / 2500 schemas checked (total schemas: 2500)"), 1);
    QTRY_COMPARE_WITH_TIMEOUT(logged("AutoReportWorker initialized"), enabled, patienceMs);
    plugin.stop();
    QCOMPARE(logged("AutoReportWorker - stop()"), enabled);
    QTRY_COMPARE_WITH_TIMEOUT(threadCount(plugin), 0, patienceMs);
    for (const QString &name : QSqlDatabase::connectionNames())
        QVERIFY2(!name.startsWith(QLatin1String("AutoReport.")), qPrintable(name));

    // In mid-scan a pause takes the scan back, and a stop gives it up; a resume adds none.
    QVERIFY(plugin.start());
    beginScan(plugin);
    plugin.resume();
    plugin.pause();
    QVERIFY(!isScanning(plugin));
    plugin.resume();
    QTRY_VERIFY_WITH_TIMEOUT(isScanning(plugin), patienceMs);
    plugin.stop();
    QTest::qWait(500);
    QCOMPARE(logged("schemas checked"), 1);
}

void TestLifecycle::stopDuringReport_data()
{
    QTest::addColumn<bool>("byDestruction");
    QTest::newRow("stop") << false;
    QTest::newRow("destruction without stop") << true;
}

void TestLifecycle::stopDuringReport()
{
    QFETCH(bool, byDestruction);
    QTemporaryDir temporary;
    qputenv("TMPDIR", temporary.path().toLocal8Bit());
    TestHost host;
    TestDatabase schema(TestDatabase::Tables::Schema);
    addPeople(schema, peopleForSeconds());
    enableDailyReport(schema, QStringLiteral("a@firma.sk"));
    host.addSchema(QStringLiteral("firma"), schema);
    QScopedPointer<AutoReport> plugin(new AutoReport);
    plugin->setDBManager(host.manager());
    QVERIFY(plugin->start());
    scan(*plugin);
    QTRY_COMPARE_WITH_TIMEOUT(logged("DailyAttenReport::makeReport() people SQL:"), 1, patienceMs);

    QElapsedTimer clock;
    clock.start();
    if (!byDestruction)
        plugin->stop();
    plugin.reset();
    QVERIFY2(clock.elapsed() < promptMs, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(logged("did not stop in time"), 0);
    QCOMPARE(logged("AutoReportWorker - stop()"), 1);
    QCOMPARE(logged("interrupted, nothing saved and no mail"), 1);
    QCOMPARE(schema.value(QStringLiteral("SELECT COUNT(*) FROM emails")).toInt(), 0);
    QVERIFY(!schema
                 .value(QStringLiteral("SELECT value FROM vars WHERE name LIKE "
                                       "'%lastGenerated'"))
                 .isValid());
    QVERIFY(QDir(temporary.path()).isEmpty());
}

/// Half of them in the middle of a report.
void TestLifecycle::stopOfTwoHundred()
{
    constexpr int half = 100;
    QTemporaryDir temporary;
    qputenv("TMPDIR", temporary.path().toLocal8Bit());
    TestHost host;
    TestDatabase idle(TestDatabase::Tables::Schema);
    enableDailyReport(idle);
    std::vector<std::unique_ptr<TestDatabase>> busy;
    QStringList idleTokens;
    for (int i = 0; i < half; ++i) {
        idleTokens << QString("idle%1").arg(i);
        busy.push_back(std::make_unique<TestDatabase>(TestDatabase::Tables::Schema));
        addPeople(*busy.back(), peopleForSeconds());
        enableDailyReport(*busy.back(), "a@firma.sk");
        host.addSchema(QString("late%1").arg(i), *busy.back());
    }
    host.addSchemas(idleTokens, idle);
    AutoReport plugin;
    plugin.setDBManager(host.manager());
    QVERIFY(plugin.start());
    scan(plugin);
    QTRY_COMPARE_WITH_TIMEOUT(logged("DailyAttenReport::makeReport() people SQL:"), half,
                              patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(logged("AutoReportWorker initialized"), 2 * half, patienceMs);

    QElapsedTimer clock;
    clock.start();
    plugin.stop();
    QVERIFY2(clock.elapsed() < promptMs, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(logged("did not stop in time"), 0);
    QCOMPARE(logged("AutoReportWorker - stop()"), 2 * half);
    QCOMPARE(logged("interrupted, nothing saved and no mail"), half);
    QTRY_COMPARE_WITH_TIMEOUT(threadCount(plugin), 0, patienceMs);
    QVERIFY(QDir(temporary.path()).isEmpty());
}

void TestLifecycle::twoPlugins()
{
    TestHost host;
    TestDatabase schema(TestDatabase::Tables::Schema);
    enableDailyReport(schema);
    host.addSchema(QStringLiteral("firma"), schema);
    for (int round = 1; round <= 2; ++round) {
        AutoReport plugin;
        plugin.setDBManager(host.manager());
        QVERIFY(plugin.start());
        scan(plugin);
        // Stopped at once: the worker may not even have begun.
        plugin.stop();
        QCOMPARE(logged("AutoReportWorker - stop()"), round);
    }
}

QTEST_GUILESS_MAIN(TestLifecycle)
#include "tst_lifecycle.moc"
