#include "tool/tooltest.h"

#include "support/relay.h"

/// The operator's commands against a server that falls silent: it neither answers nor closes.
class TestToolSilence : public ToolTest
{
    Q_OBJECT

private Q_SLOTS:
    void cleanupTestCase() { info.reset(); } // before the server it is on

    void silentServer_data()
    {
        addRow("from the start", "status", "", 2);
        addRow("from the start, a schema's", "run firm daily --yes", "", 2);
        addRow("status", "status", "vars", 2);
        addRow("history", "history --html DIR/page.html", "emails", 2);
        addRow("check", "check", "vars", 2);
        addRow("why", "why firm daily", "people", 2);
        addRow("set", "set firm daily --disable", "vars", 1);
        addRow("set in all", "set --all daily --disable --yes", "vars", 2);
        addRow("daily", "run firm daily --yes", "atten", 1);
        addRow("monthly", "run firm monthly --to a@firma.sk", "atten_month", 1);
        addRow("preview", "preview firm daily --out DIR/p.xlsx", "people", 1);
    }

    /// Silent from the start, or when the command waits for that table.
    void silentServer()
    {
        auto [arguments, table, status] = fetch<QString, QString, int>();
        info->addSchemas({"second", "third", "fourth"}, bench->schema.name());
        const QByteArray server = readFile(ownServer.folder.filePath("server/pid")).trimmed();
        if (table.isEmpty())
            ::kill(server.toInt(), SIGSTOP);
        else
            bench->schema.exec("LOCK TABLES " + table + " WRITE");
        QElapsedTimer timer;
        timer.start();
        const auto tool = start(arguments.replace("DIR", bench->temporary.path()) + timeout);
        if (!table.isEmpty()) {
            QTRY_VERIFY_WITH_TIMEOUT(bench->schema.connectionsIn("Waiting for table%") > 0,
                                     patienceMs);
            ::kill(server.toInt(), SIGSTOP);
            timer.start();
        }
        const bool ended = tool->ended();
        const qint64 took = timer.elapsed();
        ::kill(server.toInt(), SIGCONT);
        bench->schema.exec("UNLOCK TABLES");
        QVERIFY(ended);
        QCOMPARE(tool->exitCode(), status);
        const QString expected = table.isEmpty() ? "cannot open the database '" + info->name() : "";
        QVERIFY2(!tool->log.isEmpty() && tool->log.contains(expected), qPrintable(tool->log));
        QVERIFY2(took < limitMs, qPrintable(QString::number(took)));
        QVERIFY(bench->mails() == 0 && QDir(bench->temporary.path()).isEmpty());
    }

    /// A statement may take long while the server still greets new connections.
    void longStatement()
    {
        bench->schema.exec("LOCK TABLES atten WRITE");
        const auto tool = start("run firm daily --yes" + timeout);
        QTRY_COMPARE_WITH_TIMEOUT(bench->schema.connectionsIn("Waiting for table%"), 1, patienceMs);
        QVERIFY(!tool->ended(3 * timeoutMs));
        bench->schema.exec("UNLOCK TABLES");
        QVERIFY(tool->succeeded());
        QCOMPARE(bench->mails(), 1);
    }

    void failedCommit_data()
    {
        for (const char *report : {"daily", "monthly"}) {
            addRow(qPrintable(QString("%1, answer lost").arg(report)), report, true);
            addRow(qPrintable(QString("%1, refused").arg(report)), report, false);
        }
    }

    /// If the answer to the commit is lost, nobody can tell whether the mail is there, and it is.
    /// The server refuses the commit if it has become read-only since the mail was inserted.
    void failedCommit()
    {
        const auto [report, isLost] = fetch<QString, bool>();
        // The tool's account, unlike the bench's, is subject to read_only.
        bench->schema.exec("CREATE OR REPLACE USER plain IDENTIFIED BY 'secret';\n"
                           "GRANT ALL ON *.* TO plain;\n"
                           "REVOKE READ ONLY ADMIN, SUPER ON *.* FROM plain");
        info->exec("UPDATE `schemas` SET user = 'plain', pass = TO_BASE64('secret')");
        const auto restore =
            qScopeGuard([this] { bench->schema.exec("SET GLOBAL read_only = 0"); });
        Relay relay(TestServer::port());
        relay.failAt({}, "COMMIT", isLost ? Relay::Fault::CutAnswer : Relay::Fault::Silence);
        const auto tool = start(
            QString("run firm %1 --to a@firma.sk --db-port %2").arg(report).arg(relay.port()));
        QTRY_COMPARE_WITH_TIMEOUT(relay.failures(), 1, patienceMs);
        if (!isLost)
            bench->schema.exec("SET GLOBAL read_only = 1");
        relay.thaw();
        QVERIFY(tool->ended());
        QCOMPARE(tool->exitCode(), 1);
        const char *found = isLost
                                ? "it is unknown whether the mails were committed: Lost connection"
                                : "mails not committed: The MariaDB server is running with";
        QVERIFY2(tool->log.contains(found), qPrintable(tool->log));
        QCOMPARE(tool->output(), QString(isLost ? "" : "0 of 1 mails queued\n"));
        QCOMPARE(bench->mails(), isLost ? 1 : 0);
    }

private:
    const QString timeout = " --timeout 2";
    static constexpr int timeoutMs = 2000;
    // Two waits in a row, one on each of its connections, and the program's start on a slow
    // machine.
    static constexpr int limitMs = sanitized ? 30000 : 5 * timeoutMs;
    const OwnServer ownServer;
};

QTEST_GUILESS_MAIN(TestToolSilence)
#include "tst_toolsilence.moc"
