#include "reports/reportmail.h"

#include "db/mailrepository.h"
#include "db/zasdbsettings.h"
#include "reports/reporttransaction.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeDatabase>

namespace
{

QString mimeTypeName(const QString &path)
{
    const QMimeType type = QMimeDatabase().mimeTypeForFile(path);
    if (type.isValid() && !type.isDefault())
        return type.name();
    // A system without a MIME database: these two are all that a report can be.
    return path.endsWith(QLatin1String(".xls"))
               ? QStringLiteral("application/vnd.ms-excel")
               : QStringLiteral(
                     "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet");
}

QByteArray attachmentDocument(const QString &path, const QByteArray &content)
{
    const QJsonObject attachment{
        {QStringLiteral("type"), mimeTypeName(path)},
        {QStringLiteral("name"), QFileInfo(path).fileName()},
        {QStringLiteral("content"), QString::fromLatin1(content.toBase64())}};
    const QJsonObject document{{QStringLiteral("attachments"), QJsonArray{attachment}}};
    return QJsonDocument(document).toJson(QJsonDocument::Indented);
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

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qCritical("%s makeMail - can not open file '%s' for read!", texts.report, qPrintable(path));
        return mail;
    }
    const QByteArray content = file.readAll();
    file.close();
    mail.data = attachmentDocument(path, content);
    return mail;
}

bool hasAttachment(const char *report, const MailRecord &mail)
{
    if (!mail.data.isEmpty())
        return true;
    qWarning("%s - invalid email (attachment missing)!", report);
    return false;
}

int queueReportMail(const char *report, MailRecord mail, const QStringList &recipients,
                    const QSqlDatabase &database, ReportTransaction &transaction)
{
    MailRepository repository(nullptr);
    repository.setDB(database);
    int created = 0;
    for (const QString &recipient : recipients) {
        mail.to = recipient.trimmed();
        if (mail.to.isEmpty())
            continue;
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
