#include "host/hoststate.h"

#include "host/logtoken.h"
#include "reports/reportkind.h"

#include <QDateTime>
#include <QRegularExpression>

#include <algorithm>
#include <iterator>
#include <utility>

namespace
{

// The cause of a run that queued no mail but did not fail: another host has made or is making the
// report, or the next tick makes it.
constexpr const char *leftToOthers = "elsewhere";
constexpr int warningsKept = 4; // per run; the first warnings name the cause
constexpr int warningChars = 200;

struct Cause {
    const char *part; ///< of the log line that says why a run queued no mail
    const char *name; ///< of the cause in the metrics
};

// A line may have two wordings, such as "makeReport() - mail not created!" and "makeReport - mail
// not created!". Each part occurs in both.
constexpr Cause causesByText[] = {
    {"people SQL", "query"},
    {"no people!", "no_people"},
    {"addSheet failed!", "workbook"},
    {"Book() failed!", "workbook"},
    {"rows are more than", "workbook"},
    {"XLS not saved!", "workbook"},
    {"for read!", "attachment"},
    {"mail not created!", "mail"},
    {"mails not committed", "commit"},
    {"mails were committed", "commit"},
    {"begin a transaction,", "commit"},
    {"node is not ready,", "commit"},
    {"interrupted,", "stopped"},
    {"connection lost,", "connection"},
    {"rolled the run back,", leftToOthers},
    {"is locked,", "locked"},
    {"another host", leftToOthers},
};

QString causeIn(const QString &message)
{
    const auto found =
        std::find_if(std::begin(causesByText), std::end(causesByText), [&](const Cause &cause) {
            return message.contains(QLatin1String(cause.part));
        });
    return found == std::end(causesByText) ? QString() : QLatin1String(found->name);
}

/// Returns the report that logged the message, or null.
const ReportKind *kindIn(const QString &message)
{
    const auto &kinds = reportKinds();
    const auto found =
        std::find_if(kinds.cbegin(), kinds.cend(), [&message](const ReportKind *kind) {
            return message.startsWith(QLatin1String(kind->className));
        });
    return found == kinds.cend() ? nullptr : *found;
}

/// Returns the message without the names of class and function at its beginning.
QString withoutOrigin(const ReportKind &kind, const QString &message)
{
    static const QRegularExpression function(
        QStringLiteral(R"(^(::\w+\(\)|::\w+| makeMail)?( -)?)"));
    return message.mid(int(qstrlen(kind.className))).remove(function);
}

bool isWarning(QtMsgType type)
{
    return type == QtWarningMsg || type == QtCriticalMsg;
}

} // namespace

void Durations::add(double seconds)
{
    const auto bound = std::lower_bound(boundsSeconds.begin(), boundsSeconds.end(), seconds);
    ++counts[size_t(bound - boundsSeconds.begin())];
    sumSeconds += seconds;
}

HostState::HostState(const QString &single)
    : singleToken(single)
{
    for (const ReportKind *kind : reportKinds())
        current.runs.insert(QLatin1String(kind->word), {});
}

void HostState::take(QtMsgType type, const QString &message)
{
    if (const ReportKind *kind = kindIn(message))
        takeReport(*kind, type, message);
    else if (message.startsWith(QLatin1String("AutoReportWorker")))
        takeWorker(type, message);
    else if (isWarning(type) && message.contains(QLatin1String(": the scan ends at schema "))) {
        const std::lock_guard guard(mutex);
        scanProblem = message.section(QLatin1String(" - "), 1);
    } else if (isWarning(type)) { // from code that a report calls, such as the mail queue
        const std::lock_guard guard(mutex);
        running[token()].warn(message.section(QLatin1Char('\n'), 0, 0).left(warningChars));
    }
}

void HostState::Run::warn(const QString &text)
{
    if (warnings.size() < warningsKept)
        warnings.append(text.simplified());
}

