#include "tool/commands.h"
#include "tool/invocation.h"
#include "tool/messages.h"
#include "tool/onschema.h"
#include "tool/output.h"
#include "tool/progress.h"
#include "tool/statustable.h"
#include "tool/tool.h"

#include <QJsonArray>

#include <algorithm>

namespace
{

// One after another: thousands of connections at once would take them from the hosts.
QVector<ReportStatus> readAll(Schemas &schemas, const QStringList &tokens, const QDateTime &now)
{
    QVector<ReportStatus> reports;
    Progress progress(QStringLiteral("schemas"), tokens.size());
    for (const QString &token : tokens) {
        reports += readStatus(schemas, token, now);
        progress.step();
    }
    return reports;
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

int showStatus(const Invocation &invocation, Schemas &schemas)
{
    const QString only = invocation.value("schema");
    // Asked for by name, a schema that is not there is a mistake of the caller, not of the schema.
    if (!only.isEmpty() && schemas.find(only).databaseName.isEmpty()) {
        Output::error(QStringLiteral("there is no active schema '%1': autoreport status without "
                                     "--schema lists them")
                          .arg(only));
        return Tool::CouldNotAsk;
    }
    const QStringList tokens = only.isEmpty() ? schemas.tokens() : QStringList{only};
    if (Messages::print()) // a list that could not be read looks like an empty one
        return Tool::CouldNotAsk;
    // One moment for all: a schema that is asked late must not look worse for it.
    const QDateTime now = QDateTime::currentDateTime();
    const auto reports = readAll(schemas, tokens, now);
    const bool well = std::all_of(reports.cbegin(), reports.cend(),
                                  [](const ReportStatus &one) { return one.reason.isEmpty(); });
    const int status = well ? Tool::Well : Tool::Look;
    if (invocation.has("json"))
        printJson(reports, now, status);
    else
        Output::print(statusTable(reports));
    return status;
}

} // namespace

void describeStatus(QCommandLineParser &parser)
{
    parser.addOption(
        {QStringLiteral("schema"), QStringLiteral("This schema alone."), QStringLiteral("token")});
    parser.addOption({QStringLiteral("json"), QStringLiteral("Print JSON, for a monitor.")});
}

int runStatus(const Invocation &invocation)
{
    return onSchemas(invocation, [&](Schemas &schemas) { return showStatus(invocation, schemas); });
}
