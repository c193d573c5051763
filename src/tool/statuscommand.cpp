#include "tool/commands.h"
#include "tool/invocation.h"
#include "tool/onschema.h"
#include "tool/output.h"
#include "tool/progress.h"
#include "tool/statustable.h"
#include "tool/tool.h"

#include <QJsonArray>

#include <algorithm>

namespace
{

struct Found {
    QVector<ReportStatus> reports;
    bool isComplete = true; ///< otherwise the server stopped answering
};

bool isWell(const QVector<ReportStatus> &reports)
{
    return std::all_of(reports.cbegin(), reports.cend(),
                       [](const ReportStatus &one) { return one.reason.isEmpty(); });
}

/// Reads them one after another: thousands of connections at once would leave none for the hosts.
Found readAll(const Schemas &schemas, const QStringList &tokens, const QDateTime &now)
{
    Found found;
    Progress progress(QStringLiteral("schemas"), tokens.size());
    for (const QString &token : tokens) {
        const auto reports = readStatus(schemas, token, now);
        found.reports += reports;
        // All schemas are on this server: a timeout for each could take hours.
        if (!isWell(reports) && !schemas.isAnswering()) {
            found.isComplete = false;
            break;
        }
        progress.step();
    }
    return found;
}

void printJson(const QVector<ReportStatus> &reports, const QDateTime &now, int status)
{
    QJsonArray array;
    for (const ReportStatus &report : reports)
        array.append(statusJson(report));
    const QJsonObject object{{QStringLiteral("moment"), now.toUTC().toString(Qt::ISODate)},
                             {QStringLiteral("status"), status},
                             {QStringLiteral("reports"), array}};
    Output::print(object);
}

/// Returns the tokens of the schemas to show.
Result<QStringList> chosenTokens(const Invocation &invocation, const Schemas &schemas)
{
    const QString only = invocation.value("schema");
    if (only.isEmpty())
        return schemas.tokens();
    // A wrong token is a usage error, not a schema in trouble.
    const auto found = schemas.find(only);
    if (!found.isOk())
        return Error{found.error()};
    if (!found.value())
        return Error{QStringLiteral("there is no active schema '%1': autoreport status without "
                                    "--schema lists them")
                         .arg(only)};
    return QStringList(only);
}

int showStatus(const Invocation &invocation, const Schemas &schemas)
{
    const auto tokens = chosenTokens(invocation, schemas);
    if (!tokens.isOk()) {
        Output::error(tokens.error());
        return Tool::CouldNotAsk;
    }
    // The same moment for all, so that a schema read late does not look worse.
    const QDateTime now = QDateTime::currentDateTime();
    const Found found = readAll(schemas, tokens.value(), now);
    const int status = !found.isComplete       ? Tool::CouldNotAsk
                       : isWell(found.reports) ? Tool::Well
                                               : Tool::Look;
    if (invocation.has("json"))
        printJson(found.reports, now, status);
    else
        Output::print(statusTable(found.reports));
    if (!found.isComplete)
        Output::error(QStringLiteral("the server no longer answers"));
    return status;
}

} // namespace

void describeStatus(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("schema"), QStringLiteral("Show this schema only."),
                      QStringLiteral("token")});
    parser.addOption({QStringLiteral("json"), QStringLiteral("Print JSON, for a monitor.")});
}

int runStatus(const Invocation &invocation)
{
    return onSchemas(invocation,
                     [&](const Schemas &schemas) { return showStatus(invocation, schemas); });
}
