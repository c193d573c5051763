#include "tool/queuedcheck.h"

#include "common/freshquery.h"
#include "common/period.h"
#include "tool/machine.h"
#include "tool/reporthistory.h"

#include <QVariant>

#include <algorithm>

namespace
{

constexpr qint64 clockToleranceSeconds =
    3600; // mails are stamped by the server's clock, reports by a host's

/// What the latest mails say about one report.
struct LatestMails {
    bool isQueuedToday = false;
    bool isKept = false; ///< a sent mail of an earlier day is still there
};

LatestMails latestMails(const QSqlDatabase &database, const ReportKind &kind,
                        const HistoryWindow &window)
{
    LatestMails found;
    QSqlQuery query = freshQuery(database);
    // Reads only the newest mails, by `mid`: the table may be large, and other columns may have no
    // index.
    query.exec(QStringLiteral("SELECT subject, created, status != 'Q' AND (sent > 0 OR done > 0) "
                              "FROM (SELECT subject, created, status, sent, done FROM emails "
                              "ORDER BY mid DESC LIMIT 200) AS latest"));
    const qint64 today = dayStartSeconds(window.now.date()) - clockToleranceSeconds;
    while (query.next()) {
        const auto subject = window.subjects.constFind(query.value(0).toString());
        if (subject == window.subjects.constEnd() || subject->kind != &kind)
            continue;
        const bool isOfToday = query.value(1).toLongLong() >= today;
        found.isQueuedToday |= isOfToday;
        found.isKept |= !isOfToday && query.value(2).toBool();
    }
    return found;
}

bool isQueuedByHost(const ReportKind &kind, const Machine &machine, const QString &token,
                    const QDate &day)
{
    return std::any_of(machine.hosts.cbegin(), machine.hosts.cend(), [&](const HostAnswer &host) {
        const auto &reports = host.schemas.value(token).reports;
        const RunOutcome last = reports.value(QLatin1String(kind.word)).last;
        return last.mails > 0 && last.moment >= dayStartSeconds(day);
    });
}

} // namespace

bool countsAsMade(const ReportSettings &settings, const HistoryWindow &window)
{
    const QDate today = window.now.date();
    const qint64 last = std::min(settings.lastGenerated, endOfYear9999);
    return QDateTime::fromSecsSinceEpoch(last).date() == today &&
           scheduleVerdict(settings, scheduledMoment(today, settings.time)) ==
               ScheduleVerdict::AlreadyGenerated;
}

void checkQueued(const QSqlDatabase &database, const ReportKind &kind,
                 const ReportSettings &settings, const Machine &machine,
                 const HistoryWindow &window, Findings &findings)
{
    if (!countsAsMade(settings, window) ||
        isQueuedByHost(kind, machine, findings.subject, window.now.date()))
        return;
    const LatestMails mails = latestMails(database, kind, window);
    if (!mails.isQueuedToday && mails.isKept)
        findings.add(
            Gravity::Harm, "unmailed",
            QStringLiteral("it counts as made today, but none of its mails was queued"),
            QStringLiteral("find the reason in the host's log, then run autoreport run %1 %2")
                .arg(findings.subject, QLatin1String(kind.word)));
}
