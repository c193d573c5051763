#include "reports/attenreport.h"

#include "db/mailrepository.h"
#include "db/serverconnection.h"
#include "db/varstable.h"
#include "reports/bookformat.h"
#include "reports/reportbook.h"
#include "reports/reportclaim.h"
#include "reports/reportcontent.h"
#include "reports/reportgate.h"
#include "reports/reportkind.h"
#include "reports/reportlock.h"
#include "reports/reportmail.h"
#include "reports/reporttransaction.h"

#include <QElapsedTimer>

#include <QDebug>

#include <algorithm>
#include <utility>

AttenReport::AttenReport(const ReportKind &reportKind, const QSqlDatabase &db, QObject *parent)
    : ReportBase(db, parent)
    , settings(db)
    , kind(reportKind)
{
}

ReportSettings AttenReport::readSettings() const
{
    return kind.settingsOf(settings.variableGetMultiple(QLatin1String(kind.prefix)));
}

void AttenReport::doWork()
{
    qInfo("%s::doWork()", kind.className);
    ReportRun run;
    run.settings = readSettings();
    run.now = QDateTime::currentDateTime();
    run.countsWhen = kind.countsWhen;
    run.isScheduled = true;
    const ScheduleVerdict verdict = scheduleVerdict(run.settings, run.now);
    if (verdict == ScheduleVerdict::NoRecipients)
        qWarning("%s - no e-mail addresses!", kind.className);
    if (verdict != ScheduleVerdict::Due)
        return;

    const ReportGate::Pass pass(ReportGate::ofProcess(), [&run] { return isStopRequested(run); });
    if (!pass.isHeld())
        return;
    ReportLock lock(database, kind.className);
    if (!lock.acquire()) {
        logEnd(End::Contested, run);
        return;
    }
    run.connectionId = lock.connectionId();
    run.settings = readSettings();
    if (pass.hasWaited())
        run.now = momentAfterWait(run.settings, run.now, QDateTime::currentDateTime());
    if (scheduleVerdict(run.settings, run.now) == ScheduleVerdict::Due)
        produce(run);
    lock.release();
}

void AttenReport::makeReport(const QStringList &emails, const QDateTime &now)
{
    produce(runFor(emails, now, kind.countsWhen, database));
}

void AttenReport::produce(const ReportRun &run)
{
    QElapsedTimer elapsed;
    elapsed.start();
    loadOptions();
    const QString path = reportPath(fileNameByOptions(run.now.date()));
    const int rows = buildWorkbook(path, run);
    const int queued = rows > 0 ? std::max(queueMails(path, run), 0) : 0;
    // The host parses this line for its metrics.
    qInfo("%s::makeReport() - run ended after %.3f s, rows: %i, mails queued: %i", kind.className,
          double(elapsed.elapsed()) / 1000, rows, queued);
}

bool AttenReport::saveWorkbook(const QString &path, const ReportRun &run)
{
    loadOptions();
    return buildWorkbook(path, run) > 0;
}

QString AttenReport::fileName(const QDate &today)
{
    loadOptions();
    return fileNameByOptions(today);
}

/// Returns the number of rows written. If no workbook was saved, logs why and returns 0.
int AttenReport::buildWorkbook(const QString &path, const ReportRun &run)
{
    const std::unique_ptr<ReportContent> content = createContent(run);
    if (!content->loadPeople())
        return 0;
    if (content->rowCount() == 0) {
        qWarning("%s - no people!", kind.className);
        return 0;
    }
    if (!fits(bookFormatOf(path), content->rowCount()))
        return 0;
    if (!content->loadValues() && isConnectionLost(run, database)) {
        logEnd(End::ConnectionLost, run);
        return 0;
    }
    return writeBook(path, *content, run) ? content->rowCount() : 0;
}

/// Returns whether the rows fit into one sheet; if not, logs an error. The engine would drop the
/// cells past the sheet's last row. Called before the rows are read, because reading may take long.
bool AttenReport::fits(const BookFormat &format, int rowCount) const
{
    if (rowCount < format.rows)
        return true;
    const QString other = &format == &xlsxFormat
                              ? QString()
                              : QStringLiteral("; .xlsx can hold %1").arg(xlsxFormat.rows - 1);
    qCritical("%s - %i rows are more than the %i that %s can hold%s", kind.className, rowCount,
              format.rows - 1, format.extension.data(), qUtf8Printable(other));
    return false;
}

bool AttenReport::writeBook(const QString &path, ReportContent &content, const ReportRun &run) const
{
    ReportBook book(bookFormatOf(path).create());
    if (!book) {
        qCritical("%s - %s failed!", kind.className, bookFactoryName());
        return false;
    }
    setUpReportBook(*book, kind.className);
    if (!content.beginSheet(*book)) {
        qCritical("%s - addSheet failed!", kind.className);
        return false;
    }
    const End end = writeRows(content, run);
    if (end != End::None) {
        logEnd(end, run);
        return false;
    }
    content.endSheet();
    return saveReportBook(std::move(book), path, kind.className);
}

