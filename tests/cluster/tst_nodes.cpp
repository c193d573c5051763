#include "plugin/serverwatch.h"
#include "reports/attenreport.h"
#include "reports/reportkind.h"
#include "reports/reportrun.h"
#include "worker/autoreportworker.h"
#include "worker/connectionguard.h"

#include "support/hostprogram.h"
#include "support/relay.h"
#include "support/reportbench.h"
#include "support/testcluster.h"
#include "support/testhost.h"

#include <QThread>

#include <atomic>
#include <thread>

/**
 * Runs and connections at the nodes of a cluster.
 *
 * AUTOREPORT_CLUSTER_ROUNDS sets how often each race is run: 10 is the long form.
 */
class TestNodes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Runs that are past the schedule meet at the row "lastGenerated".
    void oneOfThree_data()
    {
        // The first statement is for the table, the second for each race.
        addColumns<QString, QString, QString, int, int>("table", "row", "isolation", "secondsApart",
                                                        "jitterMs");
        const QString repeatable("REPEATABLE READ");
        const QString none("DO 0");
        const QString old("INSERT INTO vars (name, value) VALUES ('%1', '86400')");
        addRow("no row", none, none, repeatable, 0, 0);
        addRow("row of a day before", none, old, repeatable, 0, 0);
        addRow("READ COMMITTED", none, none, QString("READ COMMITTED"), 0, 0);
        addRow("one after the other", none, none, repeatable, 0, 40);
        addRow("clocks apart", none, old, repeatable, 60, 40);
        addRow("numbered rows",
               QString("ALTER TABLE vars DROP PRIMARY KEY, ADD UNIQUE (name), ADD id INT NOT NULL "
                       "AUTO_INCREMENT PRIMARY KEY"),
               none, repeatable, 0, 20);
    }

    void oneOfThree()
    {
        QFETCH(QString, table);
        QFETCH(QString, row);
        ReportBench bench;
        writeFile(bench.temporary.filePath("book.xlsx"), "workbook");
        bench.schema.exec("SET SESSION wsrep_sync_wait = 1");
        bench.schema.exec(table);
        for (int round = 0; round < 10 * rounds; ++round) {
            const ReportKind &kind = *reportKinds().at(round % reportKinds().size());
            bench.schema.exec("START TRANSACTION;\nDELETE FROM emails;\nDELETE FROM vars");
            bench.schema.exec(QString(row).replace("%1", kind.key("lastGenerated")));
            bench.schema.exec("COMMIT");
            const int queued = race(bench, kind);
            QCOMPARE(bench.mails(), recipients);
            QCOMPARE(queued, recipients);
            QCOMPARE(bench.schema.value("SELECT COUNT(*) FROM vars WHERE value > 86400").toInt(),
                     1);
        }
        // Each of the others says so, and some have met at the row.
        const int rolledBack = bench.log.countContaining("the server rolled the run back");
        QCOMPARE(rolledBack + bench.log.countContaining("is making this report") +
                     bench.log.countContaining("has made this report"),
                 10 * rounds * (nodes - 1));
        QVERIFY(rolledBack > 0);
        QVERIFY(bench.log.texts(QtWarningMsg).isEmpty());
        QVERIFY(bench.log.texts(QtCriticalMsg).isEmpty());
    }

    /// A host waits at each statement of its tick, until another one has made what is not
    /// committed.
    void fasterHostAtEachStatement()
    {
        ReportBench bench;
        addPeople(bench.schema, 3);
        enableBothReports(bench.schema, "a@firma.sk,b@firma.sk,c@firma.sk");
        Relay relay(cluster.port(0));
        const auto tickAt = [&bench](const QString &name, int port) {
            AutoReportWorker host(configOf(QString("%1:%2").arg(TestServer::host).arg(port),
                                           bench.schema.name(), name),
                                  nullptr);
            if (host.start())
                host.activateReports();
            host.stop();
        };
        int point = 0;
        do {
            makeDue(bench.schema);
            for (int node = 0; node < nodes - 1; ++node)
                cluster.catchUp(node, bench.schema.name());
            relay.failAt(bench.schema.name().toUtf8(), "", Relay::Fault::Silence, ++point);
            const std::unique_ptr<QThread> slow(
                QThread::create([&] { tickAt("slow", relay.port()); }));
            slow->start();
            const auto waits = [&] {
                return relay.failures() == point || slow->isFinished();
            };
            QVERIFY(QTest::qWaitFor(waits, patienceMs));
            tickAt("fast", cluster.port(1));
            relay.thaw();
            QVERIFY(slow->wait(patienceMs));
            checkMadeOnce(bench);
        } while (relay.failures() == point && !QTest::currentTestFailed());
        QTest::setBenchmarkResult(point - 1, QTest::Events); // printed
        QVERIFY(point > 30);
        QVERIFY(bench.log.countContaining("the server rolled the run back") > 0);
        QVERIFY(bench.log.texts(QtCriticalMsg).isEmpty());
    }

    void frozenNode_data()
    {
        QTest::addColumn<QByteArray>("statement");
        addRow("at a mail", QByteArray("INSERT INTO emails"));
        addRow("at the commit", QByteArray("COMMIT"));
    }

    /// A host's node falls silent in mid-run. It executes what it was sent when it goes on, after
    /// the host has made the reports at another node.
    void frozenNode()
    {
        QFETCH(QByteArray, statement);
        ReportBench bench;
        addPeople(bench.schema, 3);
        enableBothReports(bench.schema, "a@firma.sk,b@firma.sk,c@firma.sk");
        Relay relay(cluster.port(0));
        relay.failAt(bench.schema.name().toUtf8(), statement, Relay::Fault::Silence);
        cluster.catchUp(0, bench.schema.name());
        const std::unique_ptr<QThread> thread(QThread::create([&] {
            const AutoReportDbConfig config = configOf(
                QString("%1:%2,%3").arg(TestServer::host).arg(relay.port()).arg(cluster.servers(1)),
                bench.schema.name());
            AutoReportWorker host(config, nullptr);
            ServerWatch watch;
            watch.add(config, host.connectionGuard(),
                      {std::chrono::seconds(1), std::chrono::seconds(1)});
            if (host.start())
                host.activateReports();
            host.activateReports();
            host.stop();
        }));
        thread->start();
        QTRY_COMPARE_WITH_TIMEOUT(relay.failures(), 1, patienceMs);
        cluster.run("freeze", 0);
        relay.thaw(); // the statement reaches the node's socket
        QVERIFY(thread->wait(patienceMs));
        cluster.run("thaw", 0);
        checkMadeOnce(bench);
        QCOMPARE(bench.log.countContaining("does not answer, connections broken off: 1"), 1);
        QCOMPARE(bench.log.countContaining("was lost and reopened"), 1);
    }

    void checkNames()
    {
        const TestDatabase schema(TestDatabase::Tables::Schema);
        schema.exec("INSERT INTO vars VALUES ('autoReport.DailyAtten.enabled', '1');\n"
                    "CREATE TABLE notes (note INT) ENGINE=InnoDB;\n"
                    "CREATE TABLE texts (id INT PRIMARY KEY) ENGINE=Aria");
        HostProgram program;
        QStringList options = TestServer::options(schema.name());
        options[options.indexOf("--db-host") + 1] = "127.0.0.1:1," + cluster.servers(2);
        program.start(QStringList{"check", "--json", "--single"} + options);
        QVERIFY(program.ended());
        const QJsonObject found = QJsonDocument::fromJson(program.output().toUtf8()).object();
        QCOMPARE(found["server"].toString(), QString("node3, one of 3 nodes"));
        QStringList texts;
        for (const QJsonValue finding : found["findings"].toArray())
            texts += finding["text"].toString();
        QCOMPARE(texts.filter("no primary key").join(""),
                 QString("table notes has no primary key: two nodes may change the same row "
                         "without noticing"));
        QCOMPARE(texts.filter("not InnoDB").join(""),
                 QString("table texts is not InnoDB: the cluster does not copy its rows to the "
                         "other nodes"));
    }

    /// It accepts connections, and refuses every table. Commands name it or use the next node, to
    /// which a worker's open connection moves, too.
    void isolatedNode()
    {
        ReportBench bench;
        cluster.catchUp(0, bench.schema.name());
        AutoReportWorker host(configOf(cluster.servers(0), bench.schema.name()), nullptr);
        QVERIFY(host.start());
        QSqlDatabase node = TestServer::addConnection("isolated", QString());
        node.setPort(cluster.port(0));
        QVERIFY(node.open());
        node.exec("SET GLOBAL wsrep_provider_options = 'gmcast.isolate = 1'");
        const auto isolated = [&node] {
            QSqlQuery state = node.exec("SHOW STATUS LIKE 'wsrep_ready'");
            return state.next() && state.value(1).toString() == "OFF";
        };
        QVERIFY(QTest::qWaitFor(isolated, patienceMs));
        host.activateReports();
        QCOMPARE(bench.log.countContaining("was lost and reopened"), 1);
        const QString log =
            checkAt(QString("%1:1,%1:%2").arg(TestServer::host).arg(cluster.port(0))).log;
        QVERIFY2(log.contains("127.0.0.1:1: Can't connect") &&
                     log.contains("node node1 of the cluster is not ready: non-Primary"),
                 qPrintable(log));
        const QString next = checkAt(cluster.servers(0)).output;
        QVERIFY2(next.contains("node2"), qPrintable(next));
        host.stop();
        node.exec("SET GLOBAL wsrep_provider_options = 'gmcast.isolate = 0'");
        node = QSqlDatabase();
        QSqlDatabase::removeDatabase("isolated");
        cluster.catchUp(0, "mysql");
    }

