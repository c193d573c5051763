#include "tool/commands.h"
#include "tool/hosttext.h"
#include "tool/machine.h"
#include "tool/onschema.h"
#include "tool/output.h"
#include "tool/schemajudge.h"
#include "tool/tool.h"

#include <algorithm>

namespace
{

/// Returns the moment that "--at" names, or now without the option; invalid if the text cannot be
/// read. On a day when the clock is changed, a time that occurs twice means its first occurrence,
/// and a time that is skipped means the end of the gap.
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

/// Returns what a rule requires, and the value that it examines.
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

/// Returns the schedule's verdict as a sentence.
QString answer(ScheduleVerdict reason)
{
    switch (reason) {
    case ScheduleVerdict::Due:
        return QStringLiteral("Due: the next tick of a host makes it.");
    case ScheduleVerdict::Disabled:
        return QStringLiteral("Not due: it is disabled.");
    case ScheduleVerdict::NoRecipients:
        return QStringLiteral("Not due: it has no recipients.");
    case ScheduleVerdict::TooEarly:
        return QStringLiteral("Not due: it is too early.");
    case ScheduleVerdict::AlreadyGenerated:
        break;
    }
    return QStringLiteral("Not due: it has already been generated.");
}

void printRules(const StoredSettings &stored, const QDateTime &now)
{
    // Prints all rules, because several may be unmet.
    const QVector<ScheduleRule> rules = scheduleRules(stored.settings, now);
    for (const ScheduleRule &rule : rules) {
        const QString verdict =
            rule.met ? Output::coloured(QStringLiteral("met    "), Output::Colour::Good)
                     : Output::coloured(QStringLiteral("not met"), Output::Colour::Bad);
        Output::print(QStringLiteral("  %1  %2").arg(verdict, ruleText(rule, stored, now)));
    }
}

void explainRules(const Invocation &invocation, const SchemaJudgement &schema,
                  const ReportJudgement &report, const QDateTime &now)
{
    Output::print(QStringLiteral("The %1 report of '%2' (database '%3') on %4:")
                      .arg(QLatin1String(report.kind->word), invocation.token, schema.databaseName,
                           Output::exactMoment(now)));
    Output::print(QString());
    printRules(report.stored, now);
    const ReportSettings &settings = report.stored.settings;
    Output::print(QStringList{
        QString(), answer(scheduleVerdict(settings, now)),
        QStringLiteral("Next due: %1").arg(Output::exactMoment(nextDue(settings, now)))});
}

/// Prints what the hosts of this machine know.
void explainHosts(const Invocation &invocation, const Machine &machine)
{
    Output::print(hostLines(machine));
    if (const HostAnswer *host = machine.hostOf(invocation.token)) {
        const SchemaAnswer schema = host->schemas.value(invocation.token);
        const ReportAnswer runs = schema.reports.value(QLatin1String(invocation.kind->word));
        Output::print(
            QStringList{QStringLiteral("last tick: %1").arg(momentText(schema.lastTick)),
                        QStringLiteral("last run: %1").arg(runText(runs.last)),
                        QStringLiteral("last failure: %1").arg(runText(runs.lastFailure))});
    }
}

const Finding *find(const QVector<Finding> &findings, bool (*matches)(const Finding &))
{
    const auto found = std::find_if(findings.cbegin(), findings.cend(), matches);
    return found == findings.cend() ? nullptr : &*found;
}

int sayCause(const QString &text, const QString &remedy)
{
    Output::print(QStringLiteral("%1. To do: %2.").arg(text, remedy));
    return Tool::Look;
}

/// Prints the findings and, in the last line, the most important problem and what to do, or that
/// nothing prevents the report. Returns the exit status.
int conclude(const QVector<Finding> &findings, const QDateTime &next)
{
    for (const Finding &one : findings) {
        const auto colour = one.isProblem() ? Output::Colour::Bad : Output::Colour::Notable;
        Output::print(QStringLiteral("  %1  %2")
                          .arg(Output::coloured(one.isProblem() ? QStringLiteral("problem")
                                                                : QStringLiteral("notice "),
                                                colour),
                               one.text));
    }
    if (const Finding *cause = find(findings, [](const Finding &one) {
            return one.keepsBack() || one.gravity == Gravity::Alarm;
        }))
        return sayCause(QStringLiteral("Cause: ") + cause->text, cause->remedy);
    if (const Finding *harm = find(findings, [](const Finding &one) { return one.isProblem(); }))
        return sayCause(QStringLiteral("Nothing prevents it, but: ") + harm->text, harm->remedy);
    Output::print(
        QStringLiteral("Nothing prevents it: next due %1").arg(Output::exactMoment(next)));
    return next.isValid() ? Tool::Well : Tool::Look;
}

int explain(const Invocation &invocation, const Machine &machine, const SchemaJudgement &schema,
            const QDateTime &now)
{
    const auto report = std::find_if(
        schema.reports.cbegin(), schema.reports.cend(),
        [&invocation](const ReportJudgement &one) { return one.kind == invocation.kind; });
    if (report == schema.reports.cend()) {
        Output::print(hostLines(machine));
        return conclude(schema.findings, {});
    }
    explainRules(invocation, schema, *report, now);
    explainHosts(invocation, machine);
    QVector<Finding> findings = report->findings;
    for (const Finding &one : machine.findings()) {
        if (one.text != machine.temporaryError) // the report's findings include that
            findings.append(one);
    }
    return conclude(findings, nextDue(report->stored.settings, now));
}

int explainAll(const Invocation &invocation, const Schemas &schemas, const QDateTime &now)
{
    const auto rows = schemas.rows(invocation.token);
    if (!rows.isOk()) {
        Output::error(rows.error());
        return Tool::CouldNotAsk;
    }
    if (rows.value().isEmpty())
        return noSuchSchema(schemas, invocation.token);
    const Machine machine = Machine::ask(invocation.connection);
    // The schema and this machine are judged as of now, even if "--at" names another moment.
    const SchemaJudge judge(machine, QDateTime::currentDateTime(), SchemaJudge::Scope::AllReports);
    const SchemaJudgement schema = judge.judge(rows.value().first());
    if (!schema.isComplete) {
        Output::error(QStringLiteral("the server no longer answers"));
        return Tool::CouldNotAsk;
    }
    return explain(invocation, machine, schema, now);
}

} // namespace

void describeWhy(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("at"),
                      QStringLiteral("Explain this moment, \"YYYY-MM-DD HH:MM\", instead of now."),
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
