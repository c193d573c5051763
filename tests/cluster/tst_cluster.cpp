#include "reports/reportkind.h"

#include "support/hostprogram.h"
#include "support/testcluster.h"
#include "support/testhost.h"

#include <QDir>
#include <QSqlError>

#include <csignal>

/**
 * Hosts at all three nodes of a cluster, with the same customers.
 *
 * AUTOREPORT_CLUSTER_ROUNDS sets how often each race is run: 10 is the long form.
 */
class TestClusteredHosts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
        int once = 0;
        int rolledBack = 0;
        int goneOn = 0; // rounds in which two nodes went on without the third
        for (int round = 0; round < rounds; ++round) {
            startHosts(information.name());
            // All tick a minute after the end of the pause.
            sendAll(SIGUSR1);
            QTRY_COMPARE_WITH_TIMEOUT(logged("AutoReport - PAUSE"), nodes, patienceMs);
            reset();
            sendAll(SIGUSR2);
            const int victim = round % (nodes - 1);
            bool isAway = false;
            if (killing) {
                QTRY_VERIFY_WITH_TIMEOUT(made() > 0, patienceMs);
                isAway = kill(victim);
            }
            QTRY_COMPARE_WITH_TIMEOUT(made(), 2 * customers, patienceMs);
            QVERIFY(!killing || hosts.at(victim)->logs("was lost and reopened"));
            QTest::qWait(1000); // for a run that would come second
            int found = -1;
            QTRY_VERIFY_WITH_TIMEOUT((found = madeOnce()) >= 0, patienceMs);
            QCOMPARE(found, 2 * customers);
            once += found;
            rolledBack += logged("the server rolled the run back");
            endHosts();
            goneOn += isAway ? 1 : 0;
            if (isAway)
                cluster.run("revive", victim);
        }
        qInfo("%i reports, each once; runs rolled back: %i", once, rolledBack);
        QVERIFY(rolledBack > 0); // else the hosts never met
        QVERIFY(!killing || goneOn > 0);
    }

    void cleanup()
    {
        for (const auto &host : hosts) {
            if (QTest::currentTestFailed())
                qInfo().noquote() << host->readLog();
        }
        if (QTest::currentTestFailed())
            showMails();
        hosts.clear();
        schemas.clear();
    }

private:
    static constexpr int nodes = TestCluster::nodes;
    static constexpr int customers = 8;
    static constexpr int recipients = 60; // so that the mails of several hosts overlap
    static constexpr int speed = 20;      // of the hosts' clocks, and of their minutes
    const int rounds = qEnvironmentVariable("AUTOREPORT_CLUSTER_ROUNDS", "2").toInt();

    void addCustomers(const TestDatabase &information)
    {
        QStringList addresses;
        for (int i = 0; i < recipients; ++i)
            addresses.append(QString("a%1@firma.sk").arg(i));
        for (int i = 0; i < customers; ++i) {
            schemas.push_back(std::make_unique<TestDatabase>(TestDatabase::Tables::Schema));
            const TestDatabase &schema = *schemas.back();
            addPeople(schema, 3);
            for (const ReportKind *kind : reportKinds())
                schema.exec(
                    QString("INSERT INTO vars VALUES ('%1', '1'), ('%2', '%3')")
                        .arg(kind->key("enabled"), kind->key("emails"), addresses.join(',')));
            schema.exec("SET SESSION wsrep_sync_wait = 1");
            information.addSchemas({QString("t%1").arg(i)}, schema.name());
        }
    }

    /// Each at its own node, and after that at the next, where it would stay.
    void startHosts(const QString &information)
    {
        for (int node = 0; node < nodes; ++node) {
            cluster.catchUp(node, schemas.back()->name()); // the scan sees all customers
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

    void endHosts()
    {
        sendAll(SIGTERM);
        for (const auto &host : hosts)
            QVERIFY(host->succeeded());
        hosts.clear();
    }

    /// Kills a node and returns whether it stays away. At times the other nodes' exchange fails
    /// ("Temporary failure in sending state UUID"), and they commit nothing until the killed one
    /// is back, as it would be with a service manager.
    bool kill(int node) const
    {
        cluster.run("kill", node);
        const bool goOn = cluster.settles(nodes - 1);
        if (!goOn) {
            qInfo("the other nodes do not go on: node %i comes back at once", node);
            cluster.run("revive", node);
        }
        return goOn;
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

    void showMails() const
    {
        for (const auto &schema : schemas) {
            QSqlQuery query(schema->database());
            query.exec("SELECT subject, COUNT(*), COUNT(DISTINCT `to`) FROM emails GROUP BY 1 "
                       "UNION ALL SELECT name, value, 0 FROM vars WHERE name LIKE '%Generated'");
            qInfo() << schema->name() << query.lastError().text();
            while (query.next())
                qInfo() << query.value(0) << query.value(1) << query.value(2);
        }
    }

    const TestCluster cluster;
    std::vector<std::unique_ptr<TestDatabase>> schemas;
    std::vector<std::unique_ptr<HostProgram>> hosts;
};

const bool longLimit = qputenv("QTEST_FUNCTION_TIMEOUT", "3600000"); // else five minutes

QTEST_GUILESS_MAIN(TestClusteredHosts)
#include "tst_cluster.moc"
