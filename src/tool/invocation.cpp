#include "tool/invocation.h"

#include "tool/output.h"
#include "tool/tool.h"

int Invocation::wrong(const QString &error) const
{
    // The help goes to standard error as well, so that no program reads it as a result.
    Output::error(error);
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
