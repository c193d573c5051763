#include "reports/reportschedule.h"

#include "common/period.h"
#include "reports/storedoption.h"

#include <algorithm>

namespace
{

constexpr qint64 toleranceSeconds = 60;
constexpr int secondsPerMinute = 60;

/// Returns whether the report of `date` is still to be made.
bool isOpenOn(const QDate &date, const ReportSettings &settings)
{
    const qint64 scheduled = scheduledMoment(date, settings.time).toSecsSinceEpoch();
    return settings.lastGenerated < scheduled - toleranceSeconds;
}

QVector<ScheduleRule> dailyRules(const ReportSettings &settings, const QDateTime &now)
{
    return {{ScheduleVerdict::Disabled, settings.enabled},
            {ScheduleVerdict::NoRecipients, !settings.recipients.isEmpty()},
            // An invalid time compares as earlier than any valid one.
            {ScheduleVerdict::TooEarly, !(now.time() < settings.time)},
            {ScheduleVerdict::AlreadyGenerated, isOpenOn(now.date(), settings)}};
}

QDateTime nextDailyMoment(const ReportSettings &settings, const QDateTime &now)
{
    if (!settings.enabled || settings.recipients.isEmpty())
        return {};
    if (settings.lastGenerated > endOfYear9999) // never due again
        return {};
    // If the clock was wrong, `lastGenerated` may be in the future. Then no report is due before
    // the day of `lastGenerated`.
    const QDate last = QDateTime::fromSecsSinceEpoch(settings.lastGenerated).date();
    QDate date = last.isValid() ? std::max(last, now.date()) : QDate();
    while (date.isValid() && !isOpenOn(date, settings))
        date = date.addDays(1);
    if (!date.isValid())
        return {};
    const QDateTime first = scheduledMoment(date, settings.time);
    if (now < first || !settings.time.isValid())
        return std::max(now, first);
    // Here `now` is not before `first`. If it still shows a time of day before the configured one,
    // the clock was set back, and the configured time of day occurs again.
    return now.time() < settings.time ? now.addMSecs(now.time().msecsTo(settings.time)) : now;
}

} // namespace

const ReportSchedule onceADay{dailyRules, nextDailyMoment};

ReportSettings ReportSettings::fromValues(const QMap<QString, QVariant> &values,
                                          const QString &prefix)
{
    static const std::vector<StoredOption<ReportSettings>> table{
        {"enabled", &ReportSettings::enabled}, {"emails", &ReportSettings::recipients},
        {"time", &ReportSettings::time},       {"lastGenerated", &ReportSettings::lastGenerated},
        {"uids", &ReportSettings::uids},
    };
    return optionsFromValues(table, values, prefix);
}

QStringList recipientsToMail(const QStringList &stored)
{
    QStringList recipients;
    for (const QString &entry : stored) {
        const QString recipient = entry.trimmed();
        if (!recipient.isEmpty())
            recipients.append(recipient);
    }
    return recipients;
}

QVector<ScheduleRule> scheduleRules(const ReportSettings &settings, const QDateTime &now)
{
    return settings.schedule->rules(settings, now);
}

ScheduleVerdict scheduleVerdict(const ReportSettings &settings, const QDateTime &now)
{
    const QVector<ScheduleRule> rules = scheduleRules(settings, now);
    const auto unmet = std::find_if(rules.cbegin(), rules.cend(),
                                    [](const ScheduleRule &rule) { return !rule.met; });
    return unmet == rules.cend() ? ScheduleVerdict::Due : unmet->otherwise;
}

QDateTime momentAfterWait(const ReportSettings &settings, const QDateTime &dueAt,
                          const QDateTime &now)
{
    return scheduleVerdict(settings, now) == ScheduleVerdict::Due ? now : dueAt;
}

QDateTime nextDue(const ReportSettings &settings, const QDateTime &now)
{
    return settings.schedule->nextDue(settings, now);
}

QDateTime scheduledMoment(const QDate &date, const QTime &time)
{
    const QDateTime start = dayStart(date);
    if (!time.isValid())
        return start;

    // With the UTC offset at the start of the day, a time that occurs twice yields its first
    // occurrence.
    const qint64 asUtc = QDateTime(date, time, Qt::UTC).toMSecsSinceEpoch();
    const QDateTime early =
        QDateTime::fromMSecsSinceEpoch(asUtc - start.offsetFromUtc() * qint64(1000));
    if (early.date() == date && early.time() == time)
        return early;

    // The clock was changed earlier that day. If it skipped `time`, find the end of the gap.
    QDateTime moment(date, time);
    QTime minute(time.hour(), time.minute());
    while (!moment.isValid() && minute < QTime(23, 59)) {
        minute = minute.addSecs(secondsPerMinute);
        moment = QDateTime(date, minute);
    }
    return moment;
}
