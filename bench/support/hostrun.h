#pragma once

#include "support/fleet.h"
#include "support/measure.h"

#include <QElapsedTimer>
#include <QProcess>

/**
 * `autoreport serve` at work for a fleet, in a process of its own.
 *
 * Its clock shows the fleet's moment; its reports go to `folder`. A host that fails, or is not done
 * within half an hour, ends the program.
 */
class HostRun
{
public:
    HostRun(const Fleet &servedFleet, const QString &reportFolder);
    ~HostRun();
    Q_DISABLE_COPY_MOVE(HostRun)

    /// Waits until that many workbooks are saved.
    void waitForFiles(int files);
    /// Waits until both reports of every customer are queued. Returns the "seconds" that this took
    /// from the end of the scan, "sinceFirst" from the first worker on, and "peakMib".
    Bench::Figures waitForAll();
    /// Returns how many seconds the host takes to end.
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
