#include "tool/commands.h"
#include "tool/hosttext.h"
#include "tool/invocation.h"
#include "tool/machine.h"
#include "tool/onschema.h"
#include "tool/output.h"
#include "tool/progress.h"
#include "tool/schemapool.h"
#include "tool/statustable.h"
#include "tool/tool.h"

#include <QJsonArray>

#include <algorithm>

namespace
{

/// What `status` has found out, and which lines it shows.
struct Found {
    Machine machine;
    QDateTime now;
    SchemasJudged schemas;
    QVector<StatusLine> shown;
    int off = 0; ///< disabled reports and inactive schemas that are not shown
    int status = Tool::Well;
};

/// Chooses the lines to show. Problems are always shown. Disabled reports and inactive schemas are
/// shown only if an option asks for them. JSON includes disabled reports, because a field says that
/// they are disabled.
void choose(const Invocation &invocation, Found &found)
{
    const bool takesAll = invocation.has("all") || invocation.has("schema");
    const auto add = [&](const StatusLine &line) {
        const bool takesOff = takesAll || (line.report && invocation.has("json"));
        if (line.isOff() && !takesOff)
            ++found.off;
        else if (line.isProblem() || !invocation.has("problems"))
            found.shown.append(line);
    };
    for (const SchemaJudgement &schema : found.schemas.list) {
        if (!schema.findings.isEmpty())
            add({&schema, nullptr});
        for (const ReportJudgement &report : schema.reports)
            add({&schema, &report});
    }
}

int statusOf(const Found &found)
{
    if (!found.schemas.isComplete)
        return Tool::CouldNotAsk;
    const auto &all = found.schemas.list;
    const QVector<Finding> ofMachine = found.machine.findings();
    const bool isWell =
        std::none_of(all.cbegin(), all.cend(),
                     [](const SchemaJudgement &schema) { return schema.hasProblem(); }) &&
        std::none_of(ofMachine.cbegin(), ofMachine.cend(),
                     [](const Finding &one) { return one.isProblem(); });
    return isWell ? Tool::Well : Tool::Look;
}

void printText(const Found &found, bool onlyProblems)
{
    if (found.shown.isEmpty() && onlyProblems && found.machine.findings().isEmpty())
        Output::print(QStringLiteral("no problems"));
    else
        Output::print(statusTable(found.shown));
    Output::print(QString());
    for (const Finding &one : found.machine.findings())
        Output::print(QStringLiteral("%1: %2; to do: %3").arg(one.subject, one.text, one.remedy));
    if (found.off > 0)
        Output::print(QStringLiteral("disabled and not shown: %1; see --all").arg(found.off));
    Output::print(hostLines(found.machine));
}

void printJson(const Found &found)
{
    QJsonArray lines;
    for (const StatusLine &line : found.shown)
        lines.append(statusJson(line));
    QJsonArray machine;
    for (const Finding &one : found.machine.findings())
        machine.append(QJsonObject{{QStringLiteral("state"), one.state},
                                   {QStringLiteral("detail"), one.text},
                                   {QStringLiteral("remedy"), one.remedy}});
    const QJsonObject object{
        {QStringLiteral("moment"), found.now.toUTC().toString(Qt::ISODate)},
        {QStringLiteral("status"), found.status},
        {QStringLiteral("reports"), lines},
        {QStringLiteral("machine"), machine},
        {QStringLiteral("hosts"), hostsJson(found.machine)},
        {QStringLiteral("silentHosts"), QJsonArray::fromStringList(found.machine.silentHosts)}};
    Output::print(object);
}

int showStatus(const Invocation &invocation, const Schemas &schemas)
{
    const auto rows = schemas.rows(invocation.value("schema"));
    if (!rows.isOk()) {
        Output::error(rows.error());
        return Tool::CouldNotAsk;
    }
    if (rows.value().isEmpty() && invocation.has("schema"))
        return noSuchSchema(schemas, invocation.value("schema"));
    // Judges all schemas as of the same moment, so that a schema that is read late does not look
    // worse.
    Found found{
        Machine::ask(invocation.connection), QDateTime::currentDateTime(), {}, {}, 0, Tool::Well};
    {
        Progress progress(QStringLiteral("schemas"), rows.value().size());
        const SchemaJudge judge(found.machine, found.now, SchemaJudge::Scope::Problems);
        found.schemas = judgeAll(schemas, rows.value(), judge, [&progress] { progress.step(); });
    }
    choose(invocation, found);
    found.status = statusOf(found);
    if (invocation.has("json"))
        printJson(found);
    else
        printText(found, invocation.has("problems"));
    if (!found.schemas.isComplete)
        Output::error(QStringLiteral("the server no longer answers"));
    return found.status;
}

} // namespace

void describeStatus(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("schema"), QStringLiteral("Show this schema only."),
                      QStringLiteral("token")});
    parser.addOption({QStringLiteral("problems"), QStringLiteral("Show only problems.")});
    parser.addOption({QStringLiteral("all"),
                      QStringLiteral("Also show disabled reports and inactive schemas.")});
    parser.addOption({QStringLiteral("json"), QStringLiteral("Print JSON, for a monitor.")});
}

int runStatus(const Invocation &invocation)
{
    if (invocation.has("schema") && invocation.value("schema").isEmpty())
        return invocation.wrong(QStringLiteral("the schema's token is empty"));
    return onSchemas(invocation,
                     [&](const Schemas &schemas) { return showStatus(invocation, schemas); });
}
