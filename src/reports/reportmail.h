#pragma once

#include "db/mailrecord.h"

#include <QSqlDatabase>
#include <QString>

class ZasDbSettings;
struct ReportRun;

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

/// When a report counts as made: "lastGenerated" is stored, and it is not due again today.
enum class CountsAsMade { WithAnyMail, Always };

/**
 * Queues `mail` for each recipient of the run, trimmed, blank ones skipped, and stores
 * "lastGenerated" under `prefix` where the report counts as made: all of it, or nothing when the
 * run loses its connection. Logs each mail that is not queued and goes on. `report` is the report's
 * class, as its log lines begin. Answers how many mails were queued; a mail without its file is
 * never queued.
 */
int queueReport(const char *report, const QString &prefix, const MailRecord &mail,
                const ReportRun &run, CountsAsMade counts, ZasDbSettings &settings,
                const QSqlDatabase &database);
