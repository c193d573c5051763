#pragma once

#include <QDateTime>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

/// The largest Unix time whose year has four digits. A "lastGenerated" above it is a mistake.
constexpr qint64 endOfYear9999 = 253402300799;

struct ReportSettings;
struct ScheduleRule;

/// Decides when a report is due. Both functions depend only on their arguments and the local time
/// zone.
struct ReportSchedule {
    QVector<ScheduleRule> (*rules)(const ReportSettings &settings, const QDateTime &now);
    QDateTime (*nextDue)(const ReportSettings &settings, const QDateTime &now);
};

/**
 * The schedule of both reports: once a day, at the first tick at or after the configured time.
 *
 * Today's report counts as made unless "lastGenerated" is more than sixty seconds before today's
 * scheduled moment.
 */
extern const ReportSchedule onceADay;

/// A report's settings in the table `vars`, and the schedule that depends on them.
struct ReportSettings {
    bool enabled = false;
    QStringList recipients; ///< as stored, not trimmed; empty parts dropped
    /// Invalid if missing or unreadable. The report is then due at the day's first tick.
    QTime time;
    qint64 lastGenerated = 0; ///< seconds since the epoch
    QString uids;             ///< read, but used by no query
    const ReportSchedule *schedule = &onceADay;

    /// Returns the settings stored in `values`, whose keys include `prefix`.
    static ReportSettings fromValues(const QMap<QString, QVariant> &values, const QString &prefix);
};

/// Returns the recipients that get a mail: those of `stored`, trimmed, without blank ones.
QStringList recipientsToMail(const QStringList &stored);

/// Whether a report is due and, if not, why.
enum class ScheduleVerdict { Due, Disabled, NoRecipients, TooEarly, AlreadyGenerated };

/// One condition of the schedule, and the verdict if it is not met.
struct ScheduleRule {
    ScheduleVerdict otherwise;
    bool met;
};

/// Returns every condition in order of precedence: the first one that is not met decides the
/// verdict.
QVector<ScheduleRule> scheduleRules(const ReportSettings &settings, const QDateTime &now);

/// Returns Due if the report is due at `now`, or else why it is not.
ScheduleVerdict scheduleVerdict(const ReportSettings &settings, const QDateTime &now);

/**
 * Returns ReportRun::now for a run that was due at `dueAt` and has waited until `now`: `now` if the
 * report is due at `now`, otherwise `dueAt`.
 *
 * A report that was due late in the evening and waited past midnight is thus made for the day on
 * which it was due, unless it is already due on the new day.
 */
QDateTime momentAfterWait(const ReportSettings &settings, const QDateTime &dueAt,
                          const QDateTime &now);

/// Returns when the report is due next, or `now` if it is already due. Assumes that its settings do
/// not change. Returns an invalid moment if it is never due.
QDateTime nextDue(const ReportSettings &settings, const QDateTime &now);

/**
 * Returns the first moment of `date` at which a local clock shows `time` or later. The day may have
 * 23, 24 or 25 hours. An invalid `time` means the start of the day.
 *
 * If clocks are set back and `time` occurs twice, returns the first occurrence. If the second one
 * counted, a report made at the first one would be due again. If clocks are set forward and skip
 * `time`, returns the end of the gap.
 */
QDateTime scheduledMoment(const QDate &date, const QTime &time);
