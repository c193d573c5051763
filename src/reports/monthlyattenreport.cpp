#include "reports/monthlyattenreport.h"

#include "reports/monthlyattensheet.h"
#include "reports/reportbook.h"
#include "reports/reportmail.h"
#include "reports/reportrun.h"

#include <utility>

namespace
{

constexpr const char *reportName = "MonthlyAttenReport";

} // namespace

MonthlyAttenReport::MonthlyAttenReport(const QSqlDatabase &db, QObject *parent)
    : ReportBase(db, parent)
    , prefix(QStringLiteral("autoReport.MonthlyAtten."))
{
    settings.setDB(db);
}

void MonthlyAttenReport::doWork()
{
    runWhenDue(reportName, prefix, settings, database,
               [this](const ReportRun &run) { produce(run); });
}

void MonthlyAttenReport::makeReport(const QStringList &emails, const QDateTime &now)
{
    produce(makeRun(emails, now, database));
}

void MonthlyAttenReport::produce(const ReportRun &run)
{
    const QString path = reportPath(fileName(run.now.date()));
    if (saveWorkbook(path, run))
        queueMails(path, run);
}

bool MonthlyAttenReport::saveWorkbook(const QString &path, const ReportRun &run)
{
    const QDate today = run.now.date();
    const MonthlyAttenOptions options = readOptions();
    InterruptionCatalogue catalogue;
    loadInterruptionCatalogue(database, catalogue.iidToName, catalogue.shortcutToIid,
                              "MonthlyAttenReport::makeReport() inters ERROR:");

    MonthlyAttenData data(database, options, today);
    if (!data.loadPeople())
        return false;
    if (data.count() == 0) {
        qWarning("MonthlyAttenReport - no people!");
        return false;
    }
    data.loadValues();
    return writeWorkbook(path, options, catalogue, data, run);
}

MonthlyAttenOptions MonthlyAttenReport::readOptions()
{
    const auto advancedOvertime = QStringLiteral("advancedOvertime");
    const auto payrollNumber = QStringLiteral("monthAttenUsePamID");
    const auto extraShortcuts = QStringLiteral("monthAttenInterrupts");
    const auto values =
        settings.variableGetMultiple(QStringList{advancedOvertime, payrollNumber, extraShortcuts});

    MonthlyAttenOptions options;
    options.advancedOvertime = values.value(advancedOvertime, 0).toInt() == 1;
    options.payrollNumber = values.value(payrollNumber, false).toBool();
    options.extraShortcuts =
        values.value(extraShortcuts).toString().split(QLatin1Char(','), Qt::SkipEmptyParts);
    return options;
}

QString MonthlyAttenReport::fileName(const QDate &today) const
{
    return QStringLiteral("MesReportDochadzky_%1_%2.xlsx")
        .arg(database.databaseName(), today.toString(QStringLiteral("MMyyyy")));
}

bool MonthlyAttenReport::writeWorkbook(const QString &path, const MonthlyAttenOptions &options,
                                       const InterruptionCatalogue &catalogue,
                                       const MonthlyAttenData &data, const ReportRun &run) const
{
    ReportBook book(isBinaryBook(path) ? xlCreateBookW() : xlCreateXMLBookW());
    if (!book) {
        qCritical("MonthlyAttenReport - xlCreateXMLBook() failed!");
        return false;
    }
    setUpReportBook(*book, reportName);

    MonthlyAttenSheet sheet(*book, options, catalogue);
    if (!sheet.begin()) {
        qCritical("MonthlyAttenReport - addSheet failed!");
        return false;
    }
    for (int index = 0; index < data.count(); ++index) {
        if (isInterrupted(reportName, run))
            return false;
        sheet.writeRow(data.row(index));
    }
    sheet.finish();
    return saveReportBook(std::move(book), path, reportName);
}

int MonthlyAttenReport::queueMails(const QString &path, const ReportRun &run)
{
    // Unlike the daily report, this one is not tried again when no mail could be queued.
    return queueReport(reportName, prefix, makeMail(path, run.now.date()), run,
                       CountsAsMade::Always, settings, database);
}

MailRecord MonthlyAttenReport::makeMail(const QString &filePath, const QDate &today)
{
    const ReportMailTexts texts{
        reportName,
        tr("Mesačný report dochádzky za %1 / %2")
            .arg(QString::number(today.month()), QString::number(today.year())),
        tr("Mesačný report dochádzky sa nachádza v prílohe.\n\n\nTento e-mail bol vygenerovaný "
           "automaticky dochádzkovým systémom ZAS.")};
    return makeReportMail(texts, filePath, database);
}

bool MonthlyAttenReport::loadInterruptionMaps(QHash<unsigned, QString> &iidToName,
                                              QHash<QString, unsigned> &shortcutToIid)
{
    return loadInterruptionCatalogue(database, iidToName, shortcutToIid,
                                     "MonthlyAttenReport::loadInterruptionMaps() ERROR:");
}
