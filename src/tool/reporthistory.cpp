#include "tool/reporthistory.h"

#include "common/freshquery.h"
#include "common/period.h"
#include "options/language.h"
#include "reports/attenreport.h"
#include "tool/queuedcheck.h"
#include "tool/reportjob.h"

#include <algorithm>

namespace
{

QDate dateOf(qint64 seconds)
{
    return QDateTime::fromSecsSinceEpoch(std::min(seconds, endOfYear9999)).date();
}

QVector<ReportDay> emptyDays(const HistoryWindow &window)
{
    QVector<ReportDay> days(HistoryWindow::dayCount);
    for (int day = 0; day < days.size(); ++day)
        days[day].date = window.first.addDays(day);
    return days;
}

/// Adds one row of the query: the mails of a report that were queued in the same second.
void addMails(QVector<ReportDay> &days, const QDate &day, const QSqlQuery &query)
{
    const auto found = std::find_if(days.begin(), days.end(),
                                    [&day](const ReportDay &one) { return one.date == day; });
    if (found == days.end()) // the subject names no day, and the mails are dated after today
        return;
    found->lastQueuedAt = std::max(found->lastQueuedAt, query.value(1).toLongLong());
    found->queued += query.value(2).toInt();
    found->waiting += query.value(3).toInt();
    found->sent += query.value(4).toInt();
    found->lastSentAt = std::max(found->lastSentAt, query.value(5).toLongLong());
}

/// Reads the mails of all reports into their `days`. Returns the error, or an empty text.
QString readMails(const QSqlDatabase &database, const HistoryWindow &window,
                  QVector<ReportHistory> &reports)
{
    QStringList places;
    for (int i = 0; i < window.subjects.size(); ++i)
        places.append(QStringLiteral("?"));
    QSqlQuery query = freshQuery(database);
    // Leaves out the attachments, which are large.
    query.prepare(QStringLiteral("SELECT subject, created, COUNT(*), SUM(status = 'Q'), "
                                 "SUM(status != 'Q' AND (sent > 0 OR done > 0)), "
                                 "MAX(GREATEST(COALESCE(sent, 0), COALESCE(done, 0))) "
                                 "FROM emails WHERE created >= ? AND subject IN (%1) "
                                 "GROUP BY subject, created")
                      .arg(places.join(QStringLiteral(", "))));
    query.addBindValue(dayStartSeconds(window.first));
    for (auto subject = window.subjects.keyBegin(); subject != window.subjects.keyEnd(); ++subject)
        query.addBindValue(*subject);
    if (!query.exec())
        return errorOf(query).text.simplified();
    while (query.next()) {
        const auto subject = window.subjects.constFind(query.value(0).toString());
        if (subject == window.subjects.constEnd()) // equal only in the server's collation
            continue;
        const QDate day =
            subject->day.isValid() ? subject->day : dateOf(query.value(1).toLongLong());
        for (ReportHistory &report : reports) {
            if (report.status.kind == subject->kind)
                addMails(report.days, day, query);
        }
    }
    return {};
}

/// Returns the first day on which the report is expected. Past settings are not stored, so this is
/// the day of the first mail or of "lastGenerated", whichever is earlier. Returns an invalid date
/// if there is neither.
QDate inUseSince(const ReportHistory &report)
{
    const auto mailed = std::find_if(report.days.cbegin(), report.days.cend(),
                                     [](const ReportDay &day) { return day.queued > 0; });
    const qint64 last = report.status.stored.settings.lastGenerated;
    const QDate made = last > 0 ? dateOf(last) : QDate();
    if (mailed == report.days.cend())
        return made;
    return made.isValid() ? std::min(made, mailed->date) : mailed->date;
}

/// Returns whether today's report is missing although its time has come. It is missing if it is
/// overdue, or if it has another problem and meets all rules of the schedule except perhaps the one
/// that requires recipients. Mails that wait in the queue do not count as a problem here.
bool isMissedToday(const ReportStatus &status, const QDateTime &now)
{
    if (status.reason == QLatin1String("overdue"))
        return true;
    if (status.reason.isEmpty() || status.reason == QLatin1String("queue"))
        return false;
    const QVector<ScheduleRule> rules = scheduleRules(status.stored.settings, now);
    return std::all_of(rules.cbegin(), rules.cend(), [](const ScheduleRule &rule) {
        return rule.met || rule.otherwise == ScheduleVerdict::NoRecipients;
    });
}

void judgeDays(ReportHistory &report, const HistoryWindow &window)
{
    const QDateTime &now = window.now;
    const QDate since = inUseSince(report);
    const bool isExpectedToday =
        isMissedToday(report.status, now) || countsAsMade(report.status.stored.settings, window);
    for (ReportDay &day : report.days) {
        const bool isExpected =
            day.date == now.date() ? isExpectedToday : since.isValid() && since <= day.date;
        if (day.queued > 0)
            day.state = day.waiting > 0 ? DayState::Waiting : DayState::Made;
        else if (report.status.stored.settings.enabled && isExpected)
            day.state = DayState::None;
    }
}

void addProblem(const QVector<Finding> &findings, ReportStatus &status)
{
    const auto problem = std::find_if(findings.cbegin(), findings.cend(),
                                      [](const Finding &one) { return one.isProblem(); });
    if (problem == findings.cend())
        return;
    status.reason = problem->state;
    status.detail = QStringLiteral("%1; to do: %2").arg(problem->text, problem->remedy);
}

QVector<ReportHistory> withoutDays(const SchemaJudgement &schema)
{
    const ReportStatus ofSchema{schema.token, schema.databaseName, nullptr, {}, {}, {}};
    QVector<ReportHistory> reports;
    for (const ReportJudgement &report : schema.reports) {
        ReportStatus status = ofSchema;
        status.kind = report.kind;
        status.stored = report.stored;
        addProblem(report.findings, status);
        reports.append({status, {}});
    }
    if (reports.isEmpty()) {
        reports.append({ofSchema, {}});
        addProblem(schema.findings, reports.first().status);
    }
    return reports;
}

} // namespace

