#pragma once

#include <QDateTime>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

/// Largest Unix time that QDateTime can print in four digits of the year; a "lastGenerated" above
/// it is a mistake.
constexpr qint64 endOfYear9999 = 253402300799;

struct ReportSettings;
struct ScheduleRule;

/// The rule by which a report is due. Both functions are pure but for the local time zone.
struct ReportSchedule {
    QVector<ScheduleRule> (*rules)(const ReportSettings &settings, const QDateTime &now);
    QDateTime (*nextDue)(const ReportSettings &settings, const QDateTime &now);
};

/**
 * The rule of both reports: once a day, with the first tick at or after the configured time.
 *
 * A report last generated up to sixty seconds before today's scheduled moment counts as made.
 */
extern const ReportSchedule onceADay;

/// What the schedule of a report depends on: its settings in the table `vars`.
struct ReportSettings {
    bool enabled = false;
    QStringList recipients;   ///< as written, not trimmed; empty parts dropped
    QTime time;               ///< invalid when missing or unreadable: due with the day's first tick
    qint64 lastGenerated = 0; ///< seconds since the epoch
    QString uids;             ///< kept by the daily report; no query uses it
    const ReportSchedule *schedule = &onceADay;

    /// Reads the values of all keys that begin with `prefix`; the keys keep it.
    static ReportSettings fromValues(const QMap<QString, QVariant> &values, const QString &prefix);
};

/// Returns the recipients that get a mail: trimmed, without blank ones.
QStringList recipientsToMail(const QStringList &written);

/// Why a report is made now, or is not.
enum class ScheduleVerdict { Due, Disabled, NoRecipients, TooEarly, AlreadyGenerated };

/// One condition of the schedule, and the verdict where it is not met.
struct ScheduleRule {
    ScheduleVerdict otherwise;
    bool met;
};

/// Returns every condition in order of precedence: the first that is not met is the verdict.
QVector<ScheduleRule> scheduleRules(const ReportSettings &settings, const QDateTime &now);

/// Returns whether the report is due at `now`, or else why not.
ScheduleVerdict scheduleVerdict(const ReportSettings &settings, const QDateTime &now);

/**
 * Returns the moment of a run that was due at `asked` and had to wait until `now`.
 *
 * That is `now` while the report is due then: what a run shows is of the day on which it is made. A
 * report that was due late in the evening and waited past midnight is no longer due then, and keeps
 * its own day.
 */
QDateTime momentAfterWait(const ReportSettings &settings, const QDateTime &asked,
                          const QDateTime &now);

/// Returns the first moment from `now` on at which the report is due, if nothing changes until
/// then; invalid if there is none.
QDateTime nextDue(const ReportSettings &settings, const QDateTime &now);

/**
 * Returns the first moment of `date` at which a local clock shows `time` or later, for days of 23,
 * 24 and 25 hours. An invalid time is the start of the day.
 *
 * The first, because a moment later than the tick that made the report would make it again: where
 * the clock is set back the earlier of the two hours counts, where it jumps the end of the gap.
 */
QDateTime scheduledMoment(const QDate &date, const QTime &time);
