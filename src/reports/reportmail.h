#pragma once

#include "db/mailrecord.h"

#include <QSqlDatabase>
#include <QString>
#include <QStringList>

class ReportTransaction;

/// The texts in which the mails of the two reports differ.
struct ReportMailTexts {
    const char *report; ///< the report's class, as its log lines begin
    QString subject;
    QString body;
};

/**
 * One mail with the workbook at `path` attached, its recipient still open; the sender is the
 * schema's "globalEmail". A file that cannot be read is logged and leaves `data` empty.
 */
MailRecord makeReportMail(const ReportMailTexts &texts, const QString &path,
                          const QSqlDatabase &database);

/// False, with a warning, when the mail came back without its file.
bool hasAttachment(const char *report, const MailRecord &mail);

/**
 * Queues `mail` for each recipient, trimmed, blank ones skipped; logs each one that is not
 * queued and goes on, unless the run's connection is lost. Answers how many mails were queued.
 */
int queueReportMail(const char *report, MailRecord mail, const QStringList &recipients,
                    const QSqlDatabase &database, ReportTransaction &transaction);
