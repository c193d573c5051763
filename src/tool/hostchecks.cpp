#include "tool/hostchecks.h"

#include "tool/hosttext.h"
#include "tool/machine.h"
#include "tool/output.h"
#include "tool/storedsettings.h"

#include <algorithm>

namespace
{

constexpr qint64 graceSeconds = 4200; // time for the hourly scan, a tick and the report itself
constexpr qint64 graceOfServed = 300; // time for a tick and the report, if a host serves the schema
// If the last tick of a worker came this long after a change, the tick before it also did: the
// worker had a whole tick to act on the change.
constexpr qint64 twoTicksSeconds = 120;
// A scan may visit the schema before a change and end after it.
constexpr qint64 longestScanSeconds = 60;
const char *const scanAtOnce = "wait, or let the host scan at once: systemctl reload autoreport";

/// Returns whether a report may count as made although its run failed for this cause. The monthly
/// report counts as made even if no mail was queued.
bool mayCount(const QString &cause)
{
    return cause == QLatin1String("mail") || cause == QLatin1String("recipients");
}

/// Adds a finding if today's run failed, unless another run has made the report. That is certain if
/// the report counts as made and a run that fails for this cause never makes it count.
void checkLastRun(const RunOutcome &last, const StoredSettings &stored, const QDateTime &now,
                  const QString &command, Findings &findings)
{
    const ReportSettings &settings = stored.settings;
    const qint64 scheduled = scheduledMoment(now.date(), settings.time).toSecsSinceEpoch();
    const bool isOfToday = last.moment >= scheduled && settings.lastGenerated <= last.moment;
    if (last.cause.isEmpty() || !isOfToday)
        return;
    const bool isTriedAgain = scheduleVerdict(settings, now) == ScheduleVerdict::Due;
    if (!isTriedAgain && !mayCount(last.cause))
        return;
    findings.add(Gravity::Obstacle, "failed",
                 QStringLiteral("its last run, at %1, failed: %2")
                     .arg(momentText(last.moment), last.text.isEmpty() ? last.cause : last.text),
                 isTriedAgain ? QStringLiteral("fix that; the host tries again every minute")
                              : QStringLiteral("fix that, then ") + command);
}

/// Checks whether the last run queued only some of its mails.
void checkPart(const ReportAnswer &runs, Findings &findings)
{
    const RunOutcome &failure = runs.lastFailure;
    if (failure.mails > 0 && failure.moment == runs.last.moment)
        findings.add(
            Gravity::Harm, "failed",
            QStringLiteral("its last run, at %1, queued only %2 of its mails: %3")
                .arg(momentText(failure.moment), QString::number(failure.mails), failure.text),
            QStringLiteral("fix that before the next run, and send the missing mails by hand"));
}

void checkServed(const HostAnswer &host, const ReportKind &kind, const StoredSettings &stored,
                 const QDateTime &now, Findings &findings)
{
    const SchemaAnswer schema = host.schemas.value(findings.subject);
    if (host.isPaused)
        findings.add(Gravity::Obstacle, "paused", QStringLiteral("the host is paused"),
                     QStringLiteral("resume it: systemctl kill -s SIGUSR2 autoreport"));
    if (schema.problemMoment > schema.lastTick)
        findings.add(Gravity::Obstacle, "worker",
                     QStringLiteral("the host's worker has been unable to work since %1: %2")
                         .arg(momentText(schema.problemMoment), schema.problem),
                     QStringLiteral("check that the server answers; the host tries again every "
                                    "minute"));
    checkPart(schema.reports.value(QLatin1String(kind.word)), findings);
    checkLastRun(
        schema.reports.value(QLatin1String(kind.word)).last, stored, now,
        QStringLiteral("autoreport run %1 %2").arg(findings.subject, QLatin1String(kind.word)),
        findings);
}

bool wasMissed(const ReportSettings &settings, const QDate &day)
{
    return scheduleVerdict(settings, scheduledMoment(day, settings.time)) == ScheduleVerdict::Due;
}

/// Returns whether the report was missed on the day before `day`, too. If so, the report is not
/// merely waiting for the next scan or tick. The age of the settings cannot be used instead,
/// because the product may write them all the time.
bool isMissedLonger(const ReportSettings &settings, const QDate &day)
{
    return settings.lastGenerated != 0 && wasMissed(settings, day.addDays(-1));
}

void checkScan(const HostAnswer &host, const StoredSettings &stored, const QDateTime &now,
               const SecondsSinceChange &sinceChange, Findings &findings)
{
    const ReportSettings &settings = stored.settings;
    const bool isPast = scheduledMoment(now.date(), settings.time) <= now;
    const qint64 scanAge = host.moment - host.lastScan;
    if (isMissedLonger(settings, now.date().addDays(isPast ? 0 : -1)) ||
        sinceChange() - longestScanSeconds > scanAge)
        findings.add(
            Gravity::Obstacle, "scan",
            QStringLiteral("the host's last scan, at %1, did not find the schema, or could not "
                           "open its database")
                .arg(momentText(host.lastScan)),
            QStringLiteral("read the lines of the host's log about '%1' or its database, "
                           "correct the schema's row in the table schemas or the rights of "
                           "its account, then systemctl reload autoreport")
                .arg(findings.subject));
    else
        findings.add(Gravity::Waiting, "scan",
                     QStringLiteral("the host has not found the schema yet: it last scanned at "
                                    "%1, and scans again at %2")
                         .arg(momentText(host.lastScan), momentText(host.nextScan)),
                     QLatin1String(scanAtOnce));
}

/// Adds a finding that says why the host does not serve the schema.
void checkUnserved(const HostAnswer &host, const StoredSettings &stored, const QDateTime &now,
                   const SecondsSinceChange &sinceChange, Findings &findings)
{
    const SchemaAnswer schema = host.schemas.value(findings.subject);
    if (schema.problemMoment != 0)
        findings.add(Gravity::Obstacle, "worker",
                     QStringLiteral("the host's worker ended at %1: %2")
                         .arg(momentText(schema.problemMoment), schema.problem),
                     QStringLiteral("fix that, then systemctl restart autoreport"));
    else if (host.isPaused)
        findings.add(Gravity::Obstacle, "paused",
                     QStringLiteral("the host is paused and has not found the schema yet"),
                     QStringLiteral("resume it: systemctl kill -s SIGUSR2 autoreport"));
    else if (!host.scanProblem.isEmpty())
        findings.add(Gravity::Obstacle, "scan",
                     QStringLiteral("the host's last scan, at %1, ended early: %2")
                         .arg(momentText(host.lastScan), host.scanProblem),
                     QStringLiteral("fix that, then systemctl reload autoreport"));
    else if (host.lastScan == 0)
        findings.add(Gravity::Waiting, "scan",
                     QStringLiteral("the host has not finished its first scan"),
                     QStringLiteral("wait"));
    else
        checkScan(host, stored, now, sinceChange, findings);
}

/// Returns when the report should have gone out; invalid if it is not overdue.
QDateTime overdueSince(const ReportSettings &settings, const QDateTime &now, qint64 grace)
{
    QDate day = now.date();
    if (scheduledMoment(day, settings.time).secsTo(now) < grace)
        day = day.addDays(-1);
    // Perhaps the report was not enabled before today.
    if (settings.lastGenerated == 0 && day != now.date())
        return {};
    // A report that was made on an earlier day, before its time was changed to a later one, is not
    // overdue.
    const bool isMade = QDateTime::fromSecsSinceEpoch(settings.lastGenerated).date() == day;
    if (isMade && day != now.date())
        return {};
    return wasMissed(settings, day) ? scheduledMoment(day, settings.time) : QDateTime();
}

/// Returns whether a change made `changeAge` seconds ago is so recent that the host might not know
/// it yet.
bool isTooNew(qint64 changeAge, const HostAnswer *host, const QString &token)
{
    if (!host)
        return changeAge < graceSeconds;
    const qint64 tickAge = host->moment - host->schemas.value(token).lastTick;
    return changeAge < graceOfServed && changeAge < tickAge + twoTicksSeconds;
}

void checkOverdue(const StoredSettings &stored, const Machine &machine, const QDateTime &now,
                  const SecondsSinceChange &sinceChange, Findings &findings)
{
    const HostAnswer *host = machine.hostOf(findings.subject);
    const bool isServed = host != nullptr;
    const QDateTime since =
        overdueSince(stored.settings, now, isServed ? graceOfServed : graceSeconds);
    if (!since.isValid())
        return;
    // Perhaps the report was enabled, or its time was changed, just now.
    if (!isMissedLonger(stored.settings, since.date()) &&
        isTooNew(sinceChange(), host, findings.subject)) {
        findings.add(Gravity::Waiting, "due",
                     QStringLiteral("it has been due since %1, but the settings were only just "
                                    "stored: a host %2")
                         .arg(Output::exactMoment(since),
                              isServed ? QStringLiteral("makes it within a minute")
                                       : QStringLiteral("finds it within an hour")),
                     isServed ? QStringLiteral("wait a minute") : QLatin1String(scanAtOnce));
        return;
    }
    findings.add(Gravity::Obstacle, "overdue",
                 QStringLiteral("no host has made it, though it has been due since %1%2")
                     .arg(Output::exactMoment(since),
                          machine.hosts.isEmpty()
                              ? QStringLiteral(", and no host on this machine answers")
                              : QString()),
                 QStringLiteral("check that autoreport serve is running, and read the lines of "
                                "its log that begin with '%1: '")
                     .arg(findings.subject));
}

} // namespace

void checkHosts(const ReportKind &kind, const StoredSettings &stored, const Machine &machine,
                const QDateTime &now, const SecondsSinceChange &sinceChange, Findings &findings)
{
    const int before = findings.list.size();
    if (const HostAnswer *host = machine.hostOf(findings.subject))
        checkServed(*host, kind, stored, now, findings);
    else if (!machine.hosts.isEmpty())
        checkUnserved(machine.hosts.first(), stored, now, sinceChange, findings);
    if (findings.list.size() == before)
        checkOverdue(stored, machine, now, sinceChange, findings);
}

bool wentOut(const ReportKind &kind, const ReportSettings &settings, const Machine &machine,
             const QString &token, const QDateTime &now)
{
    const QDateTime today = scheduledMoment(now.date(), settings.time);
    const QDateTime last =
        today <= now ? today : scheduledMoment(now.date().addDays(-1), settings.time);
    if (scheduleVerdict(settings, last) != ScheduleVerdict::AlreadyGenerated)
        return false;
    const HostAnswer *host = machine.hostOf(token);
    return !host ||
           host->schemas.value(token).reports.value(QLatin1String(kind.word)).last.cause.isEmpty();
}
