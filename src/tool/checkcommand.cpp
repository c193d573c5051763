#include "tool/clustercheck.h"
#include "tool/commands.h"
#include "tool/invocation.h"
#include "tool/onschema.h"
#include "tool/output.h"
#include "tool/progress.h"
#include "tool/schemacheck.h"
#include "tool/servercheck.h"
#include "tool/tool.h"

#include <QJsonArray>

#include <algorithm>

namespace
{

/// Returns the server's findings first, since they cause many of the schemas'.
QVector<Finding> findAll(const Schemas &schemas, const QStringList &tokens)
{
    QVector<Finding> findings =
        checkTemporaryDirectory() + checkServer(schemas.master()) + checkCluster(schemas.master());
    QVector<Finding> ofSchemas;
    int enabled = 0;
    Progress progress(QStringLiteral("schemas"), tokens.size());
    for (const QString &token : tokens) {
        const SchemaCheck check = checkSchema(schemas, token);
        ofSchemas += check.findings;
        enabled += check.isEnabled ? 1 : 0;
        if (!check.isComplete && !schemas.isAnswering())
            break;
        progress.step();
    }
    // Only now is the number of a host's workers known.
    findings += checkConnections(schemas.master(), tokens.size(), enabled);
    // Only a notice: every new installation begins like this.
    if (enabled == 0)
        findings.append(
            {false, QStringLiteral("schemas"),
             QStringLiteral("none of the %1 active ones has an enabled report").arg(tokens.size()),
             QStringLiteral("autoreport set TOKEN daily --enable ...")});
    return findings + ofSchemas;
}

/// What was asked, and how.
struct Connected {
    QString server; ///< of several, the one that answered; empty if it does not say
    QString cipher; ///< empty if not encrypted
};

/// Prints two lines per finding: the finding and its remedy.
void printText(const QVector<Finding> &findings, int schemas, const Connected &connected)
{
    for (const Finding &finding : findings) {
        const QString word =
            finding.isProblem ? Output::coloured(QStringLiteral("problem"), Output::Colour::Bad)
                              : Output::coloured(QStringLiteral("notice"), Output::Colour::Notable);
        Output::print(QStringLiteral("%1: %2: %3").arg(word, finding.subject, finding.text));
        Output::print(QStringLiteral("    ") + finding.remedy);
    }
    const auto problems = std::count_if(findings.cbegin(), findings.cend(),
                                        [](const Finding &one) { return one.isProblem; });
    if (!connected.server.isEmpty())
        Output::print(QStringLiteral("the server that answers is ") + connected.server);
    Output::print(connected.cipher.isEmpty()
                      ? QStringLiteral("the connection is not encrypted")
                      : QStringLiteral("the connection is encrypted with ") + connected.cipher);
    Output::print(QStringLiteral("%1 schemas checked, %2 problems")
                      .arg(QString::number(schemas), QString::number(problems)));
}

void printJson(const QVector<Finding> &findings, int schemas, const Connected &connected,
               int status)
{
    QJsonArray array;
    for (const Finding &finding : findings)
        array.append(QJsonObject{{QStringLiteral("problem"), finding.isProblem},
                                 {QStringLiteral("subject"), finding.subject},
                                 {QStringLiteral("text"), finding.text},
                                 {QStringLiteral("remedy"), finding.remedy}});
    const QJsonObject object{{QStringLiteral("status"), status},
                             {QStringLiteral("schemas"), schemas},
                             {QStringLiteral("server"), connected.server},
                             {QStringLiteral("cipher"), connected.cipher},
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
    const auto tokens = schemas.tokens();
    if (!tokens.isOk())
        return couldNotAsk(tokens.error().simplified());
    const QVector<Finding> findings = findAll(schemas, tokens.value());
    // Without answers, checks find nothing.
    if (!schemas.isAnswering())
        return couldNotAsk(QStringLiteral("the server no longer answers"));
    const bool well = std::none_of(findings.cbegin(), findings.cend(),
                                   [](const Finding &one) { return one.isProblem; });
    const int status = well ? Tool::Well : Tool::Look;
    const Connected connected{serverName(schemas.master()), cipherOf(schemas.master())};
    if (invocation.has("json"))
        printJson(findings, tokens.value().size(), connected, status);
    else
        printText(findings, tokens.value().size(), connected);
    return status;
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
