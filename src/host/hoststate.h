#pragma once

#include "inquiry/hostanswer.h"

#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>

#include <array>
#include <mutex>

struct ReportKind;

/// A histogram of durations.
struct Durations {
    static constexpr std::array<double, 11> boundsSeconds{0.1, 0.5, 1,   2,   5,  10,
                                                          30,  60,  120, 300, 900};
    /// counts[i] is the number of durations up to boundsSeconds[i] and above the previous bound.
    /// The last count is the number of durations above all bounds.
    std::array<quint64, boundsSeconds.size() + 1> counts{};
    double sumSeconds = 0;

    void add(double seconds);
};

/// The runs of one kind of report for all schemas since the host started.
struct RunTotals {
    quint64 made = 0;
    quint64 mails = 0;
    QMap<QString, quint64> failed; ///< by cause
    Durations durations;           ///< of all runs, including failed ones
};

/// What the host knows about one schema. Points in time are Unix seconds; 0 means never.
struct SchemaState {
    QMap<QString, qint64> lastSuccess; ///< since the host started, by kind of report
    SchemaAnswer answer;               ///< what a command learns of the schema
    bool isQueueKnown = false;
    int mailsWaiting = 0;
    qint64 oldestMail = 0;
};

struct HostSnapshot {
    QMap<QString, RunTotals> runs;      ///< by kind of report; each kind has an entry
    QMap<QString, SchemaState> schemas; ///< by token
    Durations scans;
    qint64 lastScan = 0;
    qint64 nextScan = 0; ///< 0 if no scan is scheduled, for example while paused
    QString scanProblem; ///< why the last scan ended early; empty if it did not
    bool isPaused = false;
};

/**
 * What a host knows about the reports that it makes.
 *
 * Reads the log, because the interfaces between host and plug-in do not report runs. Each run logs
 * a line at its end, in a thread that is named after the schema, except in single-database mode.
 * Thread-safe.
 */
class HostState
{
public:
    /// `singleToken` is the token for runs in threads that are not named after a schema.
    explicit HostState(const QString &singleToken);

    /// Evaluates a log line of the calling thread.
    void take(QtMsgType type, const QString &message);
    void takeScan(qint64 milliseconds);
    void takeNextScan(qint64 moment);
    void takePaused(bool paused);
    void takeQueue(const QString &token, int waiting, qint64 oldest);

    HostSnapshot snapshot() const;

private:
    /// What the current run of a schema has logged.
    struct Run {
        QString cause; ///< of the failure logged last, or `leftToOthers`
        QStringList warnings;

        void warn(const QString &text);
    };

    void takeReport(const ReportKind &kind, QtMsgType type, const QString &message);
    void takeWorker(QtMsgType type, const QString &message);
    void endRun(const QString &kind, double seconds, int rows, quint64 mails);
    QString token() const;

    const QString singleToken;
    mutable std::mutex mutex; // guards the members below
    HostSnapshot current;
    QHash<QString, Run> running; // by token
    QString scanProblem;         // of the running scan
};
