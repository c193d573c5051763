#include "reports/reportmail.h"

#include "db/mailrepository.h"
#include "db/zasdbsettings.h"
#include "reports/reportbook.h"
#include "reports/reportrun.h"
#include "reports/reporttransaction.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeDatabase>

#include <limits>

#include <fcntl.h>

namespace
{

// Whole groups of Base64, so that only the last chunk is padded.
constexpr qint64 chunkBytes = 3 * qint64(0x8000);

QString mimeTypeName(const QString &path)
{
    const QMimeType type = QMimeDatabase().mimeTypeForFile(path);
    if (type.isValid() && !type.isDefault())
        return type.name();
    // A system without a MIME database: these two are all that a report can be.
    return isBinaryBook(path)
               ? QStringLiteral("application/vnd.ms-excel")
               : QStringLiteral(
                     "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet");
}

/// Empty when the file can not be read, or for one above what a byte array holds.
QByteArray attachmentDocument(const QString &path)
{
    // Opened as the engine names it: in UTF-8, whatever the process's locale.
    QFile file;
    const int descriptor = ::open(path.toUtf8().constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor == -1 ||
        !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return QByteArray();
    const QJsonObject attachment{{QStringLiteral("type"), mimeTypeName(path)},
                                 {QStringLiteral("name"), QFileInfo(path).fileName()},
                                 {QStringLiteral("content"), QString()}};
    const QJsonObject root{{QStringLiteral("attachments"), QJsonArray{attachment}}};
    const QByteArray frame = QJsonDocument(root).toJson(QJsonDocument::Indented);

    // The file goes straight into its place: as a value of the document it would be in memory
    // several times over, half of them in wide characters. Keys are sorted, so it comes first.
    const QByteArray opening = QByteArrayLiteral("\"content\": \"");
    const int place = frame.indexOf(opening) + opening.size();
    const qint64 bytes = frame.size() + (file.size() / 3 + 1) * 4;
    if (bytes > std::numeric_limits<int>::max())
        return QByteArray();
    QByteArray document;
    document.reserve(static_cast<int>(bytes));
    document += frame.left(place);
    while (!file.atEnd()) {
        const QByteArray chunk = file.read(chunkBytes);
        if (chunk.isEmpty())
            return QByteArray();
        document += chunk.toBase64();
    }
    return document += frame.mid(place);
}

/// Zero, whatever went before, when the transaction is gone or the run is to stop.
int queueForEach(const char *report, MailRecord mail, const ReportRun &run,
                 const QSqlDatabase &database, ReportTransaction &transaction)
{
    MailRepository repository(nullptr);
    repository.setDB(database);
    int created = 0;
    for (const QString &recipient : run.settings.recipients) {
        mail.to = recipient.trimmed();
        if (mail.to.isEmpty())
            continue;
        // Thousands of mails take longer than a stop may. What can not be taken back goes on, or
        // the next run would mail some recipients again.
        if (isStopRequested(run) && (created == 0 || transaction.canTakeBack()) &&
            isInterrupted(report, run)) {
            transaction.giveUp();
            return 0;
        }
        const int mid = static_cast<int>(repository.addMail(mail));
        if (mid > 0)
            ++created;
        else if (mid == 0)
            qWarning("%s::makeReport() - mail not created!", report);
        else
            qCritical("%s::makeReport - mail not created!", report);
        if (mid <= 0 && !transaction.isIntact())
            return 0;
    }
    return created;
}

} // namespace

MailRecord makeReportMail(const ReportMailTexts &texts, const QString &path,
                          const QSqlDatabase &database)
{
    MailRecord mail;
    mail.subject = texts.subject;
    mail.body = texts.body;
    mail.from =
        ZasDbSettings(database)
            .variableGet(QStringLiteral("globalEmail"), QStringLiteral(AUTOREPORT_DEFAULT_SENDER))
            .toString();

    mail.data = attachmentDocument(path);
    if (mail.data.isEmpty())
        qCritical("%s makeMail - can not open file '%s' for read!", texts.report, qPrintable(path));
    return mail;
}

int queueReport(const char *report, const QString &prefix, const MailRecord &mail,
                const ReportRun &run, CountsAsMade counts, ZasDbSettings &settings,
                const QSqlDatabase &database)
{
    if (mail.data.isEmpty()) {
        qWarning("%s - invalid email (attachment missing)!", report);
        return 0;
    }
    ReportTransaction transaction(report, database, run.connectionId);
    if (!transaction.isIntact())
        return 0;
    const int queued = queueForEach(report, mail, run, database, transaction);
    // Whatever the report's rule, an operator who gets no mail has no report.
    const bool made = queued > 0 || (counts == CountsAsMade::Always && !run.byHand);
    if (made && run.mark && transaction.isIntact())
        storeLastGenerated(report, prefix, settings);
    return transaction.commit() ? queued : 0;
}