AttenReport::End AttenReport::writeRows(ReportContent &content, const ReportRun &run) const
{
    const int total = content.rowCount();
    for (int row = 0; row < total; ++row) {
        if (isStopRequested(run))
            return End::StoppedInRows;
        const bool complete = content.writeNextRow();
        if (!complete && isStopRequested(run))
            return End::StoppedInRows;
        if (!complete && isConnectionLost(run, database))
            return End::ConnectionLost;
        if (run.progress)
            run.progress(total);
    }
    return End::None;
}

MailRecord AttenReport::makeMail(const QString &path, const QDate &today)
{
    const MailTexts texts = mailTexts(today);
    MailRecord mail;
    mail.subject = texts.subject;
    mail.body = texts.body;
    mail.from = reportSender(settings);
    mail.data = attachmentDocument(path);
    if (mail.data.isEmpty())
        qCritical("%s makeMail - can not open file '%s' for read!", kind.className,
                  qPrintable(path));
    return mail;
}

int AttenReport::queueMails(const QString &path, const ReportRun &run)
{
    const MailRecord mail = makeMail(path, run.now.date());
    if (mail.data.isEmpty()) {
        qWarning("%s - invalid email (attachment missing)!", kind.className);
        return 0;
    }
    ReportTransaction transaction(database);
    int queued = 0;
    End end = begin(run, transaction);
    if (end == End::None)
        end = queueAll(mail, run, transaction, queued);
    if (end == End::None)
        end = commit(run, transaction);
    if (end == End::None)
        return queued;
    transaction.rollback();
    logEnd(end, run);
    return end == End::LostInCommit ? -1 : 0;
}

/// Begins the transaction. A scheduled run claims the report in it. Other runs claim nothing,
/// because their reports are mailed regardless of the schedule.
AttenReport::End AttenReport::begin(const ReportRun &run, ReportTransaction &transaction) const
{
    Claim claim = Claim::Unclaimed;
    if (run.isScheduled)
        claim = claimReport(database, kind.key("lastGenerated"), run, transaction);
    else
        transaction.begin();
    if (claim == Claim::NodeNotReady)
        return End::NodeNotReady;
    if (!transaction.isOpen())
        return isConnectionLost(run, database) ? End::ConnectionLost : End::NotBegun;
    // If the client library has reconnected, the new connection does not hold the report's lock.
    if (run.connectionId != 0 && transaction.connectionId() != run.connectionId)
        return End::ConnectionLost;
    switch (claim) {
    case Claim::Ours:
    case Claim::NodeNotReady: // handled above
        break;
    case Claim::Unclaimed: // the run goes on if its transaction is intact
        return interruptionOf(run, transaction);
    case Claim::Made:
        return End::MadeElsewhere;
    case Claim::Contested:
        return End::Contested;
    case Claim::Blocked:
        return End::Blocked;
    }
    return End::None;
}

/// Queues the mails and, if the report counts as made, stores "lastGenerated". Called between
/// begin() and commit().
AttenReport::End AttenReport::queueAll(const MailRecord &mail, const ReportRun &run,
                                       ReportTransaction &transaction, int &queued)
{
    End end = queueForEach(mail, run, transaction, queued);
    if (end != End::None)
        return end;
    const bool counts = run.countsWhen == CountsAsMade::Always ||
                        (run.countsWhen == CountsAsMade::WithAnyMail && queued > 0);
    if (!counts && queued == 0)
        return End::NothingQueued;
    if (counts) {
        end = interruptionOf(run, transaction);
        if (end == End::None)
            end = storeLastGenerated(run);
    }
    return end == End::None ? interruptionOf(run, transaction) : end;
}

AttenReport::End AttenReport::queueForEach(MailRecord mail, const ReportRun &run,
                                           ReportTransaction &transaction, int &queued) const
{
    for (const QString &recipient : recipientsToMail(run.settings.recipients)) {
        mail.to = recipient;
        // A stop must not wait until thousands of mails are queued. But if the mails queued so far
        // cannot be rolled back, queue the rest, too. Otherwise the next run would mail the first
        // recipients again.
        const bool stops = isStopRequested(run);
        if (stops && (queued == 0 || transaction.canRollBack()))
            return End::StoppedInMails;
        // canRollBack() also returns false if the connection is lost. The run must then end.
        End end = stops ? interruptionOf(run, transaction) : End::None;
        const int before = queued;
        if (end == End::None)
            end = queueOne(mail, run, queued);
        // If the mail was not queued, the server may have ended the transaction.
        if (end == End::None && queued == before)
            end = interruptionOf(run, transaction);
        if (end != End::None)
            return end;
    }
    return End::None;
}

