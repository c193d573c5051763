#pragma once

#include "common/result.h"
#include "db/mailrecord.h"

#include <QObject>
#include <QSqlDatabase>

/**
 * A schema's mail queue, the table `emails`. The product's sender sends the queued mails.
 *
 * Use it only on the thread that owns the connection. On an error, a function logs a critical line
 * and returns an empty value, unless stated otherwise. Nothing is retried.
 */
class MailRepository : public QObject
{
    Q_OBJECT

public:
    /// Whether to log every call.
    bool debug = false;

    explicit MailRepository(QObject *parent = nullptr);

    void setDB(const QSqlDatabase &db);

    /// Like addMail(), but returns the error instead of logging it.
    Result<uint> tryAddMail(const MailRecord &mail) const;

    /// Returns the statement of addMail(), with placeholders.
    static QString insertStatement();

public Q_SLOTS:
    /// Queues a mail. Returns its id, or 0 on an error or if `from`, `to` or `subject` is empty.
    uint addMail(const MailRecord &mail);
    MailRecord loadMail(uint mid);
    /// Puts a mail back into the queue. Returns false on an error, if no mail has the id `mid`, or
    /// if the mail's row already has the values of a queued mail.
    bool resetMail(uint mid);

private:
    QSqlDatabase database;
};
