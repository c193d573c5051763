#include "host/hoststate.h"

#include "host/logtoken.h"

#include <QDateTime>
#include <QRegularExpression>

#include <algorithm>
#include <iterator>

namespace
{

constexpr const char *madeElsewhere = "elsewhere"; // not a failure

struct Cause {
    const char *part; ///< of a line that ends a run
    const char *name;
};

// The text of "mail not created" has two forms.
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
    {"interrupted,", "stopped"},
    {"connection lost,", "connection"},
    {"rolled the run back,", "rollback"},
    {"is locked,", "locked"},
    {"another host", madeElsewhere},
};

QString causeIn(const QString &message)
{
    const auto found =
        std::find_if(std::begin(causesByText), std::end(causesByText), [&](const Cause &cause) {
            return message.contains(QLatin1String(cause.part));
        });
    return found == std::end(causesByText) ? QString() : QLatin1String(found->name);
}

QString kindIn(const QString &message)
{
    if (message.startsWith(QLatin1String("DailyAttenReport")))
        return QStringLiteral("daily");
    if (message.startsWith(QLatin1String("MonthlyAttenReport")))
        return QStringLiteral("monthly");
    return {};
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
    current.runs.insert(QStringLiteral("daily"), {});
    current.runs.insert(QStringLiteral("monthly"), {});
}

void HostState::take(const QString &message)
{
    const QString kind = kindIn(message);
    if (kind.isEmpty())
        return;
    static const QRegularExpression endOfRun(QStringLiteral(
        R"(::makeReport\(\) - run ended after ([\d.]+) s, rows: \d+, mails queued: (\d+)$)"));
    const std::lock_guard guard(mutex);
    const QRegularExpressionMatch end = endOfRun.match(message);
    if (end.hasMatch()) {
        endRun(kind, end.captured(1).toDouble(), end.captured(2).toULongLong());
        return;
    }
    const QString cause = causeIn(message);
    if (!cause.isEmpty())
        causes.insert(token(), cause);
}

void HostState::endRun(const QString &kind, double seconds, quint64 mails)
{
    RunTotals &totals = current.runs[kind];
    totals.durations.add(seconds);
    totals.mails += mails;
    const QString cause = causes.take(token());
    if (mails == 0 && cause == QLatin1String(madeElsewhere))
        return;
    if (mails == 0) {
        ++totals.failed[cause.isEmpty() ? QStringLiteral("other") : cause];
        return;
    }
    ++totals.made;
    current.schemas[token()].lastSuccess.insert(kind, QDateTime::currentSecsSinceEpoch());
}

void HostState::takeScan(qint64 milliseconds)
{
    const std::lock_guard guard(mutex);
    current.scans.add(double(milliseconds) / 1000);
    current.lastScan = QDateTime::currentSecsSinceEpoch();
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
