#pragma once

#include <QDateTime>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

/// Unix seconds that no clock reaches and that dates still hold; above, "lastGenerated" is a
/// mistake.
constexpr qint64 endOfYear9999 = 253402300799;

/// What the schedule of a report depends on, as its settings say it.
struct ReportSettings {
    bool enabled = false;
    QStringList recipients;   ///< as written, not trimmed; empty parts dropped
    QTime time;               ///< invalid when missing or unreadable: due with the day's first tick
    qint64 lastGenerated = 0; ///< seconds since the epoch
    QString uids;             ///< kept by the daily report, which asks nobody for it

    /// Out of the values of all keys that begin with `prefix`, the prefix kept in the keys.
    static ReportSettings fromValues(const QMap<QString, QVariant> &values, const QString &prefix);
};

/// Why a report is made now, or is not.
enum class ReportReason { Due, Disabled, NoRecipients, TooEarly, AlreadyGenerated };

/// One condition of the schedule, and the reason given where it is not met.
struct ScheduleRule {
    ReportReason otherwise;
    bool met;
};

/// Every condition, in the order in which they count: the first that is not met is the reason.
QVector<ScheduleRule> scheduleRules(const ReportSettings &settings, const QDateTime &now);

/**
 * The one rule of both reports: once a day, with the first tick at or after the configured time.
 *
 * A report last generated up to sixty seconds before today's scheduled moment counts as made.
 * Pure: the answer depends on the arguments and the local time zone alone.
 */
ReportReason reportReason(const ReportSettings &settings, const QDateTime &now);

/// The first moment from `now` on at which the report is due, if nothing changes until then;
/// invalid when there is none.
QDateTime nextDue(const ReportSettings &settings, const QDateTime &now);

/**
 * The first moment of `date` at which a local clock shows `time` or later, for days of 23, 24 and
 * 25 hours. An invalid time is the start of the day.
 *
 * First, because a moment later than the tick that made the report would make it again: where the
 * clock is set back the earlier of the two hours counts, where it jumps the end of the gap.
 */
QDateTime scheduledMoment(const QDate &date, const QTime &time);
