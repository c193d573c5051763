#include "db/mailrepository.h"

#include "common/freshquery.h"

#include <QDebug>
#include <QStringList>
#include <QVariant>

namespace
{

/// Quotes `from` and `to`, because they are reserved words.
QString mailColumns()
{
    return QStringLiteral("type, `from`, `to`, subject, body, created, aid, uid, data");
}

Error errorLine(const char *text, const QSqlQuery &query, const QString &sql)
{
    const Error error = errorOf(query);
    return {QStringList{QLatin1String(text), error.text, QStringLiteral("\n\nSQL:"), sql}.join(
                QLatin1Char(' ')),
            error.code};
}

void logError(const char *text, const QSqlQuery &query)
{
    qCritical().noquote() << errorLine(text, query, query.lastQuery()).text;
}

/// Binds the values of a new mail. Columns that are not bound, such as `status`, keep their
/// defaults until the sender sets them.
void bind(QSqlQuery &query, const MailRecord &mail)
{
    query.bindValue(QStringLiteral(":type"),
                    mail.type.isNull() ? QVariant(QVariant::String) : QString(mail.type));
    query.bindValue(QStringLiteral(":from"), mail.from);
    query.bindValue(QStringLiteral(":to"), mail.to);
    query.bindValue(QStringLiteral(":subject"), mail.subject);
    // Qt would store a null text as NULL.
    query.bindValue(QStringLiteral(":body"), mail.body.isNull() ? QStringLiteral("") : mail.body);
    // Different on purpose: without an administrator, `aid` is 0; without a person, `uid` is NULL.
    query.bindValue(QStringLiteral(":aid"), mail.aid);
    query.bindValue(QStringLiteral(":uid"), mail.uid == 0 ? QVariant(QVariant::UInt) : mail.uid);
    query.bindValue(QStringLiteral(":data"), mail.data.isNull() ? QByteArray("") : mail.data);
}

/// Reads the columns by name, because the product's table has more columns. NULL reads as 0 or "".
MailRecord recordOf(const QSqlQuery &query)
{
    const auto number = [&query](const QString &column) {
        return query.value(column).toUInt();
    };
    const auto text = [&query](const QString &column) {
        return query.value(column).toString();
    };

    MailRecord mail;
    mail.mid = number(QStringLiteral("mid"));
    const QString type = text(QStringLiteral("type"));
    mail.type = type.isEmpty() ? QChar() : type.at(0);
    mail.status = text(QStringLiteral("status"));
    mail.from = text(QStringLiteral("from"));
    mail.to = text(QStringLiteral("to"));
    mail.subject = text(QStringLiteral("subject"));
    mail.body = text(QStringLiteral("body"));
    mail.created = number(QStringLiteral("created"));
    mail.sent = number(QStringLiteral("sent"));
    mail.done = number(QStringLiteral("done"));
    mail.aid = number(QStringLiteral("aid"));
    mail.uid = number(QStringLiteral("uid"));
    mail.data = query.value(QStringLiteral("data")).toByteArray();
    return mail;
}

} // namespace

MailRepository::MailRepository(QObject *parent)
    : QObject(parent)
{
}

void MailRepository::setDB(const QSqlDatabase &db)
{
    database = db;
}

QString MailRepository::insertStatement()
{
    return QStringLiteral("INSERT INTO emails (%1) VALUES(:type, :from, :to, :subject, :body, "
                          "UNIX_TIMESTAMP(), :aid, :uid, :data)")
        .arg(mailColumns());
}

uint MailRepository::addMail(const MailRecord &mail)
{
    const Result<uint> added = tryAddMail(mail);
    if (added.isOk())
        return added.value();
    qCritical().noquote() << added.error();
    return 0;
}

Result<uint> MailRepository::tryAddMail(const MailRecord &mail) const
{
    if (mail.from.isEmpty() || mail.to.isEmpty() || mail.subject.isEmpty())
        return 0;
    if (debug) {
        qDebug("MailRepository::addMail(from: %s, to: %s, subject: %s)", qUtf8Printable(mail.from),
               qUtf8Printable(mail.to), qUtf8Printable(mail.subject));
    }

    QSqlQuery query = freshQuery(database);
    const QString sql = insertStatement();
    if (!query.prepare(sql))
        return errorLine("MailRepository::addMail() Prepare failed - ERROR:", query, sql);
    bind(query, mail);
    if (query.exec())
        return query.lastInsertId().toUInt();
    return errorLine("MailRepository::addMail() SQL ERROR:", query, query.lastQuery());
}

MailRecord MailRepository::loadMail(uint mid)
{
    if (debug)
        qDebug("MailRepository::loadMail(mid: %u)", mid);
    QSqlQuery query = freshQuery(database);
    if (!query.exec(QStringLiteral("SELECT * FROM emails WHERE mid =%1").arg(mid)))
        logError("MailRepository::loadMail() SQL ERROR:", query);
    return query.next() ? recordOf(query) : MailRecord();
}

bool MailRepository::resetMail(uint mid)
{
    if (debug)
        qDebug("MailRepository::resetMail(mid: %u)", mid);
    if (mid == 0)
        return false;
    QSqlQuery query = freshQuery(database);
    if (query.exec(QStringLiteral(
                       "UPDATE emails SET status = 'Q', done = NULL, apiID = NULL WHERE mid =%1")
                       .arg(mid)))
        return query.numRowsAffected() > 0;
    logError("MailRepository::resetMail() SQL ERROR:", query);
    return false;
}
