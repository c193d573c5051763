#include "support/hostrun.h"

#include <QDir>
#include <QFile>

namespace
{

constexpr int pollMs = 10;
constexpr double limitSeconds = 1800;

double secondsOn(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

} // namespace

HostRun::HostRun(const Fleet &servedFleet, const QString &reportFolder)
    : fleet(servedFleet)
    , folder(reportFolder)
{
    QProcessEnvironment environment = TestServer::environment(fleet.moment());
    environment.insert(QStringLiteral("TMPDIR"), folder);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    timer.start();
    process.start(QStringLiteral(AUTOREPORT_PROGRAM),
                  QStringList{QStringLiteral("serve")} + TestServer::options(fleet.infoDatabase()));
    Bench::require(process.waitForStarted(), process.errorString());
}

HostRun::~HostRun()
{
    process.kill();
    process.waitForFinished();
}

/// Waits a few milliseconds for log lines, and records when workers are created.
void HostRun::followLog()
{
    Bench::require(process.state() == QProcess::Running && secondsOn(timer) < limitSeconds,
                   QStringLiteral("the host failed: ") + QString::fromUtf8(process.readAll()));
    process.waitForReadyRead(pollMs);
    while (process.canReadLine()) {
        if (!process.readLine().contains("worker created"))
            continue;
        lastWorker = secondsOn(timer);
        if (++workers == 1)
            firstWorker = lastWorker;
    }
}

void HostRun::waitForFiles(int files)
{
    QDir saved(folder, QStringLiteral("*.xlsx"), QDir::NoSort, QDir::Files);
    for (; saved.entryList().size() < files; saved.refresh())
        followLog();
}

Bench::Figures HostRun::waitForAll()
{
    const int all = 2 * fleet.customers();
    waitForFiles(all);
    while (fleet.queuedMails() < all)
        followLog();
    const double end = secondsOn(timer);
    while (workers < fleet.customers())
        followLog();
    return {{Bench::secondsFigure, end - lastWorker},
            {QStringLiteral("sinceFirst"), end - firstWorker},
            {Bench::peakFigure, peakMib()}};
}

double HostRun::peakMib() const
{
    return Bench::peakKib(process.processId()) / 1024;
}

double HostRun::stop()
{
    const double seconds = Bench::secondsOf([this] {
        process.terminate();
        process.waitForFinished(static_cast<int>(limitSeconds) * 1000);
    });
    Bench::require(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
                   QStringLiteral("the host did not end well"));
    return seconds;
}
