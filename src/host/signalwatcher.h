#pragma once

#include <QObject>

class QSocketNotifier;

/**
 * Brings the process's signals into the event loop: SIGINT and SIGTERM ask to stop, SIGUSR1 to
 * pause, SIGUSR2 to resume. A signal that comes before watch() is delivered with it.
 *
 * One object at a time; when it goes, the signals have their default effect again.
 */
class SignalWatcher : public QObject
{
    Q_OBJECT

public:
    explicit SignalWatcher(QObject *parent = nullptr);
    ~SignalWatcher() override;

public Q_SLOTS:
    void watch();

Q_SIGNALS:
    void stopRequested();
    void pauseRequested();
    void resumeRequested();

private:
    void deliver();

    int readEnd = -1;
    QSocketNotifier *notifier = nullptr;
};
