#include "reports/attenreport.h"
#include "reports/reportkind.h"
#include "reports/reportrun.h"

#include "support/hostprogram.h"
#include "support/reportbench.h"
#include "support/testcluster.h"
#include "support/testhost.h"

#include <QDir>
#include <QThread>

#include <atomic>
#include <csignal>
#include <thread>

/**
 * Hosts at all three nodes of a cluster, with the same customers.
 *
 * AUTOREPORT_CLUSTER_ROUNDS sets how often each race is run: 10 is the long form.
 */
class TestClusteredHosts : public QObject
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
        // Slow enough for all runs to queue mails at the same time.
        bench.schema.exec(
            "CREATE TRIGGER slow AFTER INSERT ON emails FOR EACH ROW DO SLEEP(0.005)");
        bench.schema.exec(table);
        for (int round = 0; round < 10 * rounds; ++round) {
            const ReportKind &kind = *reportKinds().at(round % reportKinds().size());
            bench.schema.exec("START TRANSACTION;\nDELETE FROM emails;\nDELETE FROM vars");
            bench.schema.exec(QString(row).replace("%1", kind.key("lastGenerated")));
            bench.schema.exec("COMMIT");
            QCOMPARE(race(bench, kind), recipients);
            QCOMPARE(bench.mails(), recipients);
            QCOMPARE(bench.schema.value("SELECT COUNT(*) FROM vars WHERE value > 86400").toInt(),
                     1);
        }
        QVERIFY(bench.log.texts(QtWarningMsg).isEmpty());
        QVERIFY(bench.log.texts(QtCriticalMsg).isEmpty());
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
        for (const QJsonValue &finding : found["findings"].toArray())
            texts += finding["text"].toString();
        QCOMPARE(texts.filter("no primary key").join(""),
                 QString("table notes has no primary key: two nodes may change the same row "
                         "without noticing"));
        QCOMPARE(texts.filter("not InnoDB").join(""),
                 QString("table texts is not InnoDB: the cluster does not copy its rows to the "
                         "other nodes"));
    }

    void eachReportOnce_data()
    {
        QTest::addColumn<bool>("killing");
        addRow("all nodes alive", false);
        addRow("a node killed in each round", true);
    }

    /// The program, whose reports become due at all three nodes at the same moment.
    void eachReportOnce()
    {
        QFETCH(bool, killing);
        const TestDatabase information(TestDatabase::Tables::Info);
        addCustomers(information);
        startHosts(information.name());
        int once = 0;
        for (int round = 0; round < rounds; ++round) {
            // All tick a minute after the end of the pause.
            sendAll(SIGUSR1);
            QTRY_COMPARE_WITH_TIMEOUT(logged("AutoReport - PAUSE"), (round + 1) * nodes,
                                      patienceMs);
            reset();
            sendAll(SIGUSR2);
            const int victim = round % (nodes - 1);
            if (killing) {
                QTRY_VERIFY_WITH_TIMEOUT(made() > 0, patienceMs);
                cluster.kill(victim);
            }
            QTRY_COMPARE_WITH_TIMEOUT(made(), 2 * customers, patienceMs);
            QTest::qWait(1000); // for a run that would come second
            int found = -1;
            QTRY_VERIFY_WITH_TIMEOUT((found = madeOnce()) >= 0, patienceMs);
            once += found;
            if (killing)
                cluster.revive(victim);
        }
        qInfo("%i reports, each once", once);
        QCOMPARE(once, rounds * 2 * customers);
        sendAll(SIGTERM);
        for (const auto &host : hosts)
            QVERIFY(host->ended() && host->exitCode() == 0);
    }

    void cleanup()
    {
        for (const auto &host : hosts) {
            if (QTest::currentTestFailed())
                qInfo().noquote() << host->readLog().right(3000);
        }
        hosts.clear();
        schemas.clear();
    }

