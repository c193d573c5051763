#include "tool/tooltest.h"

#include <QDir>
#include <QElapsedTimer>

#include <csignal>
#include <vector>

/// The operator's commands against a server that falls silent: it neither answers nor closes.
class TestToolSilence : public ToolTest
{
    Q_OBJECT

private Q_SLOTS:
    void cleanupTestCase() { info.reset(); } // before the server it is on

    void silentServer()
    {
        const QString file = bench->temporary.filePath("p.xlsx");
        const QStringList commands{"status",
                                   "check --json",
                                   "history firm",
                                   "why firm daily",
                                   "set firm daily --disable",
                                   "preview firm daily --out " + file,
                                   "run firm daily --yes"};
        freeze(true);
        QElapsedTimer timer;
        timer.start();
        std::vector<std::unique_ptr<QProcess>> tools;
        for (const QString &command : commands)
            tools.push_back(start(command + timeout));
        for (const auto &tool : tools)
            tool->waitForFinished(patienceMs);
        const qint64 took = timer.elapsed();
        freeze(false);
        for (const auto &tool : tools) {
            const QByteArray errors = tool->readAllStandardError();
            QVERIFY2(tool->exitStatus() == QProcess::NormalExit && tool->exitCode() == 2, errors);
            const QByteArray expected = "cannot open the database '" + info->name().toUtf8();
            QVERIFY2(errors.contains(expected), errors);
        }
        QVERIFY2(took < limitMs, qPrintable(QString::number(took)));
        QVERIFY(bench->mails() == 0 && QDir(bench->temporary.path()).isEmpty());
    }

    void silentInTheMiddle_data()
    {
        addColumns<QString, QString, int>("arguments", "table", "status");
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

    void silentInTheMiddle()
    {
        QFETCH(QString, arguments);
        QFETCH(QString, table);
        QFETCH(int, status);
        info->addSchemas({"second", "third", "fourth"}, bench->schema.name());
        bench->schema.exec("LOCK TABLES " + table + " WRITE");
        const auto tool = start(arguments.replace("DIR", bench->temporary.path()) + timeout);
        QTRY_VERIFY_WITH_TIMEOUT(bench->schema.connectionsIn("Waiting for table%") > 0, patienceMs);
        QElapsedTimer timer;
        timer.start();
        freeze(true);
        const bool ended = tool->waitForFinished(patienceMs);
        const qint64 took = timer.elapsed();
        freeze(false);
        bench->schema.exec("UNLOCK TABLES");
        QVERIFY(ended);
        const QString errors = tool->readAllStandardError();
        QVERIFY2(tool->exitCode() == status, qPrintable(errors));
        QVERIFY(!errors.isEmpty());
        QVERIFY2(took < limitMs, qPrintable(QString::number(took)));
        QVERIFY(bench->mails() == 0 && QDir(bench->temporary.path()).isEmpty());
    }

    /// A statement may take long while the server still greets new connections.
    void longStatement()
    {
        bench->schema.exec("LOCK TABLES atten WRITE");
        const auto tool = start("run firm daily --yes" + timeout);
        QTRY_COMPARE_WITH_TIMEOUT(bench->schema.connectionsIn("Waiting for table%"), 1, patienceMs);
        QVERIFY(!tool->waitForFinished(3 * timeoutMs));
        bench->schema.exec("UNLOCK TABLES");
        QVERIFY(tool->waitForFinished(patienceMs));
        QVERIFY2(tool->exitCode() == 0, tool->readAllStandardError().constData());
        QCOMPARE(bench->mails(), 1);
    }

private:
    void freeze(bool on) const
    {
        const QByteArray pid = readFile(server.folder.filePath("server/pid")).trimmed();
        QCOMPARE(::kill(pid.toInt(), on ? SIGSTOP : SIGCONT), 0);
    }

    const QString timeout = " --timeout 2";
    static constexpr int timeoutMs = 2000;
    // Two waits in a row, one on each of its connections, and the program's start on a slow
    // machine.
    static constexpr int limitMs = sanitized ? 30000 : 5 * timeoutMs;
    const OwnServer server;
};

QTEST_GUILESS_MAIN(TestToolSilence)
#include "tst_toolsilence.moc"
