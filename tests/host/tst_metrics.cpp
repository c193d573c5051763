#include "support/hostprogram.h"
#include "support/reportbench.h"
#include "support/testhost.h"

#include <QRegularExpression>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{

/// A port that was free a moment ago.
int freePort()
{
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto *plain = reinterpret_cast<sockaddr *>(&address);
    if (::bind(socket, plain, size) != 0 || ::getsockname(socket, plain, &size) != 0)
        qFatal("test bench: no free port");
    ::close(socket);
    return ntohs(address.sin_port);
}

} // namespace

class TestMetrics : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    void countsRuns()
    {
        addPeople(bench->schema, 1);
        enable(bench->schema, "a@firma.sk, b@firma.sk");
        info->addSchemas({"firm"}, bench->schema.name());
        start();
        QVERIFY(shows(R"(autoreport_reports_made_total{kind="daily"} 1)"));
        QVERIFY(shows(R"(autoreport_reports_made_total{kind="monthly"} 1)"));
        QVERIFY(shows(R"(autoreport_mails_queued_total{kind="daily"} 2)"));
        QVERIFY(shows(R"(autoreport_report_duration_seconds_count{kind="monthly"} 1)"));
        QVERIFY(shows(R"(autoreport_last_success_timestamp_seconds{schema="firm",kind="daily"} )"));
        QVERIFY(shows("autoreport_workers 1"));
        QVERIFY(!shown.contains("autoreport_reports_failed_total{"));

        program->send(SIGHUP);
        QVERIFY(shows(R"(autoreport_mails_waiting{schema="firm"} 4)"));
        QVERIFY(shows("autoreport_scan_duration_seconds_count 2"));
        const QString oldest = R"(autoreport_oldest_mail_timestamp_seconds{schema="firm"} )";
        QVERIFY(shows(oldest + bench->schema.value("SELECT MIN(created) FROM emails").toString()));
        judgedByPromtool();
        documentsNameWhatIsServed();
        program->send(SIGTERM);
        QVERIFY(program->ended());
        QCOMPARE(program->exitCode(), 0);
    }

    void namesCauses_data()
    {
        addColumns<QString, QString, QString>("change", "temporary", "cause");
        addRow("no people", "DELETE FROM people", "/tmp", "no_people");
        addRow("people table", "DROP TABLE people", "/tmp", "query");
        addRow("mail table", "DROP TABLE emails", "/tmp", "mail");
        addRow("temporary directory", "DO 0", "/proc", "workbook");
    }

    void namesCauses()
    {
        QFETCH(QString, change);
        QFETCH(QString, temporary);
        QFETCH(QString, cause);
        addPeople(bench->schema, 1);
        enable(bench->schema, "a@firma.sk");
        bench->schema.exec(change);
        start(bench->schema.name(), {"--single"}, temporary);
        for (const QString kind : {"daily", "monthly"}) {
            const QString line = R"(autoreport_reports_failed_total{kind="%1",cause="%2"} 1)";
            QVERIFY2(shows(line.arg(kind, cause)), qPrintable(shown));
        }
        QVERIFY(!shown.contains("last_success_timestamp_seconds{"));
    }

    void refusesAddress_data()
    {
        addColumns<QString, QString>("address", "text");
        addRow("no port", "127.0.0.1", "an address with a port");
        addRow("no address of ours", "192.0.2.1:9469", "cannot serve metrics at 192.0.2.1:9469");
    }

    void refusesAddress()
    {
        QFETCH(QString, address);
        QFETCH(QString, text);
        program->start(QStringList{"serve", "--metrics", address} +
                       TestServer::options(info->name()));
        QVERIFY(program->ended());
        QVERIFY2(program->log.contains(text), qPrintable(program->log));
        QVERIFY(program->exitCode() != 0);
    }

private:
    void prepare() override
    {
        info = std::make_unique<TestDatabase>(TestDatabase::Tables::Info);
        program = std::make_unique<HostProgram>();
        place = "127.0.0.1:" + QString::number(freePort());
        shown.clear();
    }

    static void enable(const TestDatabase &schema, const QString &recipients)
    {
        enableDailyReport(schema, recipients);
        schema.exec("INSERT INTO vars SELECT REPLACE(name, 'Daily', 'Monthly'), value FROM vars");
    }

    void start() { start(info->name(), {}, bench->temporary.path()); }
    void start(const QString &database, const QStringList &options, const QString &temporary)
    {
        QProcessEnvironment environment = TestServer::environment();
        environment.insert("TMPDIR", temporary);
        program->start(QStringList{"serve", "--metrics", place} + options +
                           TestServer::options(database),
                       environment);
    }

    /// Waits until a line begins like that. Read by another program than the one that writes it.
    bool shows(const QString &line)
    {
        return QTest::qWaitFor(
            [&] {
                const QString script =
                    "import sys, urllib.request\n"
                    "sys.stdout.write(urllib.request.urlopen(sys.argv[1], timeout=10)"
                    ".read().decode())";
                QProcess python;
                python.start("python3", {"-c", script, "http://" + place + "/metrics"});
                python.waitForFinished(patienceMs);
                shown = QString::fromUtf8(python.readAllStandardOutput());
                return ("\n" + shown).contains("\n" + line);
            },
            patienceMs);
    }

    void judgedByPromtool() const
    {
        QProcess promtool;
        promtool.start("promtool", {"check", "metrics"});
        promtool.write(shown.toUtf8());
        promtool.closeWriteChannel();
        QVERIFY(promtool.waitForFinished(patienceMs));
        const QByteArray said = promtool.readAllStandardError() + promtool.readAllStandardOutput();
        QVERIFY2(promtool.exitCode() == 0 && said.isEmpty(), said);
    }

    /// A metric that was renamed would leave an alert that never fires.
    void documentsNameWhatIsServed() const
    {
        static const QRegularExpression name(R"(\b(?:autoreport|process)_[a-z_]+)");
        for (const QString file : {"alerts.yml", "grafana.json"}) {
            auto matches =
                name.globalMatch(QString::fromUtf8(readFile(AUTOREPORT_MONITORING_DIR "/" + file)));
            QVERIFY(matches.hasNext());
            while (matches.hasNext()) {
                const QString metric = matches.next().captured();
                const bool served = shown.contains("\n" + metric + "{") ||
                                    shown.contains("\n" + metric + " ") ||
                                    shown.contains("# TYPE " + metric + " ");
                QVERIFY2(served, qPrintable(metric));
            }
        }
    }

    std::unique_ptr<TestDatabase> info;
    std::unique_ptr<HostProgram> program;
    QString place;
    QString shown; ///< the metrics as last read
};

QTEST_GUILESS_MAIN(TestMetrics)
#include "tst_metrics.moc"
