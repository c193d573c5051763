// The cost of claiming a report before it is mailed: compares scheduled runs with an operator's
// runs, which need no claim.

#include "support/benchschema.h"
#include "support/measure.h"
#include "support/tablerow.h"

#include "reports/attenreport.h"
#include "reports/reportkind.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <ctime>
#include <memory>

namespace
{

constexpr int days = 15;

/// Deletes the mails of the last run and resets "lastGenerated".
void forget(const BenchSchema &schema, const ReportKind &kind)
{
    schema.tables().exec(QStringLiteral("DELETE FROM emails"));
    schema.tables().exec(
        QStringLiteral("INSERT INTO vars (name, value) VALUES ('%1', '0') ON DUPLICATE KEY "
                       "UPDATE value = '0'")
            .arg(kind.key("lastGenerated")));
}

double secondsOf(AttenReport &report, const ReportRun &run, const QString &path)
{
    return Bench::secondsOf([&] {
        Bench::require(report.saveWorkbook(path, run) && report.queueMails(path, run) == 1,
                       QStringLiteral("the report was not mailed"));
    });
}

double median(QVector<double> seconds)
{
    std::sort(seconds.begin(), seconds.end());
    return seconds.at(seconds.size() / 2);
}

/// Runs both sides in turn in one process, because two processes would differ by more than the two
/// sides do.
void compare(const ReportKind &kind, int people, int pairs, const QString &path)
{
    const BenchSchema schema(people, days);
    QVector<double> seconds[2];
    TestServer::onConnection(schema.name(), [&](const QSqlDatabase &database) {
        const std::unique_ptr<AttenReport> report(kind.create(database, nullptr));
        ReportRun run = runFor({QStringLiteral("office@example.com")}, BenchSchema::moment(days),
                               kind.countsWhen, database);
        run.settings.enabled = true;
        for (int i = 0; i < 2 * pairs; ++i) {
            run.isScheduled = i % 2 != 0;
            forget(schema, kind);
            seconds[run.isScheduled].append(secondsOf(*report, run, path));
        }
    });
    const QString work = QStringLiteral("%1 report of %2 people, claimed: time");
    TableRow{work.arg(QLatin1String(kind.word), QString::number(people)),
             median(seconds[1]) * 1e3,
             QStringLiteral("without a claim"),
             median(seconds[0]) * 1e3,
             QStringLiteral("ms"),
             1.02,
             2}
        .print();
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("TZ", "Europe/Bratislava");
    tzset();
    const QCoreApplication application(argc, argv);
    const Bench::Plan plan(QCoreApplication::arguments());
    Bench::failOnWarnings();
    const QTemporaryDir temporary;
    const QString path = temporary.filePath(QStringLiteral("report.xlsx"));
    const QVector<int> sizes = plan.quick ? QVector<int>{5} : QVector<int>{20, 50, 400};
    for (const ReportKind *kind : reportKinds()) {
        for (const int people : sizes)
            compare(*kind, people, plan.quick ? 1 : 40000 / (people + 50), path);
    }
    return 0;
}
