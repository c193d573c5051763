#include "common/zas.h"
#include "options/optionreader.h"
#include "reports/attenreport.h"
#include "reports/reportlock.h"
#include "tool/commands.h"
#include "tool/interruption.h"
#include "tool/messages.h"
#include "tool/onschema.h"
#include "tool/output.h"
#include "tool/reportjob.h"
#include "tool/schemastatus.h"
#include "tool/tool.h"

#include <QTemporaryDir>

#include <cstdio>

#include <unistd.h>

namespace
{

// Not the well-formed alone: what the report itself would refuse has to be seen as not queued.
Result<QStringList> chosenRecipients(const Invocation &invocation, const QSqlDatabase &database)
{
    if (invocation.has("to"))
        return QStringList(invocation.value("to").trimmed());
    const auto stored = StoredSettings::read(database, *invocation.kind);
    if (!stored.isOk())
        return Error{stored.error()};
    QStringList recipients; // in the order in which the report itself mails them
    for (const QString &one : stored.value().settings.recipients) {
        if (!one.trimmed().isEmpty())
            recipients.append(one.trimmed());
    }
    return recipients;
}

bool isAgreed(const Invocation &invocation, const QStringList &recipients)
{
    if (invocation.has("to") || invocation.has("yes"))
        return true;
    Output::ask(QStringLiteral("Queue the %1 report of '%2' of %3 for %4? [y/N] ")
                    .arg(QLatin1String(invocation.kind->word), invocation.token,
                         invocation.date().toString(Qt::ISODate),
                         recipients.join(QStringLiteral(", "))));
    char answer[8] = {}; // the end of the input is a no
    return std::fgets(answer, sizeof answer, stdin) && (answer[0] == 'y' || answer[0] == 'Y');
}

/// The number of mails in the queue. The workbook goes to a folder of its own: one in the hosts'
/// temporary directory that belongs to the operator could not be replaced by a host.
int queue(const Invocation &invocation, const QSqlDatabase &database, const QStringList &recipients,
          qulonglong connectionId)
{
    const QTemporaryDir folder;
    ReportJob job(database, invocation.date());
    job.run.settings.recipients = recipients;
    job.run.connectionId = connectionId;
    if (invocation.has("mark"))
        job.run.countsWhen = CountsAsMade::WithAnyMail;
    const auto report = createReport(*invocation.kind, database);
    const QString path = folder.filePath(report->fileName(invocation.date()));
    return report->saveWorkbook(path, job.run) ? report->queueMails(path, job.run) : 0;
}

int makeRun(const Invocation &invocation, const QSqlDatabase &database)
{
    const auto chosen = chosenRecipients(invocation, database);
    if (!chosen.isOk()) {
        Output::error(chosen.error());
        return Tool::CouldNotAsk;
    }
    const QStringList &recipients = chosen.value();
    if (recipients.isEmpty()) {
        Output::error(QStringLiteral("the report has no recipients: give --to, or see autoreport "
                                     "set --help"));
        return Tool::Look;
    }
    if (!isAgreed(invocation, recipients)) {
        Output::error(QStringLiteral("nothing was queued"));
        return Tool::Look;
    }
    // Not before the answer: a host that is due would skip its tick while people think.
    ReportLock lock(database, invocation.kind->className);
    if (!lock.acquire()) {
        Output::error(QStringLiteral("a host is making this report right now, nothing was queued: "
                                     "see autoreport status in a minute"));
        return Tool::Look;
    }
    // Nor this: at the question, an interruption is an answer.
    const Interruption interruption;
    const int queued = queue(invocation, database, recipients, lock.connectionId());
    lock.release();
    const bool complained = Messages::print();
    Output::print(QStringLiteral("%1 of %2 mails queued%3")
                      .arg(QString::number(queued), QString::number(recipients.size()),
                           queued > 0 && !complained && invocation.has("mark")
                               ? QStringLiteral("; the report counts as made")
                               : QString()));
    if (queued == 0 && Interruption::isRequested())
        return Interruption::status();
    return queued == recipients.size() && !complained ? Tool::Well : Tool::Look;
}

/// What is wrong with the command's own options, or an empty text.
QString optionFault(const Invocation &invocation)
{
    if (invocation.has("to") && !ZAS::validEmail(invocation.value("to").trimmed()))
        return QStringLiteral("--to must be one mail address, not '%1'")
            .arg(invocation.value("to"));
    // Marked is the day on which it is queued; another day's report would stand for today's.
    if (invocation.has("mark") && invocation.date() != QDate::currentDate())
        return QStringLiteral("--mark is for the report of today: it stands for today's run");
    if (!invocation.has("to") && !invocation.has("yes") && !Output::isTerminal(STDIN_FILENO))
        return QStringLiteral("without a terminal to ask on, give --yes to mail all recipients or "
                              "--to for one");
    return {};
}

} // namespace

void describeRun(QCommandLineParser &parser)
{
    OptionReader::describeLanguage(parser);
    parser.addOption({QStringLiteral("date"),
                      QStringLiteral("The report of that day, YYYY-MM-DD, instead of today's."),
                      QStringLiteral("date")});
    parser.addOption({QStringLiteral("to"),
                      QStringLiteral("For this address instead of the report's recipients."),
                      QStringLiteral("address")});
    parser.addOption({QStringLiteral("mark"),
                      QStringLiteral("Let it count as today's run: lastGenerated is written.")});
    parser.addOption(
        {QStringLiteral("yes"), QStringLiteral("Do not ask before all recipients are mailed to.")});
}

int runRun(const Invocation &invocation)
{
    if (!invocation.date().isValid())
        return invocation.wrongDate();
    const QString fault = optionFault(invocation);
    if (!fault.isEmpty())
        return invocation.wrong(fault);
    return onSchema(invocation, SchemaConnection::Access::ReadWrite,
                    SchemaConnection::Statements::Long, [&](const SchemaConnection &connection) {
                        return makeRun(invocation, connection.database());
                    });
}
