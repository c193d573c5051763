#include "tool/invocation.h"

#include "options/usage.h"
#include "tool/output.h"
#include "tool/tool.h"

const ReportKind *readReport(const QString &word, UsageError &error)
{
    const ReportKind *kind = reportKindOf(word);
    if (!kind)
        error = {QStringLiteral("there is no report '%1', only %2")
                     .arg(word, reportWords().join(QStringLiteral(" or "))),
                 Usage::nearest(word, reportWords())};
    return kind;
}

int Invocation::wrong(const QString &error, const QString &meant) const
{
    const QString command = synopsis.section(QLatin1Char(' '), 0, 1);
    Output::errorLines(
        Usage::threeLines({error, meant}, synopsis, command + QStringLiteral(" --help")));
    return Tool::CouldNotAsk;
}

int Invocation::wrongDate() const
{
    return wrong(QStringLiteral("--date must be YYYY-MM-DD, not '%1'").arg(value("date")));
}

QDate Invocation::date() const
{
    return has("date") ? QDate::fromString(value("date"), Qt::ISODate) : QDate::currentDate();
}
