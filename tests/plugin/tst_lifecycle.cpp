#include "plugin/buildstamp.h"

#include "support/fullgate.h"
#include "support/plugintest.h"

#include <algorithm>

constexpr int promptMs = sanitized ? 10000 : 2000;

/// The plug-in with real threads, workers and connections; CTest runs it under both dispatchers.
/// The host lists one schema, "firma", whose daily report is on.
class TestLifecycle : public PluginTest
{
    Q_OBJECT

private Q_SLOTS:
    void buildMoment() { QCOMPARE(buildStamp("Mar  5 2024", "23:05:00"), QString("2403052305")); }

    void startStopStart()
    {
        plugin->stop();
        QCOMPARE(logged("AutoReport - STOP"), 1);
        for (int round = 1; round <= 2; ++round) {
            QVERIFY(plugin->start() && plugin->start());
            QCOMPARE(logged("already started"), round);
            // The first scan comes by itself, a second after the start.
            QVERIFY(logs("DailyAttenReport::doWork()", round));
            QCOMPARE(logged("MonthlyAttenReport::doWork()"), round);
            scan();
            QCOMPARE(logged("worker created for schema 'firma'"), round);
            QCOMPARE(threads(), 1);
            plugin->stop();
            QCOMPARE(logged("AutoReportWorker - stop()"), round);
            QTRY_COMPARE_WITH_TIMEOUT(threads(), 0, patienceMs);
        }
        scan();
        QCOMPARE(logged("worker created"), 2);

        // Stopped and destroyed at once: the worker may not even have begun.
        for (int round = 3; round <= 4; ++round) {
            QVERIFY(plugin->start());
            scan();
            if (round == 3)
                plugin->stop();
            else
                plugin.reset();
            QCOMPARE(logged("AutoReportWorker - stop()"), round);
        }
    }

    /// Nobody would be served for an hour if a host started while its server restarts.
    void scanIsRepeatedSoon()
    {
        host->infoDatabase().exec("RENAME TABLE `schemas` TO away");
        QVERIFY(plugin->start());
        QVERIFY(logs("the table schemas cannot be read: "));
        auto *soon = plugin->findChild<QTimer *>("soonScan");
        QVERIFY(soon->isActive() && soon->interval() == 60000);
        plugin->pause();
        QVERIFY(!soon->isActive());
        host->infoDatabase().exec("RENAME TABLE away TO `schemas`");
        plugin->resume();
        QVERIFY(logs("worker created for schema 'firma'"));
        scan();
        QVERIFY(!soon->isActive());

        // A registry without schemas is no error, though the manager closes it after each query.
        host->manager()->setCloseInfoDB(true);
        host->infoDatabase().exec("DELETE FROM `schemas`");
        scan();
        QVERIFY(!soon->isActive());
        QCOMPARE(logged("the scan ends at schema"), 1);
        host->manager()->setCloseInfoDB(false);
    }

    void schemasThatCannotBeServed()
    {
        // A report is on in the host's own databases: using one as a schema would make a worker.
        TestServer::addConnection(QSqlDatabase::defaultConnection, schema->name());
        host->manager()->setZasDB(schema->database());
        const TestDatabase off(TestDatabase::Tables::Schema);
        off.exec("INSERT INTO vars VALUES ('autoReport.DailyAtten.enabled', '2'), "
                 "('autoReport.MonthlyAtten.enabled', 'true')");
        host->addSchemas({"off"}, off);
        const TestDatabase withoutTables;
        host->addSchemas({"without-tables"}, withoutTables);
        host->infoDatabase().addSchemas({"missing"}, "no_such_database");
        host->infoDatabase().addSchemas({"no-name"}, QString());
        host->infoDatabase().addSchemas({"e''quote", ""}, "x");
        host->infoDatabase().addSchemas({"no-user"}, schema->name());
        host->infoDatabase().exec("UPDATE `schemas` SET user = '' WHERE token = 'no-user'");
        plugin->setDebugLevel(1);
        QVERIFY(plugin->start());
        scan();
        QCOMPARE(threads(), 1); // of "firma"
        QCOMPARE(logged("database for token 'missing'"), 1);
        QCOMPARE(logged("invalid database for token"), 5);
        QCOMPARE(logged("active workers: 1 / 8 schemas checked (total schemas: 8)"), 1);

        // The failed connection is known by now: the next scan finds and tries it again.
        scan();
        QCOMPARE(logged(" - can not open database 'no_such_database': "), 1);
        plugin->stop();
        QSqlDatabase::removeDatabase(host->manager()->getConnectionNameFromToken("missing"));
        host->manager()->setZasDB(QSqlDatabase());
        QSqlDatabase::removeDatabase(QSqlDatabase::defaultConnection);
    }