/// Returns how a scheduled run ends after a statement failed with this error. Two kinds of error
/// end it: a conflict with another transaction, and a cluster node that is not ready. The next tick
/// then tries again. Returns None for all other errors, and for runs that are not scheduled.
AttenReport::End AttenReport::endAfter(const QString &errorCode, const ReportRun &run)
{
    if (run.isScheduled && isConflict(errorCode))
        return End::RolledBack;
    return run.isScheduled && isNodeNotReady(errorCode) ? End::NodeNotReady : End::None;
}

/// Queues one mail and counts it. On an error, returns how the run ends, or None if this error does
/// not end it.
AttenReport::End AttenReport::queueOne(const MailRecord &mail, const ReportRun &run,
                                       int &queued) const
{
    MailRepository repository(nullptr);
    repository.setDB(database);
    const Result<uint> added = repository.tryAddMail(mail);
    if (!added.isOk()) {
        const End end = endAfter(added.errorCode(), run);
        if (end != End::None)
            return end;
        qCritical().noquote() << added.error();
    }
    const int mid = added.isOk() ? static_cast<int>(added.value()) : 0;
    queued += mid > 0 ? 1 : 0;
    if (mid == 0)
        qWarning("%s::makeReport() - mail not created!", kind.className);
    else if (mid < 0)
        qCritical("%s::makeReport - mail not created!", kind.className);
    return End::None;
}

/// Returns how the run lost its transaction, or None if the transaction still exists.
AttenReport::End AttenReport::interruptionOf(const ReportRun &run,
                                             ReportTransaction &transaction) const
{
    if (transaction.isIntact())
        return End::None;
    return isConnectionLost(run, database) ? End::ConnectionLost : End::RolledBack;
}

AttenReport::End AttenReport::storeLastGenerated(const ReportRun &run) const
{
    const qint64 generated = QDateTime::currentSecsSinceEpoch();
    const QVector<Error> errors =
        VarsTable(database).store({{kind.key("lastGenerated"), generated}});
    if (errors.isEmpty())
        return End::None;
    const End end = endAfter(errors.first().code, run);
    if (end != End::None)
        return end;
    qCritical().noquote() << "variableSet ERROR:" << errors.first().text;
    qCritical("%s::makeReport() - 'lastGenerated' NOT SET!", kind.className);
    return End::None;
}

AttenReport::End AttenReport::commit(const ReportRun &run, ReportTransaction &transaction) const
{
    if (transaction.commit())
        return End::None;
    const End end = endAfter(transaction.errorCode(), run);
    if (end != End::None)
        return end;
    // If the connection was lost, the server may have committed without being able to say so.
    const bool isLost = isClientError(transaction.errorCode()) || isConnectionLost(run, database);
    qCritical(isLost ? "%s::makeReport() - it is unknown whether the mails were committed: %s"
                     : "%s::makeReport() - mails not committed: %s",
              kind.className, qUtf8Printable(transaction.error()));
    return isLost ? End::LostInCommit : End::NotCommitted;
}

void AttenReport::logEnd(End end, const ReportRun &run) const
{
    switch (end) {
    case End::None:
    case End::NothingQueued: // each failed mail was logged
    case End::NotCommitted:  // logged by commit()
    case End::LostInCommit:
        break;
    case End::MadeElsewhere:
        qInfo("%s::doWork() - another host has made this report", kind.className);
        break;
    case End::NotBegun:
        qWarning("%s::makeReport() - the server refused to begin a transaction, no mail queued!",
                 kind.className);
        break;
    case End::NodeNotReady:
        qWarning("%s::makeReport() - the cluster node is not ready, no mail queued!",
                 kind.className);
        break;
    case End::Contested:
        qInfo("%s::doWork() - another host is making this report", kind.className);
        break;
    case End::Blocked:
        qWarning("%s::makeReport() - 'lastGenerated' is locked, no mail queued!", kind.className);
        break;
    case End::StoppedInRows:
        qWarning("%s::makeReport() - interrupted, nothing saved and no mail!", kind.className);
        break;
    case End::StoppedInMails:
        qWarning("%s::makeReport() - interrupted, no mail queued!", kind.className);
        break;
    case End::ConnectionLost:
        qWarning("%s::makeReport() - database connection lost, no mail queued!", kind.className);
        break;
    case End::RolledBack:
        if (run.isScheduled) // the next tick tries again
            qInfo("%s::makeReport() - the server rolled the run back, no mail queued!",
                  kind.className);
        else
            qWarning("%s::makeReport() - the server rolled the run back, no mail queued!",
                     kind.className);
        break;
    }
}
