#include "db/servercertificate.h"
#include "plugin/serverwatch.h"
#include "worker/autoreportworker.h"
#include "worker/connectionguard.h"

#include "support/relay.h"
#include "support/reportbench.h"
#include "support/testhost.h"

/// Workers whose server restarts, drops them or falls silent; on a server of this test's own.
class TestConnection : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    void serverRestarts()
    {
        AutoReportWorker worker(config("MYSQL_OPT_RECONNECT=1"), nullptr);
        QVERIFY(worker.start());
        worker.activateReports();
        QCOMPARE(logged("no people!"), 2);
        server.restart();
        bench->schema.database().close(); // the next statement opens it again

        addPeople(bench->schema, 2);
        for (int tick = 0; tick < 2; ++tick) {
            worker.activateReports();
            QCOMPARE(logged("was lost and reopened"), 1);
            QCOMPARE(bench->mails(), 2);
        }
        worker.stop();
    }

    void silentServer_data()
    {
        addRow("daily", QByteArray("g.name grp"), true);
        addRow("monthly", QByteArray("pamId FROM people"), true);
        addRow("with the limits that workers have", QByteArray("g.name grp"), false);
    }

    /// A run whose server falls silent ends by itself within a minute, and the next one makes both
    /// reports. A long query on a server that still answers is not broken off.
    void silentServer()
    {
        const auto [statement, brief] = fetch<QByteArray, bool>();
        constexpr ServerWatch::Limits seconds{std::chrono::seconds(1), std::chrono::seconds(1)};
        addPeople(bench->schema, 2);
        bench->schema.exec("CREATE TRIGGER slow AFTER INSERT ON emails FOR EACH ROW DO SLEEP(4)");
        Relay relay(TestServer::port());
        relay.failAt({}, statement, Relay::Fault::Freeze);
        AutoReportDbConfig frozen = config();
        frozen.port = relay.port();
        AutoReportWorker worker(frozen, nullptr);
        ServerWatch watch;
        watch.add(frozen, worker.connectionGuard(), brief ? seconds : ServerWatch::limitsOfWorkers);
        QVERIFY(worker.start());
        QElapsedTimer clock;
        clock.start();
        worker.activateReports();
        QVERIFY2(clock.elapsed() < 60000, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(relay.failures(), 1);
        relay.thaw();
        waitUntilGone();
        worker.activateReports();
        QCOMPARE(bench->mails(), 2);
        QCOMPARE(logged("was lost and reopened"), 1);
        const QString line("the server 127.0.0.1:%1 does not answer, connections broken off: 1");
        QCOMPARE(logged(line.arg(relay.port())), 1);
        worker.stop();
    }

    /// The worker reconnects to the next of several servers, and stays there.
    void lostServer()
    {
        auto first = std::make_unique<Relay>(TestServer::port());
        auto second = std::make_unique<Relay>(TestServer::port());
        AutoReportDbConfig both = config();
        both.hostName = QString("127.0.0.1:%1,127.0.0.1:%2").arg(first->port()).arg(second->port());
        AutoReportWorker worker(both, nullptr);
        QVERIFY(worker.start());
        const auto tick = [&] {
            worker.activateReports();
            return logged("DailyAttenReport::doWork()");
        };
        QCOMPARE(tick(), 1);
        first.reset();
        QCOMPARE(tick(), 2);
        first = std::make_unique<Relay>(TestServer::port());
        QCOMPARE(tick(), 3);
        QCOMPARE(logged("was lost and reopened"), 1);
        second.reset();
        QCOMPARE(tick(), 3); // no server is left
        const QString line = bench->log.texts(QtWarningMsg).filter("no connection").join("");
        for (const QString &one : both.hostName.split(','))
            QVERIFY2(line.contains(one + ": "), qPrintable(line));
        worker.stop();
        QCOMPARE(logged("host='127.0.0.1:"), 1);
    }

    /// A server may have it switched off. A tick sees what was stored since the last one, after the
    /// connection was lost, too.
    void withoutAutocommit()
    {
        bench->schema.exec("SET GLOBAL autocommit = 0");
        const auto restore =
            qScopeGuard([this] { bench->schema.exec("SET GLOBAL autocommit = 1"); });
        AutoReportWorker worker(config(), nullptr);
        QVERIFY(worker.start());
        for (int connection = 0; connection < 2; ++connection) {
            makeDue(bench->schema);
            bench->schema.exec("DELETE FROM people");
            worker.activateReports();
            QCOMPARE(bench->mails(), 0);
            addPeople(bench->schema, 2);
            worker.activateReports();
            QCOMPARE(bench->mails(), 2);
            killOthers();
        }
        worker.stop();
        {
            QSqlDatabase manager = TestServer::addConnection("reconnects", bench->schema.name());
            manager.close();
            manager.setConnectOptions("MYSQL_OPT_RECONNECT=1");
            QVERIFY(openTrusted(manager));
            killOthers();
            QSqlQuery query = manager.exec("SELECT @@autocommit");
            QVERIFY(query.next() && query.value(0).toInt() == 1);
        }
        QSqlDatabase::removeDatabase("reconnects");
    }

private:
    void prepare() override
    {
        bench->database.close(); // the worker's connection is the only one besides the schema's own
        enableBothReports(bench->schema, "a@firma.sk");
    }

    AutoReportDbConfig config(const QString &options = {}) const
    {
        const QString schema = bench->schema.name();
        return {"QMYSQL", "worker",         TestServer::host,     TestServer::port(),
                schema,   TestServer::user, TestServer::password, options};
    }
    int logged(const QString &part) const { return bench->log.countContaining(part); }
    void killOthers() const
    {
        const QString id = "SELECT id FROM information_schema.processlist WHERE db = DATABASE() "
                           "AND id <> CONNECTION_ID()";
        bench->schema.exec("KILL " + bench->schema.value(id).toString());
        waitUntilGone();
    }
    /// The server ends a connection, and frees the run's lock, later than the client notices. No
    /// events meanwhile: they could bring the worker's next tick.
    void waitUntilGone() const
    {
        while (bench->schema.connectionsIn("%") > 1)
            QTest::qSleep(10);
    }

    const OwnServer server;
};

QTEST_GUILESS_MAIN(TestConnection)
#include "tst_connection.moc"
