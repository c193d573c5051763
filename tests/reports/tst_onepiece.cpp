#include "reports/dailyattenreport.h"
#include "reports/reportkind.h"
#include "reports/reportrun.h"

#include "support/reportbench.h"
#include "support/testhost.h"

#include <future>
#include <thread>

/// A run reaches the database as a whole or not at all, and only one host makes it.
class TestOnePiece : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    void refusedMailTakesNoOtherAlong()
    {
        addPeople(bench->schema, 1);
        bench->schema.exec(
            "CREATE TRIGGER refuse BEFORE INSERT ON emails FOR EACH ROW IF NEW.`to` = "
            "'r2@firma.sk' THEN SIGNAL SQLSTATE '45000'; END IF");
        DailyAttenReport(bench->database, nullptr)
            .makeReport(recipientList.split(','), QDateTime::currentDateTime());
        QCOMPARE(bench->mails(), recipients - 1);
        QVERIFY(bench->lastGenerated("DailyAtten").isValid());
        QCOMPARE(bench->log.texts(QtWarningMsg),
                 QStringList("DailyAttenReport::makeReport() - mail not created!"));
    }

    void rolledBackByServer_data()
    {
        addColumns<QString, bool>("competitor", "scheduled");
        for (const bool scheduled : {true, false}) {
            const auto row = [scheduled](const char *name, const QString &competitor) {
                addRow(qPrintable(name + QString(scheduled ? ", scheduled" : ", by hand")),
                       competitor, scheduled);
            };
            row("deadlock", "UPDATE locks SET value = 2 WHERE id = 1");
            row("row changed since it was read", "DO 0");
        }
    }

    /// The server rolls the whole transaction back; later statements would autocommit.
    void rolledBackByServer()
    {
        QFETCH(QString, competitor);
        QFETCH(bool, scheduled);
        const TestDatabase &schema = bench->schema;
        const QString workbook = bench->temporary.filePath("book.xlsx");
        writeFile(workbook, "workbook");
        schema.exec("CREATE TABLE locks (id INT PRIMARY KEY, value INT);\n"
                    "INSERT INTO locks SELECT seq, 0 FROM seq_1_to_8;\n"
                    "CREATE TABLE weight (id INT PRIMARY KEY)");
        // The mail to r1 reads the table and locks row 1, the next one waits for row 2.
        schema.exec(
            "CREATE TRIGGER grip BEFORE INSERT ON emails FOR EACH ROW BEGIN SELECT COUNT(*) "
            "INTO @rows FROM locks; UPDATE locks SET value = 1 WHERE id = "
            "RIGHT(SUBSTRING_INDEX(NEW.`to`, '@', 1), 1); END");
        const QString waits = "SELECT 1 FROM information_schema.innodb_trx JOIN "
                              "information_schema.processlist ON id = trx_mysql_thread_id WHERE "
                              "trx_state = 'LOCK WAIT' AND db = DATABASE()";
        for (const ReportKind *kind : reportKinds()) {
            makeDue(schema);
            const auto queue = [&] {
                return queuedOnOwnConnection(*kind, workbook, scheduled);
            };
            schema.exec("TRUNCATE weight");
            QSqlDatabase other = bench->database;
            QVERIFY(other.transaction());
            // The competitor has changed more rows, so the server rolls the run back.
            QVERIFY(other.exec("INSERT INTO weight SELECT seq FROM seq_1_to_500").isActive());
            QVERIFY(other.exec("UPDATE locks SET value = 2 WHERE id = 2").isActive());
            std::future<int> run = std::async(std::launch::async, queue);
            do
                QTest::qWait(200); // the server renews its view when nobody has looked for 100 ms
            while (!schema.value(waits).isValid());
            const bool won = other.exec(competitor).isActive();
            other.commit();
            QCOMPARE(run.get(), 0);
            QVERIFY(won);
            const QString line(
                "%1::makeReport() - the server rolled the run back, no mail queued!");
            QCOMPARE(
                bench->log.count(scheduled ? QtInfoMsg : QtWarningMsg, line.arg(kind->className)),
                1);
            QCOMPARE(bench->mails(), 0);
            QVERIFY(!schema.value("SELECT 1 FROM vars WHERE name LIKE '%lastGenerated'").isValid());
            QCOMPARE(queue(), recipients); // the next tick makes the report
            QCOMPARE(bench->mails(), recipients);
        }
    }

    void twoHosts()
    {
        constexpr int schemas = 50;
        constexpr int rounds = 20;
        std::vector<std::unique_ptr<TestDatabase>> databases;
        for (int i = 0; i < schemas; ++i) {
            databases.push_back(std::make_unique<TestDatabase>(TestDatabase::Tables::Schema));
            addPeople(*databases.back(), 1);
            enableDailyReport(*databases.back(), "a@firma.sk");
        }
        const auto host = [&databases](const QString &name) {
            for (const auto &schema : databases)
                work(name, *schema);
        };
        for (int round = 0; round < rounds; ++round) {
            std::thread first(host, "first");
            std::thread second(host, "second");
            first.join();
            second.join();
            for (const auto &schema : databases) {
                QCOMPARE(schema->mails(), 1);
                makeDue(*schema);
            }
        }
        QCOMPARE(bench->log.count(QtInfoMsg, "DailyAttenReport::doWork()"), 2 * rounds * schemas);
    }

private:
    static constexpr int recipients = 8;
    const QString recipientList = "r1@firma.sk,r2@firma.sk,r3@firma.sk,r4@firma.sk,r5@firma.sk,"
                                  "r6@firma.sk,r7@firma.sk,r8@firma.sk";

    /// Queues the mails of one run on a connection of its own, which the calling thread may use.
    int queuedOnOwnConnection(const ReportKind &kind, const QString &workbook, bool scheduled) const
    {
        int queued = 0;
        {
            QSqlDatabase db = TestServer::addConnection("run", bench->schema.name());
            // On by default since MariaDB 11.6.
            if (!db.open() || !db.exec("SET innodb_snapshot_isolation = ON").isActive())
                qFatal("the bench cannot open its schema");
            const std::unique_ptr<AttenReport> report(kind.create(db, nullptr));
            ReportRun run =
                runFor(recipientList.split(','), QDateTime::currentDateTime(), kind.countsWhen, db);
            run.settings.enabled = true;
            run.isScheduled = scheduled;
            queued = report->queueMails(workbook, run);
        }
        QSqlDatabase::removeDatabase("run");
        return queued;
    }

    /// One tick on a connection of its own, which the calling thread may use.
    static void work(const QString &connection, const TestDatabase &schema)
    {
        {
            QSqlDatabase db = TestServer::addConnection(connection, schema.name());
            if (db.open())
                DailyAttenReport(db, nullptr).doWork();
        }
        QSqlDatabase::removeDatabase(connection);
    }
};

QTEST_GUILESS_MAIN(TestOnePiece)
#include "tst_onepiece.moc"
