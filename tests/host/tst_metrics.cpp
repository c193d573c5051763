#include "host/hosttest.h"

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

class TestMetrics : public HostTest
{
    Q_OBJECT

private Q_SLOTS:
    void countsRuns()
    {
        addPeople(bench->schema, 1);
        enableBothReports(bench->schema, "a@firma.sk, b@firma.sk");
        serve({"--metrics", place});
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
        QVERIFY(program->stops());
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
        enableBothReports(bench->schema, "a@firma.sk");
        bench->schema.exec(change);
        environment.insert("TMPDIR", temporary);
        serveSingle({"--metrics", place});
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
        serve({"--metrics", address});
        QVERIFY(program->ended());
        QVERIFY2(program->log.contains(text), qPrintable(program->log));
        QVERIFY(program->exitCode() != 0);
    }

private:
    void prepare() override
    {
        HostTest::prepare();
        place = "127.0.0.1:" + QString::number(freePort());
        shown.clear();
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

    QString place;
    QString shown; ///< the metrics as last read
};

QTEST_GUILESS_MAIN(TestMetrics)
#include "tst_metrics.moc"
