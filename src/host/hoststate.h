#pragma once

#include <QHash>
#include <QMap>
#include <QString>

#include <array>
#include <mutex>

/// How often durations fell below each bound, as monitoring systems want it.
struct Durations {
    static constexpr std::array<double, 11> boundsSeconds{0.1, 0.5, 1,   2,   5,  10,
                                                          30,  60,  120, 300, 900};
    std::array<quint64, boundsSeconds.size() + 1> counts{}; ///< the last one: beyond every bound
    double sumSeconds = 0;

    void add(double seconds);
};

/// The runs of one kind of report since the host started, over all schemas.
struct RunTotals {
    quint64 made = 0;
    quint64 mails = 0;
    QMap<QString, quint64> failed; ///< by cause
    Durations durations;           ///< of both
};

/// What is known of one schema. Moments are Unix seconds, 0 if there was none.
struct SchemaState {
    QMap<QString, qint64> lastSuccess; ///< by kind of report; since the host started
    bool isQueueKnown = false;
    int mailsWaiting = 0;
    qint64 oldestMail = 0;
};

struct HostSnapshot {
    QMap<QString, RunTotals> runs;      ///< by kind of report: "daily", "monthly"
    QMap<QString, SchemaState> schemas; ///< by token
    Durations scans;
    qint64 lastScan = 0;
};

/**
 * What a host knows of the reports that are made in it.
 *
 * The interfaces between host and plug-in say nothing of runs, but every run ends with a log line,
 * in a thread named after its schema. Thread-safe.
 */
class HostState
{
public:
    /// `singleToken` stands for runs in threads without a schema's name.
    explicit HostState(const QString &singleToken);

    /// Takes a log line of the calling thread.
    void take(const QString &message);
    void takeScan(qint64 milliseconds);
    void takeQueue(const QString &token, int waiting, qint64 oldest);

    HostSnapshot snapshot() const;

private:
    void endRun(const QString &kind, double seconds, quint64 mails);
    QString token() const;

    const QString singleToken;
    mutable std::mutex mutex; // guards the rest
    HostSnapshot current;
    QHash<QString, QString> causes; // by token: the last logged reason for its run to fail
};
