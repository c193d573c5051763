#include "common/freshquery.h"
#include "tool/commands.h"
#include "tool/obstacles.h"
#include "tool/onschema.h"
#include "tool/output.h"
#include "tool/schemacheck.h"
#include "tool/schemastatus.h"
#include "tool/tool.h"

#include <algorithm>

namespace
{

/// Returns the moment of "--at", invalid if it cannot be read. Where the clock shows it twice, the
/// first; where it never does, the next one that it shows.
QDateTime askedMoment(const Invocation &invocation)
{
    if (!invocation.has("at"))
        return QDateTime::currentDateTime();
    const QString text = invocation.value("at").simplified();
    const QDate date = QDate::fromString(text.section(QLatin1Char(' '), 0, 0), Qt::ISODate);
    const QTime time = QTime::fromString(text.section(QLatin1Char(' '), 1), Qt::ISODate);
    return date.isValid() && time.isValid() ? scheduledMoment(date, time) : QDateTime();
}

QString lastText(const ReportSettings &settings)
{
    return settings.lastGenerated == 0 ? QStringLiteral("never generated")
                                       : QStringLiteral("last generated %1")
                                             .arg(Output::exactMoment(QDateTime::fromSecsSinceEpoch(
                                                 std::min(settings.lastGenerated, endOfYear9999))));
}

/// What a rule asks for, and the value that it looks at.
QString ruleText(const ScheduleRule &rule, const StoredSettings &stored, const QDateTime &now)
{
    const ReportSettings &settings = stored.settings;
    const QString clock = QStringLiteral("HH:mm:ss");
    switch (rule.otherwise) {
    case ScheduleVerdict::Disabled:
        return QStringLiteral("it is enabled: the setting is '%1'").arg(stored.text("enabled"));
    case ScheduleVerdict::NoRecipients:
        return QStringLiteral("it has recipients: '%1'").arg(stored.text("emails"));
    case ScheduleVerdict::TooEarly:
        return QStringLiteral("its time has come: it is %1, the setting is '%2'%3")
            .arg(now.time().toString(clock), stored.text("time"),
                 settings.time.isValid() ? QString() : QStringLiteral(", from midnight on"));
    case ScheduleVerdict::AlreadyGenerated:
        return QStringLiteral("not generated yet: %1, must be 60 s before %2")
            .arg(lastText(settings),
                 Output::exactMoment(scheduledMoment(now.date(), settings.time)));
    case ScheduleVerdict::Due:
        break;
    }
    return {};
}

/// The verdict that the schedule itself gives; the rules above it only explain.
QString answer(ScheduleVerdict reason)
{
    switch (reason) {
    case ScheduleVerdict::Due:
        return QStringLiteral("Due: the next tick of a host makes it.");
    case ScheduleVerdict::Disabled:
        return QStringLiteral("Not due: it is switched off.");
    case ScheduleVerdict::NoRecipients:
        return QStringLiteral("Not due: it has no recipients.");
    case ScheduleVerdict::TooEarly:
        return QStringLiteral("Not due: it is too early.");
    case ScheduleVerdict::AlreadyGenerated:
        break;
    }
    return QStringLiteral("Not due: it was generated already.");
}

void printRules(const StoredSettings &stored, const QDateTime &now)
{
    // All of them, not only the first that is not met: the next one may be wrong as well.
    const QVector<ScheduleRule> rules = scheduleRules(stored.settings, now);
    for (const ScheduleRule &rule : rules) {
        const QString verdict =
            rule.met ? Output::coloured(QStringLiteral("met    "), Output::Colour::Good)
                     : Output::coloured(QStringLiteral("not met"), Output::Colour::Bad);
        Output::print(QStringLiteral("  %1  %2").arg(verdict, ruleText(rule, stored, now)));
    }
}

/// What a command has found out about one report; the lists are in the order of urgency.
struct Answer {
    bool isAsked = false; ///< else the rest says nothing
    QVector<Finding> obstacles;
    QVector<Finding> others; ///< what harms the report, or those after it
    QDateTime overdueSince;  ///< invalid if it is not
    QDateTime next;
};

int couldNotAsk(const QString &error)
{
    Output::error(error);
    return Tool::CouldNotAsk;
}

QString toDo(const QString &text, const QString &remedy)
{
    return QStringLiteral("%1. To do: %2.").arg(text, remedy);
}

/// The last line: the one cause, and what to do.
int conclude(const Invocation &invocation, const Answer &found)
{
    for (const Finding &one : found.obstacles + found.others)
        Output::print(
            QStringLiteral("  %1  %2")
                .arg(Output::coloured(QStringLiteral("problem"), Output::Colour::Bad), one.text));
    if (!found.obstacles.isEmpty()) {
        const Finding &cause = found.obstacles.first();
        Output::print(toDo(QStringLiteral("Cause: ") + cause.text, cause.remedy));
        return Tool::Look;
    }
    if (!found.others.isEmpty()) {
        const Finding &other = found.others.first();
        Output::print(
            toDo(QStringLiteral("Nothing keeps it back, but: ") + other.text, other.remedy));
        return Tool::Look;
    }
    if (found.overdueSince.isValid()) {
        Output::print(
            toDo(QStringLiteral("Cause: no host has made it, though it has been due since %1")
                     .arg(Output::exactMoment(found.overdueSince)),
                 QStringLiteral("see that autoreport serve runs, and the lines of its log that "
                                "begin with '%1: '")
                     .arg(invocation.token)));
        return Tool::Look;
    }
    Output::print(
        QStringLiteral("Nothing keeps it back: next due %1").arg(Output::exactMoment(found.next)));
    return found.next.isValid() ? Tool::Well : Tool::Look;
}

/// A scan an hour, a tick a minute, and the report itself may pass until a due report is made.
QDateTime overdueSince(const ReportSettings &settings, const QDateTime &now)
{
    constexpr qint64 graceSeconds = 4200;
    const QDateTime scheduled = scheduledMoment(now.date(), settings.time);
    const bool isOverdue = scheduleVerdict(settings, now) == ScheduleVerdict::Due &&
                           scheduled.secsTo(now) > graceSeconds;
    return isOverdue ? scheduled : QDateTime();
}

void explain(const Invocation &invocation, const StoredSettings &stored,
             const SchemaConnection &connection, const QDateTime &now)
{
    Output::print(QStringLiteral("The %1 report of '%2' (database '%3') on %4:")
                      .arg(QLatin1String(invocation.kind->word), invocation.token,
                           connection.databaseName, Output::exactMoment(now)));
    Output::print(QString());
    printRules(stored, now);
    Output::print(QStringList{
        QString(), answer(scheduleVerdict(stored.settings, now)),
        QStringLiteral("Next due: %1").arg(Output::exactMoment(nextDue(stored.settings, now)))});
}

Answer ask(const Invocation &invocation, const SchemaConnection &connection, const QDateTime &now)
{
    Answer found;
    const QSqlDatabase database = connection.database();
    const auto read = StoredSettings::read(database, *invocation.kind);
    if (read.isOk()) {
        explain(invocation, read.value(), connection, now);
        found.next = nextDue(read.value().settings, now);
        // What is asked of the schema and this machine is as of today, whatever "--at" says.
        if (!invocation.has("at"))
            found.overdueSince = overdueSince(read.value().settings, now);
        found.obstacles = findObstacles(database, invocation.token, read.value(), *invocation.kind,
                                        QDateTime::currentDateTime());
    } else {
        found.obstacles.append({true, invocation.token, read.error(),
                                QStringLiteral("restore the table vars, or grant SELECT on it")});
    }
    found.isAsked = freshQuery(database).exec(QStringLiteral("DO 0"));
    return found;
}

/// A schema that is listed, but cannot be served.
int explainUnserved(const Invocation &invocation, const Schemas &schemas, const QString &error)
{
    QSqlQuery query = freshQuery(schemas.master());
    query.prepare(QStringLiteral("SELECT MAX(status) FROM `schemas` WHERE token = ?"));
    query.addBindValue(invocation.token);
    if (invocation.connection.single || !query.exec() || !query.next() || query.isNull(0))
        return couldNotAsk(error);
    Answer found;
    const int status = query.value(0).toInt();
    if (status == 1)
        found.obstacles.append({true, invocation.token, error,
                                QStringLiteral("correct its row in the table schemas, or grant "
                                               "the access")});
    else
        found.obstacles.append(
            {true, invocation.token,
             QStringLiteral("the schema is not active: status is %1 in the table schemas")
                 .arg(status),
             QStringLiteral("set status to 1 if the customer is to be served")});
    return conclude(invocation, found);
}

int explainAll(const Invocation &invocation, const Schemas &schemas, const QDateTime &now)
{
    Answer found;
    { // one connection at a time
        // It may write, as the server checks rights only over such a one.
        const SchemaConnection connection(schemas, invocation.token,
                                          SchemaConnection::Access::ReadWrite);
        if (!connection.error.isEmpty())
            return explainUnserved(invocation, schemas, connection.error);
        found = ask(invocation, connection, now);
    }
    if (!found.isAsked)
        return couldNotAsk(QStringLiteral("the server no longer answers"));
    if (found.obstacles.isEmpty()) {
        for (const Finding &one : checkSchema(schemas, invocation.token).findings) {
            if (one.isProblem)
                found.others.append(one);
        }
    }
    return conclude(invocation, found);
}

} // namespace

void describeWhy(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("at"),
                      QStringLiteral("Ask for this moment, \"YYYY-MM-DD HH:MM\", instead of now."),
                      QStringLiteral("moment")});
}

int runWhy(const Invocation &invocation)
{
    const QDateTime now = askedMoment(invocation);
    if (!now.isValid())
        return invocation.wrong(QStringLiteral("--at must be \"YYYY-MM-DD HH:MM\", not '%1'")
                                    .arg(invocation.value("at")));
    return onSchemas(invocation,
                     [&](const Schemas &schemas) { return explainAll(invocation, schemas, now); });
}
