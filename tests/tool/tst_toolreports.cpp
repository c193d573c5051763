#include "reports/reportkind.h"
#include "reports/reportlock.h"

#include "db/mailrepository.h"
#include "db/varstable.h"
#include "reports/attenreport.h"
#include "tool/reportjob.h"
#include "tool/requirements.h"
#include "tool/tooltest.h"

/// The commands that make reports and configure them.
class TestToolReports : public ToolTest
{
    Q_OBJECT

private Q_SLOTS:
    void previewWritesOneFileOnly_data()
    {
        addRow("well", "DO 0", "", true);
        addRow("a value lost", "DROP TABLE brape", ".brape'", true);
        addRow("no people", "DELETE FROM people", "no people!", false);
    }

    void previewWritesOneFileOnly()
    {
        const auto [change, error, made] = fetch<QString, QString, bool>();
        bench->schema.exec(change);
        const QString path = bench->temporary.filePath("p.xls");
        const Outcome outcome = run("preview firm daily --out " + path);
        QCOMPARE(outcome.status, error.isEmpty() ? 0 : 1);
        QVERIFY2(outcome.errors.contains(error), qPrintable(outcome.errors));
        QCOMPARE(outcome.output, made ? path + '\n' : QString());
        QCOMPARE(QDir(bench->temporary.path()).entryList(QDir::Files).size(), made ? 1 : 0);
        QCOMPARE(rowCount(made ? readSheet(path) : QJsonObject()), made ? 16 : 0);
        QCOMPARE(bench->mails(), 0);
        QCOMPARE(bench->lastGenerated("DailyAtten").toString(), QString("1700028002"));
    }

    void runQueues_data()
    {
        const QString none = "DO 0";
        const QString two =
            "UPDATE vars SET value = ' a@firma.sk, ,b@firma.sk' WHERE name LIKE '%emails'";
        addRow("one address", "daily --to x@firma.sk", two, "x@firma.sk: 15. 11. 2023", false);
        addRow("all", "daily --yes", two, "a@firma.sk: 15. 11. 2023|b@firma.sk: 15. 11. 2023",
               false);
        addRow("past", "daily --yes --date 2023-09-30", none, "a@firma.sk: 30. 9. 2023", false);
        addRow("marked", "daily --to x@firma.sk --mark", none, "x@firma.sk: 15. 11. 2023", true);
        addRow("nobody", "daily --yes", "DELETE FROM vars", "", false);
        addRow("no people", "daily --yes --mark", "DELETE FROM people", "", false);
        addRow("no queue", "daily --yes --mark", "DROP TABLE emails", "", false);
    }

    void runQueues()
    {
        const auto [options, change, mails, marked] = fetch<QString, QString, QString, bool>();
        const int status = mails.isEmpty() ? 1 : 0;
        bench->schema.exec(change);
        const Outcome outcome = run("run firm " + options);
        QVERIFY2(outcome.status == status, qPrintable(outcome.output + outcome.errors));
        QCOMPARE(outcome.errors.isEmpty(), status == 0);
        const QString sql = "SELECT GROUP_CONCAT(`to`, ':', REPLACE(subject, 'Denný report "
                            "dochádzky za', '') ORDER BY mid SEPARATOR '|') FROM emails";
        QCOMPARE(change.startsWith("DROP") ? QString() : bench->schema.value(sql).toString(),
                 mails);
        QCOMPARE(bench->lastGenerated("DailyAtten").toLongLong() > 1700028002, marked);
        QVERIFY(QDir(bench->temporary.path()).isEmpty());
    }

    /// No other directory, such as the root, is used in place of one that is unusable.
    void runNeedsATemporaryDirectory()
    {
        for (const QString folder : {"/no/such", "no-such", "/proc"}) {
            environment.insert("TMPDIR", folder);
            const Outcome outcome = run("run firm daily --to a@firma.sk");
            QCOMPARE(outcome.status, 1);
            QCOMPARE(outcome.errors, "autoreport: cannot create a directory in '" + folder +
                                         "': No such file or directory; point TMPDIR elsewhere\n");
            QCOMPARE(outcome.output, QString("0 of 1 mails queued\n"));
        }
    }

