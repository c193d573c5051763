#include "host/servicemanager.h"

#include "host/logsink.h"
#include "host/signalwatcher.h"
#include "host/workers.h"

#include <cstdint>
#include <ctime>

#include <systemd/sd-daemon.h>

namespace
{

constexpr int refreshMs = 15000;
constexpr int soonMs = 1000; // by then the workers that a scan has started are usually connected

void notify(const QString &state)
{
    sd_notify(0, state.toUtf8().constData()); // does nothing without a service manager
}

QString counted(int count, const char *noun)
{
    return QStringLiteral("%1 %2%3").arg(count).arg(QLatin1String(noun),
                                                    QLatin1String(count == 1 ? "" : "s"));
}

/// Returns the monotonic time in microseconds, which the service manager compares with its own
/// monotonic time.
qulonglong monotonicTime()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return qulonglong(now.tv_sec) * 1000000 + qulonglong(now.tv_nsec) / 1000;
}

} // namespace

ServiceManager::ServiceManager()
{
    refresh.setInterval(refreshMs);
    connect(&refresh, &QTimer::timeout, this, &ServiceManager::sendStatus);
}

void ServiceManager::follow(const SignalWatcher &signalWatcher)
{
    connect(&signalWatcher, &SignalWatcher::stopRequested, this, &ServiceManager::stopping);
    connect(&signalWatcher, &SignalWatcher::reloadRequested, this, &ServiceManager::reloading);
    connect(&signalWatcher, &SignalWatcher::pauseRequested, this, [this] { setPaused(true); });
    connect(&signalWatcher, &SignalWatcher::resumeRequested, this, [this] { setPaused(false); });
}

int ServiceManager::watchdogIntervalMs()
{
    std::uint64_t microseconds = 0;
    return sd_watchdog_enabled(0, &microseconds) > 0 ? int(microseconds / 3000) : 0;
}

void ServiceManager::ready()
{
    notify(QStringLiteral("READY=1"));
    sendStatus();
    refresh.start();
    QTimer::singleShot(soonMs, this, &ServiceManager::sendStatus);
}

void ServiceManager::scanned()
{
    lastScan = QTime::currentTime();
    ready();
}

void ServiceManager::setPaused(bool paused)
{
    isPaused = paused;
    sendStatus();
}

void ServiceManager::reloading()
{
    notify(QStringLiteral("RELOADING=1\nMONOTONIC_USEC=%1").arg(monotonicTime()));
}

void ServiceManager::stopping()
{
    refresh.stop();
    notify(QStringLiteral("STOPPING=1\nSTATUS=stopping"));
}

void ServiceManager::feedWatchdog()
{
    notify(QStringLiteral("WATCHDOG=1"));
}

QString ServiceManager::status() const
{
    QString text = QStringLiteral("serving ") + counted(servedTokens().size(), "schema");
    if (lastScan.isValid())
        text += QStringLiteral(", last scan ") + lastScan.toString(QStringLiteral("HH:mm"));
    text += QStringLiteral(", ") + counted(LogSink::recentProblems(), "problem");
    return isPaused ? QStringLiteral("paused; ") + text : text;
}

void ServiceManager::sendStatus()
{
    const QString now = status();
    if (now == sent)
        return;
    sent = now;
    notify(QStringLiteral("STATUS=") + now);
}
