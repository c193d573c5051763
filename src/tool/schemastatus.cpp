#include "tool/schemastatus.h"

#include "common/freshquery.h"
#include "common/zas.h"
#include "db/varstable.h"
#include "tool/requirements.h"

namespace
{

constexpr qint64 graceSeconds = 4200; // a scan an hour, a tick a minute, and the report itself
constexpr qint64 clockToleranceSeconds = 300; // for hosts with slightly different clocks
constexpr qint64 queuePatienceSeconds = 3600; // senders work in minutes

/// Sets the reason unless there is one: callers look for the most urgent first.
void say(ReportStatus &status, const char *reason, const QString &detail)
{
    if (!status.reason.isEmpty())
        return;
    status.reason = QLatin1String(reason);
    status.detail = detail;
}

/// Returns whether the report should have gone out by now, with some grace.
bool isOverdue(const ReportSettings &settings, const QDateTime &now)
{
    QDate day = now.date();
    if (scheduledMoment(day, settings.time).secsTo(now) < graceSeconds)
        day = day.addDays(-1);
    // It may have been enabled only today.
    if (settings.lastGenerated == 0 && day != now.date())
        return false;
    const QDateTime scheduled = scheduledMoment(day, settings.time);
    return scheduleVerdict(settings, scheduled) == ScheduleVerdict::Due;
}

/// Most urgent first: what keeps every report from going out, and at the end what is only late.
void judgeSettings(ReportStatus &status, const QDateTime &now)
{
    const ReportSettings &settings = status.stored.settings;
    if (!status.stored.isFoundByScan())
        say(status, "switch",
            QStringLiteral("enabled is '%1', but the scan asks for exactly 1: autoreport set "
                           "... --enable")
                .arg(status.stored.text("enabled")));
    const Recipients recipients(settings.recipients);
    if (recipients.wellFormed.isEmpty())
        say(status, "recipients",
            QStringLiteral("nobody would get it: autoreport set ... --emails"));
    if (!recipients.malformed.isEmpty())
        say(status, "recipients",
            QStringLiteral("not a mail address: %1; autoreport set ... --emails")
                .arg(recipients.malformed.join(QStringLiteral(", "))));
    const QString time = status.stored.text("time");
    if (!settings.time.isValid() && !time.isEmpty())
        say(status, "time",
            QStringLiteral("'%1' is not a time of day, the report goes out at midnight: "
                           "autoreport set ... --time")
                .arg(time));
    if (settings.lastGenerated > now.toSecsSinceEpoch() + clockToleranceSeconds)
        say(status, "future",
            QStringLiteral(
                "lastGenerated is in the future because a clock was wrong: correct it in "
                "the table vars"));
    if (isOverdue(settings, now))
        say(status, "overdue",
            QStringLiteral("it should have gone out: see that autoreport serve runs, and its log"));
}

/// Counts the waiting mails; ages are by the server's clock, which stamped them. Returns the error.
QStringList readQueue(ReportStatus &status, const QSqlDatabase &database)
{
    QSqlQuery query = freshQuery(database);
    if (!query.exec(QStringLiteral("SELECT COUNT(*), UNIX_TIMESTAMP() - MIN(created) FROM emails "
                                   "WHERE status = 'Q'")) ||
        !query.next())
        return {errorOf(query).text.simplified()};
    status.queued = query.value(0).toInt();
    status.oldestSeconds = query.value(1).toLongLong();
    return {};
}

void judge(ReportStatus &status, const QSqlDatabase &database, const QDateTime &now)
{
    const QStringList queueErrors = readQueue(status, database);
    // Disabled reports have no problems.
    if (status.stored.settings.enabled) {
        QStringList errors = Requirements::unreadable(database, *status.kind);
        if (errors.isEmpty())
            errors = queueErrors;
        if (!errors.isEmpty())
            say(status, "tables",
                QStringLiteral("%1: autoreport check").arg(errors.join(QStringLiteral("; "))));
        judgeSettings(status, now);
    }
    // Even with reports disabled, a mail that is queued must go out.
    if (status.queued > 0 && status.oldestSeconds > queuePatienceSeconds)
        say(status, "queue",
            QStringLiteral("mails have been waiting for over an hour: see that the product's "
                           "sender works"));
}

ReportStatus unasked(const QString &token, const QString &databaseName, const char *reason,
                     const QString &detail)
{
    ReportStatus status;
    status.token = token;
    status.databaseName = databaseName;
    say(status, reason, detail);
    return status;
}

} // namespace

Result<StoredSettings> StoredSettings::read(const QSqlDatabase &database, const ReportKind &kind)
{
    const QString prefix = QLatin1String(kind.prefix);
    const auto found = VarsTable(database).valuesWithPrefix(prefix);
    if (!found.isOk())
        return Error{found.error().simplified()};
    const VarsTable::Values &values = found.value();
    StoredSettings stored;
    stored.settings = kind.settingsOf(values);
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry)
        stored.values.insert(entry.key().mid(prefix.size()), entry.value());
    return stored;
}

Recipients::Recipients(const QStringList &written)
{
    for (const QString &address : recipientsToMail(written))
        (ZAS::validEmail(address) ? wellFormed : malformed).append(address);
}

QVector<ReportStatus> readStatus(const Schemas &schemas, const QString &token, const QDateTime &now)
{
    const SchemaConnection connection(schemas, token, SchemaConnection::Access::ReadOnly);
    if (!connection.error.isEmpty())
        return {unasked(token, connection.databaseName, "unreachable", connection.error)};
    const QSqlDatabase database = connection.database();
    QVector<ReportStatus> both;
    for (const ReportKind *kind : reportKinds()) {
        const auto stored = StoredSettings::read(database, *kind);
        if (!stored.isOk())
            return {unasked(token, connection.databaseName, "tables", stored.error())};
        ReportStatus status;
        status.token = token;
        status.databaseName = connection.databaseName;
        status.kind = kind;
        status.stored = stored.value();
        status.next = nextDue(status.stored.settings, now);
        judge(status, database, now);
        both.append(status);
    }
    return both;
}
