#include "common/zas.h"
#include "options/optionreader.h"
#include "reports/attenreport.h"
#include "reports/reportbook.h"
#include "reports/reportlock.h"
#include "tool/commands.h"
#include "tool/interruption.h"
#include "tool/messages.h"
#include "tool/onschema.h"
#include "tool/output.h"
#include "tool/reportjob.h"
#include "tool/storedsettings.h"
#include "tool/tool.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <unistd.h>

namespace
{

/// Includes malformed addresses, because scheduled runs queue mails to them, too.
Result<QStringList> chosenRecipients(const Invocation &invocation, const QSqlDatabase &database)
{
    if (invocation.has("to"))
        return QStringList(invocation.value("to").trimmed());
    const auto stored = StoredSettings::read(database, *invocation.kind);
    if (!stored.isOk())
        return Error{stored.error()};
    return recipientsToMail(stored.value().settings.recipients);
}

bool isAgreed(const Invocation &invocation, const QStringList &recipients)
{
    if (invocation.has("to") || invocation.has("yes"))
        return true;
    return Output::agrees(QStringLiteral("Queue the %1 report of '%2' of %3 for %4? [y/N] ")
                              .arg(QLatin1String(invocation.kind->word), invocation.token,
                                   invocation.date().toString(Qt::ISODate),
                                   recipients.join(QStringLiteral(", "))));
}

/// Returns the number of mails queued, or -1 if that is unknown. Writes the workbook to a new
/// folder: if it were in the temporary directory itself, a host that runs as another account could
/// not write its own workbook of the same name there.
int queue(const Invocation &invocation, const QSqlDatabase &database, const QStringList &recipients,
          qulonglong connectionId)
{
    const QString pattern = reportPath(QStringLiteral("autoreport-XXXXXX"));
    const QTemporaryDir folder(pattern);
    if (!folder.isValid()) {
        Output::error(
            QStringLiteral("cannot create a directory in '%1': %2; point TMPDIR elsewhere")
                .arg(QFileInfo(pattern).path(), folder.errorString()));
        return 0;
    }
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
        Output::error(QStringLiteral("the report has no recipients: use --to, or see autoreport "
                                     "set --help"));
        return Tool::Look;
    }
    if (!isAgreed(invocation, recipients)) {
        Output::error(QStringLiteral("nothing was queued"));
        return Tool::Look;
    }
    // Acquired only after the operator's answer, because hosts skip the report while the lock is
    // held.
    ReportLock lock(database, invocation.kind->className);
    if (!lock.acquire()) {
        Output::error(QStringLiteral(
            "a host or another operator is making this report right now; nothing was "
            "queued; see autoreport status in a minute"));
        return Tool::Look;
    }
    // Constructed only after the answer, so that Ctrl-C at the question ends the program.
    const Interruption interruption;
    const int queued = queue(invocation, database, recipients, lock.connectionId());
    lock.release();
    const bool complained = Messages::print();
    if (queued < 0) {
        Output::error(QStringLiteral("the connection was lost during the commit; look whether the "
                                     "mails are in the table emails of '%1' before you queue them "
                                     "again")
                          .arg(database.databaseName()));
        return Tool::Look;
    }
    Output::print(QStringLiteral("%1 of %2 mails queued%3")
                      .arg(QString::number(queued), QString::number(recipients.size()),
                           queued > 0 && !complained && invocation.has("mark")
                               ? QStringLiteral("; the report counts as made")
                               : QString()));
    if (queued > 0 && !Output::flush()) { // say so, or the operator might queue the mails again
        Output::error(QStringLiteral("%1 mails were queued nevertheless").arg(queued));
        return Tool::Look;
    }
    if (queued == 0 && Interruption::isRequested())
        return Interruption::status();
    return queued == recipients.size() && !complained ? Tool::Well : Tool::Look;
}

/// Returns an error in the command's own options, or an empty text.
QString optionError(const Invocation &invocation)
{
    if (invocation.has("to") && !ZAS::validEmail(invocation.value("to").trimmed()))
        return QStringLiteral("--to must be one mail address, not '%1'")
            .arg(invocation.value("to"));
    // Another day's report would count as today's.
    if (invocation.has("mark") && invocation.date() != QDate::currentDate())
        return QStringLiteral(
            "--mark is for today's report only: it makes the run count as today's");
    if (!invocation.has("to") && !invocation.has("yes") && !Output::isTerminal(STDIN_FILENO))
        return QStringLiteral(
            "cannot ask without a terminal: give --yes to mail all recipients, or "
            "--to for one");
    return {};
}

} // namespace

void describeRun(QCommandLineParser &parser)
{
    OptionReader::describeLanguage(parser);
    parser.addOption(
        {QStringLiteral("date"),
         QStringLiteral("Make the report of this day, YYYY-MM-DD, instead of today's."),
         QStringLiteral("date")});
    parser.addOption({QStringLiteral("to"),
                      QStringLiteral("Mail this address instead of the report's recipients."),
                      QStringLiteral("address")});
    parser.addOption({QStringLiteral("mark"),
                      QStringLiteral("Count this run as today's: store lastGenerated.")});
    parser.addOption(
        {QStringLiteral("yes"), QStringLiteral("Mail all recipients without asking.")});
}

int runRun(const Invocation &invocation)
{
    if (!invocation.date().isValid())
        return invocation.wrongDate();
    const QString error = optionError(invocation);
    if (!error.isEmpty())
        return invocation.wrong(error);
    return onSchema(invocation, SchemaConnection::Access::ReadWrite,
                    SchemaConnection::Statements::Long, [&](const SchemaConnection &connection) {
                        return makeRun(invocation, connection.database());
                    });
}
