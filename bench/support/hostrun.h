#pragma once

#include "support/fleet.h"
#include "support/measure.h"

#include <QElapsedTimer>
#include <QProcess>

/**
 * Runs `autoreport serve` for a fleet, in a process of its own.
 *
 * The host's clock starts at the fleet's moment. The host writes its reports to `folder`. If the
 * host fails, or is not done within half an hour, ends the program.
 */
class HostRun
{
public:
    HostRun(const Fleet &servedFleet, const QString &reportFolder);
    ~HostRun();
    Q_DISABLE_COPY_MOVE(HostRun)

    /// Waits until `files` workbooks are saved.
    void waitForFiles(int files);
    /// Waits until both reports of every customer are queued. Returns as "seconds" the time
    /// since the scan created the last worker, as "sinceFirst" the time since it created the first
    /// worker, and as "peakMib" the host's peak memory.
    Bench::Figures waitForAll();
    /// Stops the host. Returns how many seconds this took.
    double stop();

private:
    void followLog();
    double peakMib() const;

    const Fleet &fleet;
    const QString folder;
    QProcess process;
    QElapsedTimer timer;
    int workers = 0;        ///< created so far
    double firstWorker = 0; ///< seconds on `timer`
    double lastWorker = 0;  ///< seconds on `timer`
};
