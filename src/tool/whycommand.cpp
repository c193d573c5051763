#include "tool/commands.h"
#include "tool/onschema.h"
#include "tool/output.h"
#include "tool/schemastatus.h"
#include "tool/tool.h"

#include <algorithm>

namespace
{

/// The moment of "--at", invalid when it is none; where the clock shows it twice the first, where
/// it never does the next.
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
    if (stored.settings.enabled && !stored.isFoundByScan())
        Output::print(QStringLiteral("  but a host's scan finds the schema only when the setting "
                                     "is exactly 1, or by its other report"));
}

int explain(const Invocation &invocation, const SchemaConnection &connection, const QDateTime &now)
{
    const auto read = StoredSettings::read(connection.database(), *invocation.kind);
    if (!read.isOk()) {
        Output::error(read.error());
        return Tool::CouldNotAsk;
    }
    const StoredSettings &stored = read.value();
    Output::print(QStringLiteral("The %1 report of '%2' (database '%3') on %4:")
                      .arg(QLatin1String(invocation.kind->word), invocation.token,
                           connection.databaseName, Output::exactMoment(now)));
    Output::print(QString());
    printRules(stored, now);
    const QDateTime next = nextDue(stored.settings, now);
    Output::print(QStringList{QString(), answer(scheduleVerdict(stored.settings, now)),
                              QStringLiteral("Next due: %1").arg(Output::exactMoment(next))});
    // A report that will never be due is what an operator must look at.
    return next.isValid() ? Tool::Well : Tool::Look;
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
    return onSchema(
        invocation, SchemaConnection::Access::ReadOnly, SchemaConnection::Statements::Short,
        [&](const SchemaConnection &connection) { return explain(invocation, connection, now); });
}
