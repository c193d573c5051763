#include "reports/attenreport.h"
#include "reports/reportkind.h"
#include "reports/reportlock.h"

#include "support/fullgate.h"
#include "support/reportbench.h"
#include "support/testhost.h"

#include <QScopeGuard>
#include <QThread>

namespace
{

/// One tick of a report, over a connection of this thread's own.
void tick(const ReportKind &kind, const QString &schema)
{
    {
        QSqlDatabase database = TestServer::addConnection("waiting", schema);
        database.open();
        const std::unique_ptr<AttenReport> report(kind.create(database, nullptr));
        report->doWork();
    }
    QSqlDatabase::removeDatabase("waiting");
}

} // namespace

/// Both reports at the process's gate, while others hold all of its places.
class TestWaitingReports : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    void waits_data()
    {
        addColumns<QString, bool>("report", "stopped");
        for (const ReportKind *kind : reportKinds()) {
            const QString word = kind->word;
            addRow(qPrintable(word + ", goes out later"), word, false);
            addRow(qPrintable(word + ", stopped"), word, true);
        }
    }

    void waits()
    {
        QFETCH(QString, report);
        QFETCH(bool, stopped);
        const ReportKind &kind = *reportKindOf(report);
        addPeople(bench->schema, 2);
        bench->set(kind.key("enabled"), "1");
        bench->set(kind.key("emails"), "a@firma.sk");
        FullGate gate;
        const std::unique_ptr<QThread> thread(
            QThread::create([this, &kind] { tick(kind, bench->schema.name()); }));
        const auto ended = qScopeGuard([&thread] {
            thread->requestInterruption();
            thread->wait();
        });
        thread->start();
        QTRY_COMPARE_WITH_TIMEOUT(bench->log.countContaining("doWork()"), 1, patienceMs);
        QVERIFY(!thread->wait(300));
        QCOMPARE(bench->mails(), 0);
        // Another host may make the report meanwhile.
        ReportLock lock(bench->database, kind.className);
        QVERIFY(lock.acquire());
        lock.release();

        if (stopped)
            thread->requestInterruption();
        else
            gate.open();
        QVERIFY(thread->wait(stopped ? 2000 : patienceMs));
        QCOMPARE(bench->mails(), stopped ? 0 : 1);
    }
};

QTEST_GUILESS_MAIN(TestWaitingReports)
#include "tst_waitingreports.moc"