private:
    static constexpr int nodes = TestCluster::nodes;
    static constexpr int recipients = 40; // so that the mails of all runs overlap
    const int rounds = qEnvironmentVariable("AUTOREPORT_CLUSTER_ROUNDS", "2").toInt();

    static AutoReportDbConfig configOf(const QString &servers, const QString &schema,
                                       const QString &connection = "host")
    {
        return {"QMYSQL",         connection,           servers, 0, schema,
                TestServer::user, TestServer::password, ""};
    }

    struct Checked {
        QString output;
        QString log;
    };

    /// Runs the command `check` on the servers.
    static Checked checkAt(const QString &servers)
    {
        HostProgram program;
        QStringList options = TestServer::options("mysql");
        options[options.indexOf("--db-host") + 1] = servers;
        program.start(QStringList{"check", "--single"} + options);
        if (!program.ended())
            qFatal("test bench: check does not end");
        return {program.output(), program.log};
    }

    /// Both reports have all their mails and their mark.
    void checkMadeOnce(const ReportBench &bench) const
    {
        cluster.catchUp(nodes - 1, bench.schema.name());
        QCOMPARE(
            bench.schema
                .value("SELECT CONCAT(COUNT(*), ' ', COUNT(DISTINCT `to`, subject)) FROM emails")
                .toString(),
            QString("6 6"));
        QCOMPARE(bench.schema.value("SELECT COUNT(*) FROM vars WHERE name LIKE '%lastGenerated' "
                                    "AND value > 0"),
                 QVariant(2));
    }

    /// Returns how many mails the three runs claim to have queued.
    int race(const ReportBench &bench, const ReportKind &kind) const
    {
        std::atomic<int> ready{0};
        std::atomic<int> queued{0};
        std::vector<std::thread> threads;
        threads.reserve(nodes);
        for (int node = 0; node < nodes; ++node)
            threads.emplace_back([&, node] { queued += runAt(node, bench, kind, ready); });
        for (std::thread &thread : threads)
            thread.join();
        return queued;
    }

    int runAt(int node, const ReportBench &bench, const ReportKind &kind,
              std::atomic<int> &ready) const
    {
        QFETCH(QString, isolation);
        QFETCH(int, secondsApart);
        QFETCH(int, jitterMs);
        const QString name = QString("node%1").arg(node);
        int queued = 0;
        {
            QSqlDatabase db = TestServer::addConnection(name, bench.schema.name());
            db.setPort(cluster.port(node));
            TestCluster::catchUp(db);
            db.exec("SET SESSION TRANSACTION ISOLATION LEVEL " + isolation);
            const QDateTime now = QDateTime::currentDateTime().addSecs(qint64(node) * secondsApart);
            QStringList addresses;
            for (int i = 0; i < recipients; ++i)
                addresses.append(QString("a%1@firma.sk").arg(i));
            ReportRun run = runFor(addresses, now, kind.countsWhen, db);
            run.settings.enabled = true;
            run.isScheduled = true;
            const std::unique_ptr<AttenReport> report(kind.create(db, nullptr));
            for (++ready; ready < nodes;)
                std::this_thread::yield();
            QThread::msleep(jitterMs == 0 ? 0 : std::rand() % jitterMs);
            queued = report->queueMails(bench.temporary.filePath("book.xlsx"), run);
        }
        QSqlDatabase::removeDatabase(name);
        return queued;
    }

    const TestCluster cluster;
};

const bool longLimit = qputenv("QTEST_FUNCTION_TIMEOUT", "3600000"); // else five minutes

QTEST_GUILESS_MAIN(TestNodes)
#include "tst_nodes.moc"