    void workerThatCannotStart()
    {
        const auto address = reinterpret_cast<quintptr>(plugin.get());
        const QString taken = QString("AutoReport.worker.firma.%1").arg(address, 0, 16);
        TestServer::addConnection(taken, schema->name());
        QVERIFY(plugin->start());
        scan();
        QVERIFY(logs("AutoReportWorker::start() - duplicate connection name 'AutoReport."));
        QTRY_COMPARE_WITH_TIMEOUT(threads(), 0, patienceMs);
        // Worker and thread are gone; the entry stays, so that the schema is not taken up again.
        plugin->pause();
        plugin->resume();
        scan();
        QCOMPARE(logged("worker created"), 1);
        QVERIFY(QSqlDatabase::contains(taken));
        plugin->stop();
        QSqlDatabase::removeDatabase(taken);
    }

    void singleDatabase()
    {
        setUp(false);
        QSqlDatabase product = TestServer::addConnection("product", "no_such_database");
        plugin->setDatabase(product);
        QVERIFY(!plugin->start());
        QCOMPARE(logged("AutoReportWorker::start() - can not open DB 'no_such_database' on '"), 1);
        QTest::qWait(0); // the worker deletes itself
        plugin->stop();
        product.setDatabaseName(schema->name());
        plugin->setDatabase(product);
        QVERIFY(plugin->start());
        QVERIFY(logs("DailyAttenReport::doWork()"));
        QCOMPARE(threads(), 0);
        plugin->pause();
        plugin->resume();
        for (const char *part : {"pause() db=", "resume() db="})
            QCOMPARE(logged(QString("AutoReportWorker - ") + part), 1);
        plugin->stop();
        QCOMPARE(logged("AutoReportWorker - stop() db="), 1);
        plugin->setDatabase(QSqlDatabase());
        product = QSqlDatabase();
        QSqlDatabase::removeDatabase("product");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void manySchemas()
    {
        constexpr int total = 2500;
        constexpr int enabled = 40;
        const TestDatabase off(TestDatabase::Tables::Schema);
        QStringList offTokens;
        QStringList onTokens; // besides "firma", and among the others
        for (int i = 1; i < total; ++i)
            (i % (total / enabled) == 0 && onTokens.size() < enabled - 1 ? onTokens : offTokens)
                .append(QString("t%1").arg(i, 4, 10, QChar('0')));
        host->addSchemas(offTokens, off);
        host->addSchemas(onTokens, *schema);
        host->manager()->debugLevel = 1;
        plugin->setDebugLevel(1);
        QVERIFY(plugin->start());
        scan();
        for (const char *offset : {"0", "1000", "2000"})
            QCOMPARE(logged(QString("loadTokens(limit: 1000, offset: %1)").arg(offset)), 1);
        QCOMPARE(logged("loadTokens(limit"), 3);
        QCOMPARE(logged("active workers: 40 / 2500 schemas checked (total schemas: 2500)"), 1);
        QVERIFY(logs("AutoReportWorker initialized", enabled));
        plugin->stop();
        QCOMPARE(logged("AutoReportWorker - stop()"), enabled);
        QTRY_COMPARE_WITH_TIMEOUT(threads(), 0, patienceMs);
        QCOMPARE(QSqlDatabase::connectionNames().filter("AutoReport."), QStringList());

        // In the middle of a scan, a pause postpones it and a stop discards it; a resume adds none.
        QVERIFY(plugin->start());
        beginScan();
        plugin->resume();
        plugin->pause();
        QVERIFY(!isScanning(*plugin));
        plugin->resume();
        QTRY_VERIFY_WITH_TIMEOUT(isScanning(*plugin), patienceMs);
        plugin->stop();
        QTest::qWait(500);
        QCOMPARE(logged("schemas checked"), 1);
    }

    /// As many workers as may run at a time are in the middle of a report, all others at the gate.
    void stopDuringReports()
    {
        constexpr int workers = 200;
        FullGate gate;
        const int running = gate.size();
        enableDailyReport(*schema, "a@firma.sk");
        std::vector<std::unique_ptr<TestDatabase>> busy;
        busy.push_back(std::move(schema)); // "firma"
        for (int i = 1; i < running; ++i) {
            busy.push_back(std::make_unique<TestDatabase>(TestDatabase::Tables::Schema));
            enableDailyReport(*busy.back(), "a@firma.sk");
            host->addSchemas({QString("busy%1").arg(i)}, *busy.back());
        }
        // Enough people for a report of seconds, early in a month too. Keys that are no integers
        // keep it from reading ahead.
        for (const auto &database : busy) {
            addPeople(*database, std::max(1000, 21000 / QDate::currentDate().day()));
            database->exec("ALTER TABLE atten MODIFY uid DECIMAL(10) NOT NULL;\n"
                           "ALTER TABLE atten_data MODIFY uid DECIMAL(10) NOT NULL");
        }
        schema = std::make_unique<TestDatabase>(TestDatabase::Tables::Schema);
        enableDailyReport(*schema, "a@firma.sk");
        addPeople(*schema, 2);
        QVERIFY(plugin->start());
        scan();
        QVERIFY(logs("DailyAttenReport::doWork()", running)); // at the gate ahead of the others
        for (int i = running; i < workers; ++i)
            host->addSchemas({QString("late%1").arg(i)}, *schema);
        scan();
        QVERIFY(logs("DailyAttenReport::doWork()", workers));
        gate.open();
        QVERIFY(logs("DailyAttenReport::makeReport() people SQL:", running));
        // That statement cannot be broken off, and is long when the month is young and people many.
        const QString isAtPeople = "SELECT 1 FROM information_schema.processlist WHERE info LIKE "
                                   "'SELECT uid, pid, CONCAT%'";
        // Not QTRY_VERIFY: it evaluates the condition again, when another worker may have begun.
        QVERIFY(QTest::qWaitFor([&] { return !schema->value(isAtPeople).isValid(); }, patienceMs));

        stopWithin(promptMs);
        QCOMPARE(logged("did not stop in time"), 0);
        QCOMPARE(logged("AutoReportWorker - stop()"), workers);
        QCOMPARE(logged("interrupted, nothing saved and no mail"), running);
        QCOMPARE(logged("people SQL:"), running);
        busy.push_back(std::move(schema));
        const QString written = "SELECT (SELECT COUNT(*) FROM emails) + (SELECT COUNT(*) FROM vars "
                                "WHERE name LIKE '%lastGenerated')";
        for (const auto &database : busy)
            QCOMPARE(database->value(written).toInt(), 0);
        QVERIFY(QDir(temporary->path()).isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(threads(), 0, patienceMs);
    }

private:
    void prepare() override
    {
        enableDailyReport(*schema);
        host->addSchemas({"firma"}, *schema);
    }
};

QTEST_GUILESS_MAIN(TestLifecycle)
#include "tst_lifecycle.moc"