void HostState::takeReport(const ReportKind &kind, QtMsgType type, const QString &message)
{
    static const QRegularExpression endOfRun(QStringLiteral(
        R"(::makeReport\(\) - run ended after ([\d.]+) s, rows: (\d+), mails queued: (\d+)$)"));
    const std::lock_guard guard(mutex);
    const QRegularExpressionMatch end = endOfRun.match(message);
    if (end.hasMatch()) {
        endRun(QLatin1String(kind.word), end.captured(1).toDouble(), end.captured(2).toInt(),
               end.captured(3).toULongLong());
        return;
    }
    if (message.endsWith(QLatin1String("::doWork()"))) { // the worker polls the report
        running.remove(token());
        return;
    }
    Run &run = running[token()];
    const QString cause = type == QtDebugMsg ? QString() : causeIn(message);
    if (!cause.isEmpty() && (run.cause.isEmpty() || cause != QLatin1String(leftToOthers)))
        run.cause = cause;
    if (isWarning(type))
        run.warn(withoutOrigin(kind, message));
}

/// Evaluates what a worker logs about itself: its ticks and its problems.
void HostState::takeWorker(QtMsgType type, const QString &message)
{
    const std::lock_guard guard(mutex);
    SchemaAnswer &schema = current.schemas[token()].answer;
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    if (message.startsWith(QLatin1String("AutoReportWorker - activateReports()"))) {
        schema.lastTick = now;
    } else if (isWarning(type)) {
        schema.problem = message.section(QLatin1String(" - "), 1).simplified();
        schema.problemMoment = now;
    }
}

void HostState::endRun(const QString &kind, double seconds, int rows, quint64 mails)
{
    RunTotals &totals = current.runs[kind];
    totals.durations.add(seconds);
    totals.mails += mails;
    const Run run = running.take(token());
    if (mails == 0 && run.cause == QLatin1String(leftToOthers))
        return;
    SchemaState &schema = current.schemas[token()];
    ReportAnswer &answer = schema.answer.reports[kind];
    answer.last = {QDateTime::currentSecsSinceEpoch(), seconds, int(mails), {}, {}};
    if (mails == 0) {
        answer.last.cause = run.cause.isEmpty() ? QStringLiteral("other") : run.cause;
        answer.last.text = run.warnings.join(QStringLiteral("; "));
        if (rows > 0 && run.cause.isEmpty()) { // reports skip blank recipients without a warning
            answer.last.cause = QStringLiteral("recipients");
            answer.last.text = QStringLiteral("all recipients are blank");
        }
        answer.lastFailure = answer.last;
        ++totals.failed[answer.last.cause];
        return;
    }
    if (run.cause == QLatin1String("mail")) { // some mails failed, but the report counts as made
        answer.lastFailure = answer.last;
        answer.lastFailure.cause = run.cause;
        answer.lastFailure.text = run.warnings.join(QStringLiteral("; "));
    }
    ++totals.made;
    schema.lastSuccess.insert(kind, answer.last.moment);
}

void HostState::takeScan(qint64 milliseconds)
{
    const std::lock_guard guard(mutex);
    current.scans.add(double(milliseconds) / 1000);
    current.lastScan = QDateTime::currentSecsSinceEpoch();
    current.scanProblem = std::exchange(scanProblem, QString());
}

void HostState::takeNextScan(qint64 moment)
{
    const std::lock_guard guard(mutex);
    current.nextScan = moment;
}

void HostState::takePaused(bool paused)
{
    const std::lock_guard guard(mutex);
    current.isPaused = paused;
}

void HostState::takeQueue(const QString &token, int waiting, qint64 oldest)
{
    const std::lock_guard guard(mutex);
    SchemaState &schema = current.schemas[token];
    schema.isQueueKnown = true;
    schema.mailsWaiting = waiting;
    schema.oldestMail = oldest;
}

HostSnapshot HostState::snapshot() const
{
    const std::lock_guard guard(mutex);
    return current;
}

QString HostState::token() const
{
    const QString ofThread = tokenOfThread();
    return ofThread.isEmpty() ? singleToken : ofThread;
}
