#include "db/zasdbsettings.h"
#include "reports/attenreport.h"
#include "reports/reportkind.h"
#include "reports/reportrun.h"

#include "support/reportbench.h"

#include <atomic>
#include <thread>

/// Two runs that are both past the schedule and the named lock, as hosts on two servers are: the
/// row "lastGenerated" decides between them.
class TestClaim : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    void oneOfTwo_data()
    {
        // `vars` is rewritten by the statement; "%1" is the key of "lastGenerated".
        addColumns<QString, QString, int>("statement", "isolation", "secondsApart");
        const QString insert = "INSERT INTO vars VALUES ('%1', %2)";
        for (const char *isolation : {"REPEATABLE READ", "READ COMMITTED"}) {
            const auto row = [isolation](const char *name, const QString &statement,
                                         int apart = 0) {
                addRow(qPrintable(QString("%1, %2").arg(name, isolation)), statement,
                       QString(isolation), apart);
            };
            row("no row", "DO 0");
            row("text", insert.arg("%1", "'86400'"));
            row("NULL", insert.arg("%1", "NULL"));
            row("bytes", "ALTER TABLE vars MODIFY value BLOB;\n" + insert.arg("%1", "'86400'"));
            row("name not unique", "ALTER TABLE vars DROP PRIMARY KEY");
            row("a clock ahead", insert.arg("%1", "'86400'"), 60);
            row("a clock behind", "DO 0", -60);
        }
    }

    void oneOfTwo()
    {
        QFETCH(QString, statement);
        QFETCH(QString, isolation);
        QFETCH(int, secondsApart);
        for (const ReportKind *kind : reportKinds()) {
            makeReady(*kind, statement);
            std::atomic<int> ready{0};
            int queued[2] = {};
            const auto run = [&](int host) {
                const QDateTime now = QDateTime::currentDateTime().addSecs(host * secondsApart);
                onConnection([&](const QSqlDatabase &db) {
                    db.exec("SET SESSION TRANSACTION ISOLATION LEVEL " + isolation);
                    const std::unique_ptr<AttenReport> report(kind->create(db, nullptr));
                    const ReportRun due = dueRun(*kind, db, now);
                    ++ready;
                    while (ready < 2)
                        std::this_thread::yield();
                    queued[host] = report->queueMails(workbook(), due);
                });
            };
            std::thread first(run, 0);
            std::thread second(run, 1);
            first.join();
            second.join();
            QCOMPARE(queued[0] + queued[1], recipients);
            QCOMPARE(bench->mails(), recipients);
            QVERIFY(bench->log.texts(QtWarningMsg).isEmpty());
            QVERIFY(bench->log.texts(QtCriticalMsg).isEmpty());
            QCOMPARE(
                bench->log.countContaining(QString(kind->className) + "::doWork() - another host "),
                1);
        }
    }

    /// An operator's run neither waits for a claim nor makes one.
    void operatorGoesFirst()
    {
        for (const ReportKind *kind : reportKinds()) {
            makeReady(*kind, "DO 0");
            onConnection([&](const QSqlDatabase &db) {
                const std::unique_ptr<AttenReport> report(kind->create(db, nullptr));
                ReportRun run = dueRun(*kind, db, QDateTime::currentDateTime());
                run.isScheduled = false;
                QCOMPARE(report->queueMails(workbook(), run), recipients);
                QCOMPARE(report->queueMails(workbook(), run), recipients);
                run.isScheduled = true;
                QCOMPARE(report->queueMails(workbook(), run), 0);
            });
        }
    }

    /// Without a transaction, mails would go out one by one, and without their mark.
    void noTransaction()
    {
        for (const ReportKind *kind : reportKinds()) {
            makeReady(*kind, "DO 0");
            onConnection([&](const QSqlDatabase &db) {
                const std::unique_ptr<AttenReport> report(kind->create(db, nullptr));
                const ReportRun due = dueRun(*kind, db, QDateTime::currentDateTime());
                db.exec("XA START 'other'");
                QCOMPARE(report->queueMails(workbook(), due), 0);
                db.exec("XA END 'other'");
                db.exec("XA COMMIT 'other' ONE PHASE");
            });
            QCOMPARE(bench->mails(), 0);
            QCOMPARE(
                bench->log.texts(QtWarningMsg).last(),
                QString(kind->className) +
                    "::makeReport() - the server refused to begin a transaction, no mail queued!");
        }
    }

    /// A client that reconnects on its own no longer holds the lock of its run.
    void reconnected()
    {
        for (const ReportKind *kind : reportKinds()) {
            makeReady(*kind, "DO 0");
            onConnection([&](QSqlDatabase db) {
                db.close();
                db.setConnectOptions("MYSQL_OPT_RECONNECT=1");
                QVERIFY(db.open());
                const std::unique_ptr<AttenReport> report(kind->create(db, nullptr));
                const ReportRun due = dueRun(*kind, db, QDateTime::currentDateTime());
                bench->schema.exec(QString("KILL %1").arg(due.connectionId));
                QCOMPARE(report->queueMails(workbook(), due), 0);
            });
            QCOMPARE(bench->mails(), 0);
            QCOMPARE(bench->log.texts(QtWarningMsg).last(),
                     QString(kind->className) +
                         "::makeReport() - database connection lost, no mail queued!");
        }
    }

    void faults_data()
    {
        addColumns<QString, QString, int, QList<bool>>("statement", "line", "mails", "stored");
        // Unlike a run that another host made, this needs attention.
        addRow("row locked",
               "INSERT INTO vars VALUES ('%1', '0');\nSET SESSION TRANSACTION ISOLATION LEVEL "
               "SERIALIZABLE;\nSTART TRANSACTION;\nSELECT * FROM vars",
               "%1::makeReport() - 'lastGenerated' is locked, no mail queued!", 0,
               QList<bool>{true, true});
        // A node that has lost the others for a moment, at the claim and at a mail.
        const char *notReady = "CREATE TRIGGER refuse BEFORE INSERT ON %1 FOR EACH ROW SIGNAL "
                               "SQLSTATE '08S01' SET MYSQL_ERRNO = 1047";
        for (const char *table : {"vars", "emails"})
            addRow(qPrintable(QString("node not ready for %1").arg(table)),
                   QString(notReady).arg(table),
                   "%1::makeReport() - the cluster node is not ready, no mail queued!", 0,
                   QList<bool>{false, false});
        // The row made for the claim goes with a run that stores nothing.
        addRow("every mail refused",
               "CREATE TRIGGER refuse BEFORE INSERT ON emails FOR EACH ROW SIGNAL SQLSTATE '45000'",
               "%1::makeReport() - mail not created!", 0, QList<bool>{false, true});
        // An extra report is better than none.
        addRow("vars cannot be written",
               "CREATE TRIGGER refuse BEFORE INSERT ON vars FOR EACH ROW SIGNAL SQLSTATE '45000'",
               "%1::makeReport() - 'lastGenerated' NOT SET!", recipients,
               QList<bool>{false, false});
    }

    void faults()
    {
        QFETCH(QString, statement);
        QFETCH(QString, line);
        QFETCH(QList<bool>, stored);
        for (const ReportKind *kind : reportKinds()) {
            makeReady(*kind, statement);
            onConnection([&](const QSqlDatabase &db) {
                db.exec("SET innodb_lock_wait_timeout = 1");
                const std::unique_ptr<AttenReport> report(kind->create(db, nullptr));
                report->queueMails(workbook(), dueRun(*kind, db, QDateTime::currentDateTime()));
            });
            bench->schema.exec("ROLLBACK;\nDROP TRIGGER IF EXISTS refuse");
            QVERIFY(bench->log.countContaining(line.arg(kind->className)) > 0);
            QTEST(bench->mails(), "mails");
            const QString sql("SELECT 1 FROM vars WHERE name = '%1'");
            QCOMPARE(bench->schema.value(sql.arg(kind->key("lastGenerated"))).isValid(),
                     stored.at(kind == &monthlyReport ? 1 : 0));
        }
    }

