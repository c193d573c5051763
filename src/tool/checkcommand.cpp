#include "tool/clustercheck.h"
#include "tool/commands.h"
#include "tool/hosttext.h"
#include "tool/invocation.h"
#include "tool/machine.h"
#include "tool/onschema.h"
#include "tool/output.h"
#include "tool/progress.h"
#include "tool/schemapool.h"
#include "tool/servercheck.h"
#include "tool/tool.h"

#include <QJsonArray>

#include <algorithm>

namespace
{

/// What `check` has found out.
struct Found {
    Machine machine;
    SchemasJudged schemas;
    QVector<Finding> findings;
    QString server; ///< the server that answered; empty if unknown
    QString cipher; ///< empty if the connection is not encrypted
    int opened = 0; ///< how many schemas could be opened
    int status = Tool::Well;
};

bool isListed(const Finding &finding, const Machine &machine, bool isAsked)
{
    if (finding.gravity == Gravity::Waiting || finding.text == machine.temporaryError)
        return false; // waiting is normal, and findAll() has listed the machine's error
    return finding.gravity != Gravity::Off || isAsked;
}

/// Adds the schema's findings, each only once even if both reports have it.
void addFindings(const SchemaJudgement &schema, bool isAsked, Found &found)
{
    QStringList known;
    QVector<Finding> all = schema.findings;
    for (const ReportJudgement &report : schema.reports)
        all += report.findings;
    for (const Finding &finding : qAsConst(all)) {
        const QString text = finding.text + finding.remedy;
        if (known.contains(text) || !isListed(finding, found.machine, isAsked))
            continue;
        known.append(text);
        found.findings.append(finding);
    }
}

/// The findings about the machine and the server come first, because a problem there may cause many
/// findings about schemas.
void findAll(const Schemas &schemas, bool isAsked, Found &found)
{
    const auto &list = found.schemas.list;
    const auto enabled = std::count_if(list.cbegin(), list.cend(),
                                       [](const SchemaJudgement &one) { return one.isEnabled(); });
    found.opened = int(std::count_if(list.cbegin(), list.cend(),
                                     [](const SchemaJudgement &one) { return one.isOpened; }));
    found.findings =
        found.machine.findings() + checkServer(schemas.master()) + checkCluster(schemas.master());
    if (!isAsked) // all schemas were judged, so the number of workers is known
        found.findings += checkConnections(schemas.master(), list.size(), int(enabled));
    // Only a notice, because every new installation starts without enabled reports.
    if (!isAsked && enabled == 0)
        found.findings.append(
            {Gravity::Notice, QStringLiteral("off"), QStringLiteral("schemas"),
             QStringLiteral("none of the %1 active schemas has an enabled report").arg(list.size()),
             QStringLiteral("autoreport set TOKEN daily --enable ...")});
    for (const SchemaJudgement &schema : list)
        addFindings(schema, isAsked, found);
}

/// Prints each finding with its remedy on the line below. Prints a summary at the end.
void printText(const Found &found)
{
    const auto &findings = found.findings;
    for (const Finding &finding : findings) {
        const QString word =
            finding.isProblem()
                ? Output::coloured(QStringLiteral("problem"), Output::Colour::Bad)
                : Output::coloured(QStringLiteral("notice"), Output::Colour::Notable);
        Output::print(QStringLiteral("%1: %2: %3").arg(word, finding.subject, finding.text));
        Output::print(QStringLiteral("    ") + finding.remedy);
    }
    const auto problems = std::count_if(findings.cbegin(), findings.cend(),
                                        [](const Finding &one) { return one.isProblem(); });
    if (!found.server.isEmpty())
        Output::print(QStringLiteral("the server that answers is ") + found.server);
    Output::print(found.cipher.isEmpty()
                      ? QStringLiteral("the connection is not encrypted")
                      : QStringLiteral("the connection is encrypted with ") + found.cipher);
    Output::print(hostLines(found.machine));
    Output::print(QStringLiteral("%1 of %2 schemas opened, %3 problems")
                      .arg(QString::number(found.opened),
                           QString::number(found.schemas.list.size()), QString::number(problems)));
}

void printJson(const Found &found)
{
    QJsonArray array;
    for (const Finding &finding : found.findings)
        array.append(QJsonObject{{QStringLiteral("problem"), finding.isProblem()},
                                 {QStringLiteral("state"), finding.state},
                                 {QStringLiteral("subject"), finding.subject},
                                 {QStringLiteral("text"), finding.text},
                                 {QStringLiteral("remedy"), finding.remedy}});
    const QJsonObject object{{QStringLiteral("status"), found.status},
                             {QStringLiteral("schemas"), found.schemas.list.size()},
                             {QStringLiteral("opened"), found.opened},
                             {QStringLiteral("server"), found.server},
                             {QStringLiteral("cipher"), found.cipher},
                             {QStringLiteral("hosts"), hostsJson(found.machine)},
                             {QStringLiteral("findings"), array}};
    Output::print(object);
}

int couldNotAsk(const QString &error)
{
    Output::error(error);
    return Tool::CouldNotAsk;
}

int checkAll(const Invocation &invocation, const Schemas &schemas)
{
    const bool isAsked = !invocation.token.isEmpty();
    const auto rows = schemas.rows(invocation.token);
    if (!rows.isOk())
        return couldNotAsk(rows.error());
    if (isAsked && rows.value().isEmpty())
        return noSuchSchema(schemas, invocation.token);
    // If the command line names a schema that is not active, a finding says so.
    const QVector<SchemaRow> chosen = isAsked ? rows.value() : activeOf(rows.value());
    Found found{Machine::ask(invocation.connection), {}, {}, {}, {}, 0, Tool::Well};
    {
        Progress progress(QStringLiteral("schemas"), chosen.size());
        const SchemaJudge judge(found.machine, QDateTime::currentDateTime(),
                                isAsked ? SchemaJudge::Scope::AllReports
                                        : SchemaJudge::Scope::Notices);
        found.schemas = judgeAll(schemas, chosen, judge, [&progress] { progress.step(); });
    }
    findAll(schemas, isAsked, found);
    // If the server no longer answers, the checks find nothing, which must not look like success.
    if (!found.schemas.isComplete || !schemas.isAnswering())
        return couldNotAsk(QStringLiteral("the server no longer answers"));
    const bool well = std::none_of(found.findings.cbegin(), found.findings.cend(),
                                   [](const Finding &one) { return one.isProblem(); });
    found.status = well ? Tool::Well : Tool::Look;
    found.server = serverName(schemas.master());
    found.cipher = cipherOf(schemas.master());
    if (invocation.has("json"))
        printJson(found);
    else
        printText(found);
    return found.status;
}

} // namespace

void describeCheck(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("json"), QStringLiteral("Print JSON, for a monitor.")});
}

int runCheck(const Invocation &invocation)
{
    return onSchemas(invocation,
                     [&](const Schemas &schemas) { return checkAll(invocation, schemas); });
}