private:
    static constexpr int nodes = TestCluster::nodes;
    static constexpr int customers = 8;
    static constexpr int recipients = 3;
    static constexpr int speed =
        20; // the hosts' clocks run so much faster, and so do their minutes
    const int rounds = qEnvironmentVariable("AUTOREPORT_CLUSTER_ROUNDS", "2").toInt();

    /// Returns how many mails the three runs claim to have queued.
    int race(const ReportBench &bench, const ReportKind &kind) const
    {
        std::atomic<int> ready{0};
        std::atomic<int> queued{0};
        std::vector<std::thread> threads;
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
            catchUp(db);
            db.exec("SET SESSION TRANSACTION ISOLATION LEVEL " + isolation);
            const QDateTime now = QDateTime::currentDateTime().addSecs(node * secondsApart);
            ReportRun run =
                runFor({"a@firma.sk", "b@firma.sk", "c@firma.sk"}, now, kind.countsWhen, db);
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

    /// Returns when the connection's node has all that was written before.
    static void catchUp(QSqlDatabase &db)
    {
        // A node refuses connections for a moment while others come or go.
        if (!QTest::qWaitFor([&db] { return db.open(); }, patienceMs))
            qFatal("test bench: cannot open the node at port %i", db.port());
        db.exec("SET SESSION wsrep_sync_wait = 1");
        db.exec("SELECT COUNT(*) FROM vars");
        db.exec("SET SESSION wsrep_sync_wait = 0");
    }

    void addCustomers(const TestDatabase &information)
    {
        for (int i = 0; i < customers; ++i) {
            schemas.push_back(std::make_unique<TestDatabase>(TestDatabase::Tables::Schema));
            const TestDatabase &schema = *schemas.back();
            addPeople(schema, 3);
            for (const ReportKind *kind : reportKinds())
                schema.exec(QString("INSERT INTO vars VALUES ('%1', '1'), ('%2', "
                                    "'a@firma.sk,b@firma.sk,c@firma.sk')")
                                .arg(kind->key("enabled"), kind->key("emails")));
            schema.exec("CREATE TRIGGER slow AFTER INSERT ON emails FOR EACH ROW DO SLEEP(0.01);\n"
                        "SET SESSION wsrep_sync_wait = 1");
            information.addSchemas({QString("t%1").arg(i)}, schema.name());
        }
    }

    /// Each at its own node, and after that at the next.
    void startHosts(const QString &information)
    {
        for (int node = 0; node < nodes; ++node) {
            {
                QSqlDatabase db = TestServer::addConnection("node", schemas.back()->name());
                db.setPort(cluster.port(node));
                catchUp(db); // the scan sees all customers
            }
            QSqlDatabase::removeDatabase("node");
            const QString folder = cluster.folder.filePath(QString("host%1").arg(node));
            QDir().mkpath(folder);
            QProcessEnvironment environment =
                TestServer::environment(QString("2026-11-10 01:00:00 x%1").arg(speed));
            environment.insert("TMPDIR", folder);
            QStringList options = TestServer::options(information);
            options[options.indexOf("--db-host") + 1] = cluster.servers(node);
            hosts.push_back(std::make_unique<HostProgram>());
            hosts.back()->start(QStringList("serve") + options, environment);
        }
        for (const auto &host : hosts) // the scan is over
            QVERIFY(host->logs(QString("(%1)").arg(schemas.back()->name())));
    }

    void sendAll(int signal) const
    {
        for (const auto &host : hosts)
            host->send(signal);
    }

    int logged(const char *line) const
    {
        int lines = 0;
        for (const auto &host : hosts)
            lines += host->readLog().count(line);
        return lines;
    }

    /// In one transaction for each customer: a run that is late makes the next round's report. One
    /// that is under way at another node may win, as with every other writer.
    void reset() const
    {
        for (const auto &schema : schemas) {
            QSqlDatabase db = schema->database();
            const auto deleted = [&db] {
                QSqlQuery query(db);
                const bool done = db.transaction() && query.exec("DELETE FROM emails") &&
                                  query.exec("DELETE FROM vars WHERE name LIKE '%lastGenerated'") &&
                                  db.commit();
                if (!done)
                    db.rollback();
                return done;
            };
            QVERIFY(QTest::qWaitFor(deleted, patienceMs));
        }
    }

    /// Returns -1 while a node comes or goes, which ends the wait for the others' writes.
    int sum(const QString &counting) const
    {
        int result = 0;
        for (const auto &schema : schemas) {
            QSqlQuery query(schema->database());
            if (!query.exec(counting) || !query.next())
                return -1;
            result += query.value(0).toInt();
        }
        return result;
    }

    int made() const
    {
        return sum("SELECT COUNT(*) FROM vars WHERE name LIKE '%lastGenerated' AND value > 0");
    }

    int madeOnce() const
    {
        return sum(
            QString("SELECT COUNT(*) FROM (SELECT COUNT(*) AS mails, COUNT(DISTINCT `to`) "
                    "AS people FROM emails GROUP BY LEFT(subject, 3)) AS reports WHERE mails "
                    "= %1 AND people = %1")
                .arg(recipients));
    }

    const TestCluster cluster;
    std::vector<std::unique_ptr<TestDatabase>> schemas;
    std::vector<std::unique_ptr<HostProgram>> hosts;
};

const bool longLimit = qputenv("QTEST_FUNCTION_TIMEOUT", "3600000"); // else five minutes

QTEST_GUILESS_MAIN(TestClusteredHosts)
#include "tst_cluster.moc"
