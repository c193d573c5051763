#include "host/hosttest.h"
#include "host/script.h"

/// The host under a service manager, which it notifies.
class TestService : public HostTest
{
    Q_OBJECT

private Q_SLOTS:
    void tellsItsState()
    {
        info->exec("INSERT INTO `schemas` (token, name, user, pass) SELECT CONCAT(seq, '/none'), "
                   "name, user, pass FROM `schemas`, seq_1_to_60");
        info->exec("UPDATE `schemas` SET status = 0 WHERE token = 'firm'");
        environment.insert("WATCHDOG_USEC", "300000");
        const int connections = bench->schema.connectionsIn("%");
        serve({"--debug", "1"});
        QVERIFY(isNotified("READY=1"));
        QVERIFY(program->readLog().contains("active workers: 0 / 60"));
        QVERIFY(isNotified("STATUS=serving 0 schemas, last scan "));
        QTRY_COMPARE_WITH_TIMEOUT(bench->schema.connectionsIn("%"), connections, patienceMs);
        QVERIFY2(!program->log.contains("WARNING"), qPrintable(program->log));
        for (int i = 0; i < 5; ++i)
            QVERIFY(isNotified("WATCHDOG=1"));

        enableDailyReport(bench->schema);
        info->exec("UPDATE `schemas` SET status = IF(token = 'firm', 1, 0)");
        program->send(SIGHUP);
        QVERIFY(isNotified("RELOADING=1\nMONOTONIC_USEC="));
        QVERIFY(isNotified("READY=1"));
        QVERIFY(program->readLog().contains("worker created for schema 'firm'"));
        QVERIFY(isNotified("STATUS=serving 1 schema, last scan "));

        info->addSchemas({"gone"}, "no_such_database");
        program->send(SIGHUP);
        QVERIFY(isNotified("READY=1"));
        program->readLog();
        const int problems = program->log.count(QRegularExpression(" (WARNING|CRITICAL) "));
        QVERIFY(problems > 0);
        QVERIFY(isNotified(", " + QByteArray::number(problems) + " problem"));

        program->send(SIGUSR1);
        QVERIFY(isNotified("STATUS=paused; serving 1 schema"));
        program->send(SIGHUP);
        QVERIFY(isNotified("RELOADING=1"));
        QVERIFY(isNotified("READY=1"));
        QVERIFY(program->logs("Host - scan request ignored: paused"));

        program->send(SIGTERM);
        QVERIFY(isNotified("STOPPING=1"));
        QVERIFY(program->succeeded());
    }

    /// With one schema, the report is made in the thread that the watchdog watches and that the
    /// signals go to.
    void blockedByReport()
    {
        addPeople(bench->schema, 1);
        enableDailyReport(bench->schema, "a@firma.sk");
        bench->schema.exec("LOCK TABLES atten WRITE");
        environment.insert("WATCHDOG_USEC", "300000");
        serveSingle();
        QTRY_COMPARE_WITH_TIMEOUT(bench->schema.connectionsIn("Waiting for table%"), 1, patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(!isNotified("WATCHDOG=1", 1000), 5000);
        program->send(SIGTERM);
        QVERIFY(program->logs("Host - stopping"));
        bench->schema.exec("UNLOCK TABLES");
        QVERIFY(program->succeeded());
        QVERIFY2(program->log.contains("interrupted, nothing saved and no mail!"),
                 qPrintable(program->log));
        QCOMPARE(bench->mails(), 0);
    }

private:
    void prepare() override
    {
        HostTest::prepare();
        const QString path = bench->temporary.filePath("notify");
        environment.insert("NOTIFY_SOCKET", path);
        notifications.clear();
        const QString receiver = "one = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)\n"
                                 "one.bind(sys.argv[1])\nprint('ready', flush=True)\n"
                                 "while True: print(one.recv(1000).decode(), flush=True)";
        manager = std::make_unique<Script>(receiver, QStringList{path});
        QVERIFY(!manager->next().isEmpty());
    }

    /// Waits for a notification with that text and forgets everything up to it.
    bool isNotified(const QByteArray &text, int timeoutMs = patienceMs)
    {
        const auto isHere = [&] {
            return (notifications += manager->output()).contains(text);
        };
        if (!QTest::qWaitFor(isHere, timeoutMs))
            return false;
        notifications.remove(0, notifications.indexOf(text) + text.size());
        return true;
    }

    std::unique_ptr<Script> manager;
    QByteArray notifications; ///< from it, those that no test has asked for yet
};

QTEST_GUILESS_MAIN(TestService)
#include "tst_service.moc"
