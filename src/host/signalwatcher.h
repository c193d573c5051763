#pragma once

#include <QObject>

class QSocketNotifier;

/**
 * Turns the process's signals into Qt signals: SIGINT and SIGTERM request a stop, SIGHUP a reload,
 * SIGUSR1 a pause, SIGUSR2 a resume. Signals that arrive before watch() is called are delivered
 * afterwards.
 *
 * Only one object may exist at a time. Its destructor restores the signals' default actions.
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
    void reloadRequested();
    void pauseRequested();
    void resumeRequested();

private:
    void deliver();

    int readEnd = -1;
    QSocketNotifier *notifier = nullptr;
};
