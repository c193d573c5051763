// The host with many customers whose reports are all due at the same time. Compares its time with
// that of the Python program, which makes only the daily reports. Also measures the host's memory,
// and how fast it stops while it makes reports.

#include "support/fleet.h"
#include "support/hostrun.h"
#include "support/measure.h"
#include "support/peerreport.h"
#include "support/tablerow.h"

#include "common/filelimit.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <ctime>

namespace
{

const QString sinceFirstFigure = QStringLiteral("sinceFirst");

struct Size {
    int customers;
    int people;
    int days;

    QString text() const { return QStringLiteral("%1 customers of %2").arg(customers).arg(people); }
};

/// Runs the host until both reports of all customers are queued, and checks the mails and
/// workbooks.
Bench::Figures serve(const Fleet &fleet)
{
    const QTemporaryDir folder;
    fleet.reset();
    HostRun host(fleet, folder.path());
    const Bench::Figures figures = host.waitForAll();
    host.stop();
    fleet.check(folder.path());
    return figures;
}

/// Runs the host and the Python program in turn.
void compareWithPeer(const Bench::Plan &plan)
{
    const Size size = plan.quick ? Size{4, 5, 3} : Size{120, 50, 30};
    const Fleet fleet(size.customers, size.people, size.days);
    QVector<Bench::Figures> ours;
    QVector<Bench::Figures> theirs;
    for (int round = 0; round < plan.pairs; ++round) {
        const QTemporaryDir folder;
        ours.append(serve(fleet));
        fleet.reset();
        theirs.append(Bench::child(
            PeerReport::fleet(fleet.prefix(), size.customers, size.days, folder.path())));
        Bench::require(fleet.queuedMails() == size.customers, QStringLiteral("mails missing"));
    }
    const double peer = Bench::median(theirs, Bench::secondsFigure);
    const auto against = QStringLiteral("Python, the daily one alone, all cores");
    const QString work = size.text() + QStringLiteral(", both reports: time from the ");
    const auto row = [&](const QString &since, const QString &figure) {
        TableRow{work + since, Bench::median(ours, figure), against, peer, QStringLiteral("s"), 0.6}
            .print();
    };
    row(QStringLiteral("scan's end"), Bench::secondsFigure);
    row(QStringLiteral("first worker"), sinceFirstFigure);
}

/// Stops a host while it makes reports, and checks that a second host makes the missing reports.
/// Returns how many seconds the stop took.
double stopAmidst(const Fleet &fleet)
{
    const QTemporaryDir folder;
    fleet.reset();
    HostRun host(fleet, folder.path());
    host.waitForFiles(fleet.customers() * 2 / 3);
    const double seconds = host.stop();
    HostRun next(fleet, folder.path());
    next.waitForAll();
    next.stop();
    fleet.check(folder.path());
    return seconds;
}

void holdToLimits(const Bench::Plan &plan)
{
    const Size size = plan.quick ? Size{6, 10, 3} : Size{500, 200, 30};
    const Fleet fleet(size.customers, size.people, size.days);
    const auto row = [&](const QString &what, double figure, double limit, const QString &unit) {
        TableRow{size.text() + what, figure, QStringLiteral("limit"), limit, unit, 1}.print();
    };
    row(QStringLiteral(": the host's peak memory"), serve(fleet)[Bench::peakFigure], 200,
        QStringLiteral("MiB"));
    row(QStringLiteral(": a stop amidst"), stopAmidst(fleet), 2, QStringLiteral("s"));
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("TZ", "Europe/Bratislava");
    tzset();
    const QCoreApplication application(argc, argv);
    const Bench::Plan plan(QCoreApplication::arguments());
    if (!plan.run.isEmpty())
        return PeerReport::run(plan.run);
    raiseFileLimit();
    compareWithPeer(plan);
    holdToLimits(plan);
    return 0;
}
