#include "worker/autoreportworker.h"

#include "support/reportbench.h"
#include "support/testhost.h"

/// Workers whose server restarts or drops them; on a server of this test's own.
class TestConnection : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    void lostBetweenTicks_data()
    {
        addColumns<bool, QString>("restart", "options");
        addRow("server restarted, driver reconnects", true, reconnects);
        addRow("server restarted, driver does not", true, "");
        addRow("connection killed, driver reconnects", false, reconnects);
        addRow("connection killed, driver does not", false, "");
    }

    void lostBetweenTicks()
    {
        QFETCH(bool, restart);
        QFETCH(QString, options);
        AutoReportWorker worker(config(options), nullptr);
        QVERIFY(worker.start());
        worker.activateReports();
        QCOMPARE(logged("no people!"), 1);
        restart ? server.restart() : killConnection();
        bench->schema.database().close();

        addPeople(bench->schema, 2);
        for (int tick = 0; tick < 2; ++tick) {
            worker.activateReports();
            QCOMPARE(logged("was lost and made again"), 1);
            QCOMPARE(bench->mails(), 2);
        }
        worker.stop();
    }

    void lostDuringRun_data()
    {
        addColumns<QString, bool, QString>("statements", "byRow", "options");
        const QString reads = R"(
            ALTER TABLE atten_data RENAME records;
            CREATE VIEW atten_data AS SELECT uid, iid, `from`, duration, lose() del FROM records;
            INSERT INTO records (uid, iid, `from`) VALUES (1, 3, UNIX_TIMESTAMP()))";
        const QString queues = "CREATE TRIGGER lost AFTER INSERT ON emails FOR EACH ROW DO lose()";
        addRow("while it reads ahead, driver reconnects", reads, false, reconnects);
        addRow("while it reads row by row, driver reconnects", reads, true, reconnects);
        addRow("while it reads row by row, driver does not", reads, true, "");
        addRow("while it queues, driver reconnects", queues, false, reconnects);
        addRow("while it queues, driver does not", queues, false, "");
    }

    /// A run is not left half done, and the next tick does it whole.
    void lostDuringRun()
    {
        QFETCH(QString, statements);
        QFETCH(bool, byRow);
        QFETCH(QString, options);
        addPeople(bench->schema, 2);
        bench->set("dattenInters", "1");
        bench->schema.exec("CREATE FUNCTION lose() RETURNS INT BEGIN KILL CONNECTION_ID(); "
                           "RETURN 0; END");
        if (byRow)
            slowDown(bench->schema);
        bench->schema.exec(statements);
        AutoReportWorker worker(config(options), nullptr);
        QVERIFY(worker.start());
        worker.activateReports();
        QCOMPARE(logged("database connection lost, no mail queued!"), 1);
        QCOMPARE(bench->mails(), 0);
        QVERIFY(!bench->lastGenerated("DailyAtten").isValid());

        bench->schema.exec("CREATE OR REPLACE FUNCTION lose() RETURNS INT RETURN 0");
        waitUntilGone("TRUE");
        worker.activateReports();
        QCOMPARE(bench->mails(), 2);
        QCOMPARE(logged("was lost and made again"), 1);
        worker.stop();
    }

private:
    void prepare() override
    {
        bench->database.close(); // the worker's connection is the only one besides the schema's own
        enableDailyReport(bench->schema, "a@firma.sk,b@firma.sk");
    }

    AutoReportDbConfig config(const QString &options) const
    {
        const QString schema = bench->schema.name();
        return {"QMYSQL", "worker",         TestServer::host,     TestServer::port(),
                schema,   TestServer::user, TestServer::password, options};
    }
    int logged(const char *part) const { return bench->log.countContaining(part); }
    /// Returns the id of the worker's connection if it is in that state, else 0.
    int connection(const QString &condition) const
    {
        const QString sql = "SELECT id FROM information_schema.processlist WHERE db = DATABASE() "
                            "AND id <> CONNECTION_ID() AND ";
        return bench->schema.value(sql + condition).toInt();
    }
    void killConnection() const
    {
        const QString number = QString::number(connection("TRUE"));
        bench->schema.exec("KILL " + number);
        waitUntilGone("id = " + number);
    }
    /// The client notices at once; the report's lock stays until the server has cleaned up. Without
    /// events, which could bring the worker's next tick.
    void waitUntilGone(const QString &condition) const
    {
        while (connection(condition) != 0)
            QTest::qSleep(10);
    }

    const QString reconnects = "MYSQL_OPT_RECONNECT=1;CLIENT_IGNORE_SPACE=1";
    const OwnServer server;
};

QTEST_GUILESS_MAIN(TestConnection)
#include "tst_connection.moc"
