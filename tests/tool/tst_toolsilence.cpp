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

    /// Nobody can tell then whether the mails are there, and they are.
    void lostInCommit_data()
    {
        addRow("daily", "daily");
        addRow("monthly", "monthly");
    }

    void lostInCommit()
    {
        const auto [report] = fetch<QString>();
        Relay relay(TestServer::port());
        relay.failAt({}, "COMMIT", Relay::Fault::CutAnswer);
        const Outcome outcome =
            run(QString("run firm %1 --to a@firma.sk --db-port %2").arg(report).arg(relay.port()));
        QCOMPARE(outcome.status, 1);
        QVERIFY2(outcome.errors.contains("the connection was lost during the commit"),
                 qPrintable(outcome.errors));
        QCOMPARE(outcome.output, QString());
        QCOMPARE(bench->mails(), 1);
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
