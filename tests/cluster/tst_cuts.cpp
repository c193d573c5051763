#include "worker/autoreportworker.h"

#include "support/hostprogram.h"
#include "support/relay.h"
#include "support/reportbench.h"
#include "support/testhost.h"

#include <QDir>

Q_DECLARE_METATYPE(Relay::Fault)

/// A host that loses its connection, or its life, at each statement of a tick with both reports.
class TestCuts : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    /// The first function, because it starts processes: ThreadSanitizer's memory grows with each
    /// thread, until the system refuses to copy it for a child.
    void hostKilled()
    {
        int point = 1;
        for (;; ++point) {
            begin();
            relay->failAt(bench->schema.name().toUtf8(), "", Relay::Fault::Silence, point);
            HostProgram host;
            QStringList options = TestServer::options(bench->schema.name());
            options[options.indexOf("--db-port") + 1] = QString::number(relay->port());
            host.start(QStringList{"serve", "--single"} + options);
            const auto isOver = [&] {
                return relay->failures() == point || stored() == made;
            };
            QVERIFY(QTest::qWaitFor(isOver, patienceMs));
            // Behind the commit there are few statements: all are tried when none comes for a
            // while.
            const bool wasHit = QTest::qWaitFor([&] { return relay->failures() == point; }, 200);
            host.send(SIGKILL);
            host.ended();
            relay->thaw(); // what the host had sent reaches the server, and the end of it as well
            checkAgreement();
            goOnElsewhere();
            checkOutcome();
            if (!wasHit || QTest::currentTestFailed())
                break;
        }
        QTest::setBenchmarkResult(point - 1, QTest::Events); // printed
        QVERIFY(point > 40);
    }

    void connectionEnds_data()
    {
        addColumns<Relay::Fault, QString>("fault", "options");
        const QString reconnects("MYSQL_OPT_RECONNECT=1");
        addRow("before the statement", Relay::Fault::Cut, "");
        addRow("before it, driver reconnects", Relay::Fault::Cut, reconnects);
        addRow("before its answer", Relay::Fault::CutAnswer, "");
        addRow("before its answer, driver reconnects", Relay::Fault::CutAnswer, reconnects);
    }

    void connectionEnds()
    {
        QFETCH(Relay::Fault, fault);
        QFETCH(QString, options);
        int point = 1;
        for (;; ++point) {
            begin();
            relay->failAt(bench->schema.name().toUtf8(), "", fault, point);
            AutoReportWorker host(config(relay->port(), options), nullptr);
            const bool isUp = host.start();
            if (isUp)
                host.activateReports();
            const bool wasHit = relay->failures() == point;
            checkAgreement();
            // In turns, the same host goes on with its next tick, or another host takes over.
            const bool staysUp = isUp && point % 2 == 0;
            if (wasHit && staysUp)
                tickUntilMade(host);
            host.stop();
            if (wasHit && !staysUp)
                goOnElsewhere();
            checkOutcome();
            if (!wasHit || QTest::currentTestFailed())
                break;
        }
        QTest::setBenchmarkResult(point - 1, QTest::Events); // printed
        QVERIFY(point > 40);
    }

private:
    /// Number of mails and of addresses by subject, and which reports are marked.
    const QString made = "3+3 3+3 DailyAtten,MonthlyAtten";

    void prepare() override
    {
        relay = std::make_unique<Relay>(TestServer::port());
        addPeople(bench->schema, 3);
        for (const char *report : {"DailyAtten", "MonthlyAtten"}) {
            const QString prefix = QString("autoReport.%1.").arg(report);
            bench->set(prefix + "enabled", "1");
            bench->set(prefix + "emails", "a@firma.sk,b@firma.sk,c@firma.sk");
        }
    }

    void begin()
    {
        makeDue(bench->schema);
        QDir folder(bench->temporary.path());
        for (const QString &file : folder.entryList(QDir::Files | QDir::Hidden))
            folder.remove(file);
    }

    AutoReportDbConfig config(int port, const QString &options = {}) const
    {
        const QString schema = bench->schema.name();
        return {"QMYSQL", "host",           TestServer::host,     port,
                schema,   TestServer::user, TestServer::password, options};
    }

    /// By one statement, since a host may be writing.
    QString stored() const
    {
        const QString queue = "(SELECT CONCAT(COUNT(*), '+', COUNT(DISTINCT `to`)) FROM emails "
                              "WHERE subject LIKE '%1 %')";
        const QString marks = "(SELECT GROUP_CONCAT(SUBSTRING_INDEX(name, '.', -2) ORDER BY name) "
                              "FROM vars WHERE name LIKE '%.lastGenerated' AND value > 0)";
        return bench->schema
            .value("SELECT CONCAT_WS(' ', " + queue.arg("Denný") + ',' + queue.arg("Mesačný") +
                   ',' + marks + ')')
            .toString()
            .remove(".lastGenerated");
    }

    /// A report has all its mails and its mark, or neither.
    void checkAgreement() const
    {
        const QStringList possible{"0+0 0+0", "3+3 0+0 DailyAtten", "0+0 3+3 MonthlyAtten", made};
        const QString found = stored();
        QVERIFY2(possible.contains(found), qPrintable(found));
    }

    void tickUntilMade(AutoReportWorker &host) const
    {
        const auto tick = [&] {
            host.activateReports();
            return stored() == made;
        };
        // The server needs its time to notice that a connection is gone, and its lock with it.
        QVERIFY2(QTest::qWaitFor(tick, patienceMs), qPrintable(stored()));
    }

    void goOnElsewhere() const
    {
        AutoReportWorker host(config(TestServer::port()), nullptr);
        QVERIFY(host.start());
        tickUntilMade(host);
        host.stop();
    }

    void checkOutcome() const
    {
        QCOMPARE(stored(), made);
        const QDate month = QDate::currentDate();
        QStringList expected;
        for (const char *report : {"DennyReport", "MesReportDochadzky"})
            expected += QFileInfo(bench->file(report, month)).fileName();
        const QDir folder(bench->temporary.path());
        const auto all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
        QCOMPARE(folder.entryList(all, QDir::Name).join(' '), expected.join(' '));
    }

    std::unique_ptr<Relay> relay;
};

QTEST_GUILESS_MAIN(TestCuts)
#include "tst_cuts.moc"