int ReportHistory::count(DayState state) const
{
    return static_cast<int>(std::count_if(
        days.cbegin(), days.cend(), [state](const ReportDay &day) { return day.state == state; }));
}

qint64 ReportHistory::lastQueuedAt() const
{
    qint64 last = 0;
    for (const ReportDay &day : days)
        last = std::max(last, day.lastQueuedAt);
    return last;
}

HistoryWindow::HistoryWindow(const QDateTime &moment)
    : now(moment)
    , first(moment.date().addDays(1 - dayCount))
{
    Language::forEach([this] { addSubjects(); });
}

/// Gets the subjects from the reports themselves.
void HistoryWindow::addSubjects()
{
    for (const ReportKind *kind : reportKinds()) {
        const auto report = createReport(*kind, QSqlDatabase());
        for (int day = 0; day < dayCount; ++day) {
            const QDate date = first.addDays(day);
            const QString subject = report->mailSubject(date);
            const auto known = subjects.constFind(subject);
            const bool isShared = known != subjects.constEnd() && known->day != date;
            subjects.insert(subject, {kind, isShared ? QDate() : date});
        }
    }
}

QVector<ReportHistory> readHistory(const SchemaRow &row, const SchemaJudge &judge,
                                   const HistoryWindow &window)
{
    QVector<ReportHistory> reports = withoutDays(judge.judge(row));
    if (!reports.first().status.kind)
        return reports;
    for (ReportHistory &report : reports)
        report.days = emptyDays(window);
    const SchemaConnection connection(row, SchemaConnection::Access::ReadOnly);
    const QString error = connection.error.isEmpty()
                              ? readMails(connection.database(), window, reports)
                              : connection.error;
    for (ReportHistory &report : reports) {
        if (error.isEmpty()) {
            judgeDays(report, window);
            continue;
        }
        report.days.clear();
        if (report.status.reason.isEmpty()) {
            report.status.reason = QStringLiteral("tables");
            report.status.detail =
                QStringLiteral("the mails cannot be read: %1; see autoreport check").arg(error);
        }
    }
    return reports;
}
