#include "reports/attenreport.h"
#include "reports/reportkind.h"
#include "reports/reportlock.h"

#include "support/fullgate.h"
#include "support/reportbench.h"
#include "support/testhost.h"

#include <future>

/// A run reaches the database as a whole or not at all, and only one host makes it.
class TestOnePiece : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    void rolledBackByServer_data()
    {
        const char *lock = "UPDATE locks SET value = 2 WHERE id = 1";
        addRow("deadlock, scheduled", lock, true);
        addRow("deadlock, by hand", lock, false);
        addRow("row changed since it was read, scheduled", "DO 0", true);
        addRow("row changed since it was read, by hand", "DO 0", false);
    }

    /// The server rolls the whole transaction back; later statements would autocommit.
    void rolledBackByServer()
    {
        const auto [competitor, scheduled] = fetch<QString, bool>();
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
        const QString line("%1::makeReport() - the server rolled the run back, no mail queued!");
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
            const QtMsgType type = scheduled ? QtInfoMsg : QtWarningMsg;
            QCOMPARE(bench->log.count(type, line.arg(kind->className)), 1);
            QCOMPARE(bench->mails(), 0);
            QVERIFY(!schema.value("SELECT 1 FROM vars WHERE name LIKE '%lastGenerated'").isValid());
            QCOMPARE(queue(), recipients); // the next tick makes the report
            QCOMPARE(bench->mails(), recipients);
        }
    }

    void twoHosts()
    {
        addPeople(bench->schema, 1);
        enableBothReports(bench->schema, "a@firma.sk");
        for (const ReportKind *kind : reportKinds()) {
            makeDue(bench->schema);
            ReportLock other(bench->database, kind->className);
            QVERIFY(other.acquire());
            tick(*kind);
            QCOMPARE(bench->mails(), 0);
            const QString line("%1::doWork() - another host is making this report");
            QCOMPARE(bench->log.count(QtInfoMsg, line.arg(kind->className)), 1);
            other.release();
            tick(*kind);
            QCOMPARE(bench->mails(), 1);
        }
    }

    void waitsAtTheGate_data()
    {
        for (const QString &word : reportWords()) {
            addRow(qPrintable(word + ", goes out later"), word, false);
            addRow(qPrintable(word + ", stopped"), word, true);
        }
    }

    void waitsAtTheGate()
    {
        const auto [report, stopped] = fetch<QString, bool>();
        const ReportKind &kind = *reportKindOf(report);
        addPeople(bench->schema, 2);
        enableBothReports(bench->schema, "a@firma.sk");
        FullGate gate;
        const std::unique_ptr<QThread> thread(QThread::create([&] { tick(kind); }));
        const auto ended = qScopeGuard([&thread] {
            thread->requestInterruption();
            thread->wait();
        });
        thread->start();
        QTRY_COMPARE_WITH_TIMEOUT(bench->log.countContaining("doWork()"), 1, patienceMs);
        QVERIFY(!thread->wait(300));
        QCOMPARE(bench->mails(), 0);
        // Another host may make the report meanwhile.
        ReportLock lock(bench->database, kind.className);
        QVERIFY(lock.acquire());
        lock.release();

        if (stopped)
            thread->requestInterruption();
        else
            gate.open();
        QVERIFY(thread->wait(stopped ? 2000 : patienceMs));
        QCOMPARE(bench->mails(), stopped ? 0 : 1);
    }

private:
    static constexpr int recipients = 8;
    const QString recipientList = "r1@firma.sk,r2@firma.sk,r3@firma.sk,r4@firma.sk,r5@firma.sk,"
                                  "r6@firma.sk,r7@firma.sk,r8@firma.sk";

    /// Queues the mails of one run on a connection of its own, which the calling thread may use.
    int queuedOnOwnConnection(const ReportKind &kind, const QString &workbook, bool scheduled) const
    {
        int queued = 0;
        TestServer::onConnection(bench->schema.name(), [&](const QSqlDatabase &db) {
            db.exec("SET innodb_snapshot_isolation = ON"); // by default since MariaDB 11.6
            const std::unique_ptr<AttenReport> report(kind.create(db, nullptr));
            ReportRun run =
                runFor(recipientList.split(','), QDateTime::currentDateTime(), kind.countsWhen, db);
            run.settings.enabled = true;
            run.isScheduled = scheduled;
            queued = report->queueMails(workbook, run);
        });
        return queued;
    }

    void tick(const ReportKind &kind) const
    {
        TestServer::onConnection(bench->schema.name(), [&kind](const QSqlDatabase &db) {
            const std::unique_ptr<AttenReport> report(kind.create(db, nullptr));
            report->doWork();
        });
    }
};

QTEST_GUILESS_MAIN(TestOnePiece)
#include "tst_onepiece.moc"
