// Measures a thousand idle workers: the memory per worker, and how long it takes until all of them
// have ticked once.

#include "support/measure.h"
#include "support/tablerow.h"
#include "support/testserver.h"

#include "common/filelimit.h"
#include "worker/autoreportworker.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QThread>

#include <memory>
#include <vector>

namespace
{

const QString residentFigure = QStringLiteral("residentKib");

/// Workers, each in a thread of its own, as in the plug-in.
class Crew
{
public:
    Crew(int count, const QString &schema)
    {
        for (int i = 0; i < count; ++i)
            add(i, schema);
        for (const auto &thread : threads)
            thread->start(QThread::LowPriority);
    }

    ~Crew()
    {
        for (const auto &thread : threads)
            thread->quit();
        for (const auto &thread : threads)
            thread->wait();
    }
    Q_DISABLE_COPY_MOVE(Crew)

    /// Makes every worker tick, and returns when all have done so.
    void tick()
    {
        for (AutoReportWorker *worker : workers) {
            QMetaObject::invokeMethod(worker, [this, worker] {
                worker->activateReports();
                done.release();
            });
        }
        done.acquire(static_cast<int>(workers.size()));
    }

private:
    void add(int number, const QString &schema)
    {
        AutoReportDbConfig config;
        config.driverName = QStringLiteral("QMYSQL");
        config.connectionName = QStringLiteral("worker%1").arg(number);
        config.hostName = TestServer::host;
        config.port = TestServer::port();
        config.databaseName = schema;
        config.userName = TestServer::user;
        config.password = TestServer::password;
        config.connectOptions = QStringLiteral("MYSQL_OPT_RECONNECT=1;CLIENT_IGNORE_SPACE=1");

        threads.push_back(std::make_unique<QThread>());
        auto *worker = new AutoReportWorker(config, nullptr);
        worker->moveToThread(threads.back().get());
        QObject::connect(threads.back().get(), &QThread::started, worker, &AutoReportWorker::start);
        QObject::connect(threads.back().get(), &QThread::finished, worker, &AutoReportWorker::stop,
                         Qt::DirectConnection);
        QObject::connect(worker, &AutoReportWorker::finished, worker, &QObject::deleteLater);
        workers.push_back(worker);
    }

    std::vector<std::unique_ptr<QThread>> threads;
    std::vector<AutoReportWorker *> workers;
    QSemaphore done;
};

int statementsSoFar(const TestDatabase &database)
{
    return database.rows(QStringLiteral("SHOW GLOBAL STATUS LIKE 'Questions'"))[0][1].toInt();
}

void run(int count)
{
    const TestDatabase schema(TestDatabase::Tables::Schema);
    // The report is enabled, but not due before the last second of the day.
    schema.exec(QStringLiteral(
        "INSERT INTO vars (name, value) VALUES ('autoReport.DailyAtten.enabled', '1'), "
        "('autoReport.DailyAtten.emails', 'office@example.com'), "
        "('autoReport.DailyAtten.time', '23:59:59'), ('autoReport.DailyAtten.lastGenerated', "
        "'0')"));
    Bench::failOnWarnings();
    const double before = Bench::residentKib();
    Crew crew(count, schema.name());
    crew.tick(); // connects each worker and creates the objects that it keeps
    const double resident = (Bench::residentKib() - before) / count;
    const int asked = statementsSoFar(schema);
    const double seconds = Bench::secondsOf([&crew] { crew.tick(); });
    Bench::require(statementsSoFar(schema) - asked >= 2 * count,
                   QStringLiteral("not every worker has ticked"));
    Bench::print({{residentFigure, resident}, {Bench::secondsFigure, seconds}});
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const Bench::Plan plan(QCoreApplication::arguments());
    const int count = plan.quick ? 20 : 1000;
    raiseFileLimit();
    if (!plan.run.isEmpty()) {
        run(plan.run.first().toInt());
        return 0;
    }
    const auto runs = Bench::inTurn(plan.pairs, {{QString::number(count)}});
    TableRow{QStringLiteral("%1 idle workers: resident memory of each").arg(count),
             Bench::median(runs[0], residentFigure),
             QStringLiteral("limit"),
             128,
             QStringLiteral("KiB"),
             1,
             1}
        .print();
    TableRow{QStringLiteral("%1 idle workers: a tick of all").arg(count),
             Bench::median(runs[0], Bench::secondsFigure),
             QStringLiteral("limit"),
             1,
             QStringLiteral("s"),
             1}
        .print();
    return 0;
}
