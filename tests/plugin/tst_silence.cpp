#include "support/plugintest.h"
#include "support/relay.h"

constexpr int stopMs = 12000;

/// The plug-in while its server neither answers nor closes.
class TestSilence : public PluginTest
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        relay->thaw();
        PluginTest::cleanup();
        relay.reset();
        schemas.clear();
    }

    void stopsWorkersThatWait_data()
    {
        // Statements, each with its number among those alike on the connections to its database;
        // the first two logins are the scan's and the manager's. In each row, no more workers wait
        // in a report than may run at a time on two cores.
        addRow("first", "3 login|2 SELECT CONNECTION_ID()|1 GET_LOCK('Monthly|1 g.name grp|"
                        "1 INSERT INTO emails|2 COMMIT");
        addRow("second", "1 GET_LOCK('Daily|1 pamId FROM people|2 INSERT INTO emails|"
                         "1 RELEASE_LOCK('Monthly");
    }

    /// Each worker waits at a different place, the last one at the gate; one stop ends them all,
    /// and the next start makes every report that is not out yet.
    void stopsWorkersThatWait()
    {
        const auto [moments] = fetch<QString>();
        for (const QString &moment : moments.split('|')) {
            addSchema();
            relay->failAt(schemas.back()->name().toUtf8(), moment.section(' ', 1).toUtf8(),
                          Relay::Fault::Silence, moment.section(' ', 0, 0).toInt());
        }
        addSchema();
        const int workers = static_cast<int>(schemas.size());
        QVERIFY(plugin->start());
        QVERIFY(logs("worker created", workers));
        QTRY_COMPARE_WITH_TIMEOUT(relay->failures(), workers - 1, patienceMs);

        stopWithin(stopMs);
        QCOMPARE(logged("did not stop in time"), 0);
        relay->thaw();
        QTRY_COMPARE_WITH_TIMEOUT(threads(), 0, patienceMs);
        QVERIFY(plugin->start());
        for (const auto &database : schemas)
            QTRY_COMPARE_WITH_TIMEOUT(database->mails(), 2, patienceMs);
        plugin->stop();
    }

    void scan_data()
    {
        addRow("asks for a schema's row", QByteArray("SELECT * FROM `schemas`"), 2);
        addRow("opens the manager's connection", QByteArray("SELECT ? + ?"), 1);
        addRow("asks whether a report is on", QByteArray("MonthlyAtten.enabled')"), 2);
    }

    /// A scan gives up within seconds, and stop, pause and resume still work.
    void scan()
    {
        const auto [statement, ordinal] = fetch<QByteArray, int>();
        for (int i = 0; i < 3; ++i)
            addSchema();
        relay->failAt({}, statement, Relay::Fault::Freeze, ordinal);
        QVERIFY(plugin->start()); // the scan comes a second later
        QElapsedTimer clock;
        clock.start();
        QVERIFY(logs("the server does not answer: the scan ends"));
        QVERIFY2(clock.elapsed() < stopMs, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(!isScanning(*plugin));
        stopWithin(stopMs);
        relay->thaw();
        const int before = logged("AutoReportWorker initialized");
        QVERIFY(plugin->start());
        QVERIFY(logs("AutoReportWorker initialized", before + 3));
        plugin->stop();
    }

private:
    void prepare() override
    {
        relay = std::make_unique<Relay>(TestServer::port());
        QSqlDatabase info = QSqlDatabase::database("KVH.InfoDB", false);
        info.close();
        info.setPort(relay->port());
        host->manager()->setInfoDB(info);
        QVERIFY(host->manager()->checkOpenDB(info));
    }

    /// A schema with both reports due, for one recipient each.
    void addSchema()
    {
        schemas.push_back(std::make_unique<TestDatabase>(TestDatabase::Tables::Schema));
        addPeople(*schemas.back(), 2);
        enableBothReports(*schemas.back(), "a@firma.sk");
        host->addSchemas({QString("firma%1").arg(schemas.size())}, *schemas.back());
    }

    std::unique_ptr<Relay> relay;
    std::vector<std::unique_ptr<TestDatabase>> schemas;
};

QTEST_GUILESS_MAIN(TestSilence)
#include "tst_silence.moc"
