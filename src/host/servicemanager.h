#pragma once

#include <QObject>
#include <QString>
#include <QTime>
#include <QTimer>

class SignalWatcher;

/**
 * Reports the host's state to the service manager, systemd. Does nothing if systemd did not start
 * the host. Lives in the main thread. Other threads call its slots through queued connections.
 */
class ServiceManager : public QObject
{
    Q_OBJECT

public:
    ServiceManager();

    /// Reports stops, reloads, pauses and resumes when the signals that request them arrive.
    void follow(const SignalWatcher &signalWatcher);

    /// Returns the interval at which to feed the watchdog; 0 without a watchdog.
    static int watchdogIntervalMs();

public Q_SLOTS:
    /// Reports that the host is ready, also after a reload.
    void ready();
    /// Like ready(), but first stores the current time as the time of the last scan.
    void scanned();
    void feedWatchdog();

private:
    void setPaused(bool paused);
    void reloading();
    void stopping();
    QString status() const;
    void sendStatus();

    QTimer refresh;
    QTime lastScan; // invalid before the first scan has ended
    bool isPaused = false;
    QString sent; // the status last sent
};