    void runLeavesAReportInTheMakingAlone()
    {
        ReportLock host(bench->database, dailyReport.className);
        QVERIFY(host.acquire());
        const Outcome outcome = run("run firm daily --yes");
        QCOMPARE(outcome.status, 1);
        QVERIFY(
            outcome.errors.contains("a host or another operator is making this report right now"));
        QCOMPARE(bench->mails(), 0);
        QCOMPARE(run("run firm monthly --to a@firma.sk").status, 0);
    }

    void interruptionLeavesNothing_data()
    {
        addRow("daily", "run firm daily --yes", "atten", "InnoDB");
        addRow("monthly", "run firm monthly --to a@firma.sk", "atten_month", "InnoDB");
        addRow("preview", "preview firm daily --out DIR/p.xlsx", "atten", "InnoDB");
        addRow("second of two mails", "run firm daily --yes", "emails", "InnoDB");
        addRow("with the first there to stay", "run firm daily --yes", "emails", "MyISAM");
    }

    void interruptionLeavesNothing()
    {
        auto [arguments, table, engine] = fetch<QString, QString, QString>();
        const bool stays = engine == "MyISAM";
        bench->set("autoReport.DailyAtten.emails", "a@firma.sk,b@firma.sk");
        // While a table is locked, the report waits in the middle of its work.
        bench->schema.exec("ALTER TABLE emails ENGINE=" + engine + ";\nLOCK TABLES " + table +
                           " WRITE");
        const auto tool = start(arguments.replace("DIR", bench->temporary.path()));
        QTRY_COMPARE_WITH_TIMEOUT(bench->schema.connectionsIn("Waiting for table%"), 1, patienceMs);
        tool->send(SIGTERM);
        bench->schema.exec("UNLOCK TABLES");
        QVERIFY(tool->ended());
        QCOMPARE(tool->exitCode(), stays ? 0 : 143);
        const char *done = table == "emails" ? "interrupted, no mail queued!"
                                             : "interrupted, nothing saved and no mail!";
        QCOMPARE(tool->log.contains(done), !stays);
        QVERIFY(QDir(bench->temporary.path()).isEmpty());
        QCOMPARE(bench->mails(), stays ? 2 : 0);
    }

    void requirementsAreThoseOfTheReports_data()
    {
        addRow("daily", "daily", "0");
        addRow("daily with all it can show", "daily", "1");
        addRow("monthly", "monthly", "1");
    }

    /// `check` and `status` complain about exactly the columns without which the report complains.
    void requirementsAreThoseOfTheReports()
    {
        const auto [report, options] = fetch<QString, QString>();
        const ReportKind *kind = reportKindOf(report);
        bench->set("dattenInters", options);
        bench->set("advancedOvertime", options);
        const QDateTime now(QDate(2023, 11, 1), QTime(10, 0));
        QStringList statements{MailRepository::insertStatement(), VarsTable::upsertStatement()};
        statements +=
            kind->needs({{"dattenInters", options}, {"advancedOvertime", options}}, now.date())
                .statements;
        const auto columns = bench->schema.rows(
            "SELECT table_name, column_name FROM information_schema.columns WHERE table_schema = "
            "DATABASE() AND table_name != 'admins_people'");
        QVERIFY(columns.size() > 70);
        for (const auto &column : columns) {
            const QString name = column[1].toString();
            const QString rename = QString("ALTER TABLE `%1` ").arg(column[0].toString()) +
                                   "RENAME COLUMN `%1` TO `%2`";
            bench->schema.exec(rename.arg(name, "gone"));
            QStringList unmet;
            for (const UnmetRequirement &one : Requirements::unmetOf(bench->database, statements))
                unmet.append(one.text);
            const int known = bench->log.countContaining("Unknown column '");
            createReport(*kind, bench->database)->makeReport({"a@firma.sk"}, now);
            const bool complains = bench->log.countContaining("Unknown column '") > known;
            bench->schema.exec(rename.arg("gone", name));

            const QString here = column[0].toString() + '.' + name + ": " + unmet.join("; ");
            QVERIFY2(unmet.isEmpty() != complains, qPrintable(here));
            QVERIFY2(unmet.isEmpty() || unmet.join(';').contains(name + "' in "), qPrintable(here));
        }
        QVERIFY(bench->mails() > 10);
    }
};

QTEST_GUILESS_MAIN(TestToolReports)
#include "tst_toolreports.moc"
