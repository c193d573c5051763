#pragma once

#include <QElapsedTimer>
#include <QObject>

class QTimer;

/**
 * Follows a plug-in's scans of the schemas.
 *
 * A scan begins when the plug-in's timer "scan" or "soonScan" fires, and continues while the timer
 * "nextSlice" runs. The interfaces between host and plug-in have no event for the beginning or the
 * end of a scan, so the names of these timers are a contract. Lives in the plug-in's thread and
 * must not outlive the plug-in.
 */
class ScanWatch : public QObject
{
    Q_OBJECT

public:
    explicit ScanWatch(QObject &plugin);

    /// Starts a scan at once unless one is running. In either case, scanned() is emitted when the
    /// scan has ended.
    void scanNow();

    /// Call it when the plug-in has been paused, which ends a running scan; scanned() is not
    /// emitted for that scan.
    void forgetScan();

    /// Returns when the next scan begins, in Unix seconds. Returns the current time while a scan
    /// runs, and 0 if no scan is scheduled.
    qint64 nextScan() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void scanned(qint64 milliseconds);

private:
    void begin();
    void endIfDone();

    QObject &plugin;
    QTimer *nextSlice;        // null if the plug-in has none: each scan is then a single step
    QElapsedTimer sinceBegin; // valid while a scan runs
};
