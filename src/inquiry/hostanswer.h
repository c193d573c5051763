#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>

#include <optional>

// What a host says about itself. Points in time are Unix seconds; 0 means never.

/// How a run of a report ended.
struct RunOutcome {
    qint64 moment = 0;
    double seconds = 0; ///< how long it took
    int mails = 0;
    /// Why mails were not queued: one of the words that the metrics use. May be empty.
    QString cause;
    QString text; ///< the run's warnings, without the report's name; empty without a cause
};

/// The runs of one report of one schema since the host started.
struct ReportAnswer {
    /// The last run that was not left to another host. Has a cause only if it queued no mail.
    RunOutcome last;
    /// The last run that did not queue all its mails. May be the run in `last`.
    RunOutcome lastFailure;
};

/// A schema that has a worker, or had one.
struct SchemaAnswer {
    bool isServed = false; ///< whether it has a worker now
    qint64 lastTick = 0;
    QString problem; ///< the worker's last warning about itself, such as a lost connection
    qint64 problemMoment = 0;
    QMap<QString, ReportAnswer> reports; ///< the keys are the reports' words, such as "daily"
};

struct HostAnswer {
    QString version;
    qint64 processId = 0;
    QString server;   ///< such as "127.0.0.1:3306"; several are separated by commas
    QString database; ///< the information database; in single-database mode, the schema
    bool isSingle = false;
    QString zone; ///< such as "Europe/Bratislava"
    int utcOffsetSeconds = 0;
    qint64 moment = 0; ///< when the host answered, by its clock
    qint64 since = 0;  ///< when the host started
    bool isPaused = false;
    qint64 lastScan = 0;
    qint64 nextScan = 0;
    QString scanProblem;              ///< why the last scan ended early; empty if it did not
    QString temporaryDirectory;       ///< for workbooks; empty if it does not exist
    bool isTemporaryAnswering = true; ///< false if the directory's disk is stalled
    bool isTemporaryWritable = false;
    /// Why the directory is not writable, or why no check could be started. Empty if the directory
    /// is usable or missing, or its disk is stalled.
    QString temporaryError;
    qint64 temporaryFreeBytes = 0;
    /// The keys are tokens or, in single-database mode, the schema's name.
    QMap<QString, SchemaAnswer> schemas;

    QJsonObject toJson() const;
    /// Returns std::nullopt if the object is not a host's answer. Ignores unknown keys.
    static std::optional<HostAnswer> fromJson(const QJsonObject &object);
};
