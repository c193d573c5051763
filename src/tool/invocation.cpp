#include "tool/invocation.h"

#include "tool/output.h"
#include "tool/tool.h"

int Invocation::wrong(const QString &reason) const
{
    // The help too goes to standard error: who reads the output must not take it for an answer.
    Output::error(reason);
    Output::errorHelp(parser.helpText());
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