private:
    static constexpr int recipients = 3;

    void prepare() override
    {
        writeFile(workbook(), "workbook");
        bench->schema.exec("CREATE TABLE vars_before LIKE vars");
    }
    QString workbook() const { return bench->temporary.filePath("book.xlsx"); }

    /// Slow enough for both runs to queue mails at the same time, unless one keeps the other from
    /// it.
    void makeReady(const ReportKind &kind, const QString &statement) const
    {
        bench->schema.exec("DROP TABLE vars;\nCREATE TABLE vars LIKE vars_before;\n"
                           "DELETE FROM emails;\nDROP TRIGGER IF EXISTS slow");
        bench->schema.exec(
            "CREATE TRIGGER slow AFTER INSERT ON emails FOR EACH ROW DO SLEEP(0.01)");
        bench->schema.exec(QString(statement).replace("%1", kind.key("lastGenerated")));
    }

    void onConnection(const std::function<void(const QSqlDatabase &)> &work) const
    {
        TestServer::onConnection(bench->schema.name(), work);
    }

    static ReportRun dueRun(const ReportKind &kind, const QSqlDatabase &db, const QDateTime &now)
    {
        ReportRun run =
            runFor({"a@firma.sk", "b@firma.sk", "c@firma.sk"}, now, kind.countsWhen, db);
        run.settings.enabled = true;
        run.isScheduled = true;
        return run;
    }
};

QTEST_GUILESS_MAIN(TestClaim)
#include "tst_claim.moc"
