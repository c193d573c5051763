#include "worker/autoreportworker.h"

#include "support/testhost.h"

#include <QScopeGuard>
#include <QSemaphore>

/// Workers whose server restarts or drops them; on a server of this test's own.
class TestConnection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        qputenv("TMPDIR", server.folder.path().toLocal8Bit());
        log = std::make_unique<LogCapture>();
        schema = std::make_unique<TestDatabase>(TestDatabase::Tables::Schema);
        enableDailyReport(*schema, "a@firma.sk,b@firma.sk");
    }

    void cleanup()
    {
        schema.reset();
        log.reset();
    }

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
        schema->database().close();

        addPeople(*schema, 2);
        for (int tick = 0; tick < 2; ++tick) {
            worker.activateReports();
            QCOMPARE(logged("was lost and made again"), 1);
            QCOMPARE(mails(), 2);
        }
        worker.stop();
    }

    void lostDuringRun_data()
    {
        addColumns<QString, QString, QString>("statement", "at", "options");
        addRow("while it reads", "DO 0", "FROM atten", reconnects);
        addRow("while it reads, for good", "DO 0", "FROM atten", "");
        addRow("while it reads ahead", "LOCK TABLES atten_data WRITE", "FROM atten_data",
               reconnects);
        addRow("while it queues",
               "CREATE TRIGGER slow AFTER INSERT ON emails FOR EACH ROW DO SLEEP(0.5)",
               "User sleep", reconnects);
    }

    /// A run is not left half done, and the next tick does it whole.
    void lostDuringRun()
    {
        QFETCH(QString, statement);
        QFETCH(QString, at);
        QFETCH(QString, options);
        addPeople(*schema, at == "FROM atten" ? peopleForSeconds() : 2);
        if (at == "FROM atten")
            slowDown(*schema);
        schema->exec(statement);
        QSemaphore nextTick;
        std::thread run([this, &nextTick, &options] {
            AutoReportWorker worker(config(options), nullptr);
            worker.start();
            worker.activateReports();
            nextTick.acquire();
            worker.activateReports();
            worker.stop();
        });
        auto end = qScopeGuard([&] {
            nextTick.release();
            run.join();
        });
        // Not the first statement: losing that one looks like an empty result.
        const QString isAtIt = QString("CONCAT_WS(' ', state, info) LIKE '%%1%'").arg(at);
        QVERIFY(QTest::qWaitFor([&] { return connection(isAtIt) != 0; }, patienceMs));
        killConnection();
        schema->exec("UNLOCK TABLES");
        QTRY_COMPARE_WITH_TIMEOUT(logged("database connection lost, no mail queued!"), 1,
                                  patienceMs);
        QCOMPARE(mails(), 0);
        QVERIFY(!schema->value("SELECT 1 FROM vars WHERE name LIKE '%lastGenerated'").isValid());

        end.dismiss();
        nextTick.release();
        run.join();
        QCOMPARE(mails(), 2);
        QCOMPARE(logged("was lost and made again"), 1);
    }

private:
    AutoReportDbConfig config(const QString &options) const
    {
        return {"QMYSQL",       "worker",         TestServer::host,     TestServer::port(),
                schema->name(), TestServer::user, TestServer::password, options};
    }
    int logged(const char *part) const { return log->countContaining(part); }
    int mails() const { return schema->value("SELECT COUNT(*) FROM emails").toInt(); }
    /// Returns the id of the worker's connection if it is in that state, else 0.
    int connection(const QString &condition) const
    {
        const QString sql = "SELECT id FROM information_schema.processlist WHERE db = DATABASE() "
                            "AND id <> CONNECTION_ID() AND ";
        return schema->value(sql + condition).toInt();
    }
    void killConnection() const
    {
        const QString number = QString::number(connection("TRUE"));
        schema->exec("KILL " + number);
        // The client notices at once; the report's lock stays until the server has cleaned up.
        while (connection("id = " + number) != 0)
            QTest::qSleep(10); // without events, which could bring the worker's next tick
    }

    const QString reconnects = "MYSQL_OPT_RECONNECT=1;CLIENT_IGNORE_SPACE=1";
    const OwnServer server;
    std::unique_ptr<LogCapture> log;
    std::unique_ptr<TestDatabase> schema;
};

QTEST_GUILESS_MAIN(TestConnection)
#include "tst_connection.moc"
