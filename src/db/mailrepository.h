#pragma once

#include "db/mailrecord.h"

#include <QObject>
#include <QSqlDatabase>

/**
 * A schema's mail queue, the table `emails`. The product's sender picks up what is queued here.
 *
 * For the thread that owns the connection. An error is an empty result and a critical log line;
 * nothing is tried again.
 */
class MailRepository : public QObject
{
    Q_OBJECT

public:
    /// Logs every call.
    bool debug = false;

    explicit MailRepository(QObject *parent = nullptr);

    void setDB(const QSqlDatabase &db);

    /// The statement of addMail(), with placeholders.
    static QString insertStatement();
    /// A statement that reads the columns that addMail() fills.
    static QString columnsStatement();

public Q_SLOTS:
    /// Queues a mail and returns its id; 0 on an error, and without sender, recipient or subject.
    uint addMail(const MailRecord &mail);
    MailRecord loadMail(uint mid);
    /// Puts a mail back into the queue. Returns false when there is none of that id.
    bool resetMail(uint mid);

private:
    QSqlDatabase database;
};
