#pragma once

#include "db/mailrecord.h"
#include "db/zasdbsettings.h"
#include "reports/monthlyattendata.h"
#include "worker/reportbase.h"

#include <QDateTime>
#include <QHash>
#include <QStringList>

struct ReportRun;

/**
 * The monthly attendance report: one row per person with the hours of the current month, as a
 * workbook that is queued as mail to every recipient.
 *
 * Belongs to a worker and runs in its thread. Outcomes go to the log; what lasts is the workbook
 * in the temporary directory, the queued mails and the setting "lastGenerated".
 */
class MonthlyAttenReport : public ReportBase
{
    Q_OBJECT

public:
    MonthlyAttenReport(const QSqlDatabase &db, QObject *parent);

    void doWork() override;

    /**
     * Makes, saves and queues the report for the month of `now`, due or not. "lastGenerated"
     * becomes the current time whatever became of the single mails. An interruption of the thread
     * ends it at the next row, without workbook and mail.
     */
    void makeReport(const QStringList &emails, const QDateTime &now = QDateTime::currentDateTime());

    /// The two halves of makeReport(), for a workbook in another place. The first takes the format
    /// from the extension of `path`, writes nothing else and is false when there is no workbook;
    /// the second answers how many mails are in the queue.
    bool saveWorkbook(const QString &path, const ReportRun &run);
    int queueMails(const QString &path, const ReportRun &run);
    /// The name that the workbook has in its mail.
    QString fileName(const QDate &today) const;

    /// One mail, its recipient open, with the file attached; without `data` if it is unreadable.
    MailRecord makeMail(const QString &filePath, const QDate &today = QDate::currentDate());

    /// Adds the schema's kinds of interruption to both maps; false when the query failed.
    bool loadInterruptionMaps(QHash<unsigned, QString> &iidToName,
                              QHash<QString, unsigned> &shortcutToIid);

private:
    void produce(const ReportRun &run);
    MonthlyAttenOptions readOptions();
    bool writeWorkbook(const QString &path, const MonthlyAttenOptions &options,
                       const InterruptionCatalogue &catalogue, const MonthlyAttenData &data,
                       const ReportRun &run) const;

    ZasDbSettings settings;
    QString prefix;
};
