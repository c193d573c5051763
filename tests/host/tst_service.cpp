#include "host/hosttest.h"

#include <QRegularExpression>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

/// A service manager as a service sees it: a datagram socket that receives notifications.
class NotifySocket
{
public:
    explicit NotifySocket(const QString &path)
        : socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path);
        if (::bind(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
            qFatal("cannot bind '%s'", qPrintable(path));
    }
    ~NotifySocket() { ::close(socket); }
    Q_DISABLE_COPY(NotifySocket)

    /// Waits for a notification with that text and forgets everything up to it.
    bool takes(const QString &text, int timeoutMs = patienceMs)
    {
        return QTest::qWaitFor([&] { return drop(text); }, timeoutMs);
    }
    void clear()
    {
        receive();
        received.clear();
    }

private:
    bool drop(const QString &text)
    {
        receive();
        const int at = received.indexOf(text);
        if (at >= 0)
            received.remove(0, at + text.size());
        return at >= 0;
    }
    void receive()
    {
        char buffer[1000];
        for (ssize_t size; (size = ::recv(socket, buffer, sizeof buffer, 0)) > 0;)
            received += QString::fromUtf8(buffer, int(size)) + '\n';
    }

    const int socket;
    QString received;
};

class TestService : public HostTest
{
    Q_OBJECT

private Q_SLOTS:
    void tellsItsState()
    {
        QStringList tokens;
        for (int i = 0; i < 60; ++i)
            tokens << QString::number(i) + "/none";
        info->addSchemas(tokens, bench->schema.name());
        info->exec("UPDATE `schemas` SET status = 0 WHERE token = 'firm'");
        serve({"--debug", "1"});
        QVERIFY(manager->takes("READY=1"));
        QVERIFY(program->readLog().contains("active workers: 0 / 60"));
        QVERIFY(manager->takes("STATUS=serving 0 schemas, last scan "));

        enableDailyReport(bench->schema);
        info->exec("UPDATE `schemas` SET status = IF(token = 'firm', 1, 0)");
        program->send(SIGHUP);
        QVERIFY(manager->takes("RELOADING=1\nMONOTONIC_USEC="));
        QVERIFY(manager->takes("READY=1"));
        QVERIFY(program->readLog().contains("worker created for schema 'firm'"));
        QVERIFY(manager->takes("STATUS=serving 1 schema, last scan "));

        program->send(SIGUSR1);
        QVERIFY(manager->takes("STATUS=paused; serving 1 schema"));
        program->send(SIGHUP);
        QVERIFY(manager->takes("RELOADING=1"));
        QVERIFY(manager->takes("READY=1"));
        QVERIFY(program->logs("Host - nothing to scan: paused"));

        program->send(SIGTERM);
        QVERIFY(manager->takes("STOPPING=1"));
        QVERIFY(program->succeeded());
    }

    void countsProblems()
    {
        info->addSchemas({"gone"}, "no_such_database");
        serve();
        QVERIFY(manager->takes("READY=1"));
        program->readLog();
        const int lines = program->log.count(QRegularExpression(" (WARNING|CRITICAL) "));
        QVERIFY(lines > 0);
        QVERIFY(manager->takes(QString(", %1 problem").arg(lines)));
        QVERIFY(program->stops());
    }

    /// With one schema the report is made in the thread that the watchdog watches.
    void watchdogStarvesWhileBlocked()
    {
        addPeople(bench->schema, 1);
        enableDailyReport(bench->schema, "a@firma.sk");
        bench->schema.exec("LOCK TABLES atten WRITE");
        environment.insert("WATCHDOG_USEC", "300000");
        serveSingle();
        QTRY_COMPARE_WITH_TIMEOUT(bench->schema.connectionsIn("Waiting for table%"), 1, patienceMs);
        manager->clear();
        QVERIFY(!manager->takes("WATCHDOG=1", 1000));
        bench->schema.exec("UNLOCK TABLES");
        for (int i = 0; i < 5; ++i)
            QVERIFY(manager->takes("WATCHDOG=1"));
        QVERIFY(program->stops());
    }

private:
    void prepare() override
    {
        HostTest::prepare();
        const QString path = bench->temporary.filePath("notify");
        manager = std::make_unique<NotifySocket>(path);
        environment.insert("NOTIFY_SOCKET", path);
    }

    std::unique_ptr<NotifySocket> manager;
};

QTEST_GUILESS_MAIN(TestService)
#include "tst_service.moc"
