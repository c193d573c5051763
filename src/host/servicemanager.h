#pragma once

#include <QObject>
#include <QString>
#include <QTime>
#include <QTimer>

class SignalWatcher;

/**
 * Reports the host's state to the service manager, systemd. Does nothing if systemd did not start
 * the host. Main thread only; slots are called from other threads through queued connections.
 */
class ServiceManager : public QObject
{
    Q_OBJECT

public:
    ServiceManager();

    /// Reports stops, reloads and pauses as their signals arrive.
    void follow(const SignalWatcher &signalWatcher);

    /// Returns how often the watchdog must be fed; 0 without a watchdog.
    static int watchdogIntervalMs();

public Q_SLOTS:
    void ready();
    /// Like ready(), after a scan.
    void scanned();
    void feedWatchdog();

private:
    void setPaused(bool paused);
    void reloading();
    void stopping();
    QString status() const;
    void sendStatus();

    QTimer refresh;
    QTime lastScan; // invalid before the first
    bool isPaused = false;
    QString sent; // the status last sent
};
