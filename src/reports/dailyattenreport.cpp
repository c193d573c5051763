#include "reports/dailyattenreport.h"

#include "common/daystart.h"
#include "common/freshquery.h"
#include "reports/dailyattensheet.h"
#include "reports/duration.h"
#include "reports/reportbook.h"
#include "reports/reportmail.h"
#include "reports/reportquery.h"
#include "reports/reportrun.h"

#include <QSqlError>

#include <utility>

namespace
{

constexpr const char *reportName = "DailyAttenReport";

} // namespace

DailyAttenReport::DailyAttenReport(const QSqlDatabase &db, QObject *parent)
    : ReportBase(db, parent)
    , prefix(QStringLiteral("autoReport.DailyAtten."))
{
    settings.setDB(db);
}

void DailyAttenReport::doWork()
{
    runWhenDue(reportName, prefix, settings, database, [this](const ReportRun &run) {
        uids = run.settings.uids;
        produce(run);
    });
}

void DailyAttenReport::makeReport(const QStringList &emails, const QDateTime &now)
{
    produce(makeRun(emails, now, database));
}

void DailyAttenReport::produce(const ReportRun &run)
{
    const DailyAttenOptions options = readOptions();
    const QString path = reportPath(fileName(run.now.date(), options.xlsx));
    if (buildWorkbook(path, options, run))
        queueMails(path, run);
}

bool DailyAttenReport::saveWorkbook(const QString &path, const ReportRun &run)
{
    DailyAttenOptions options = readOptions();
    options.xlsx = !isBinaryBook(path);
    return buildWorkbook(path, options, run);
}

bool DailyAttenReport::buildWorkbook(const QString &path, const DailyAttenOptions &options,
                                     const ReportRun &run)
{
    const QDate today = run.now.date();
    DailyAttenData data(database, options);
    const auto people = data.people(today);
    if (!people)
        return false;
    if (people->isEmpty()) {
        qWarning("DailyAttenReport - no people!");
        return false;
    }
    data.loadBranches();
    loadShiftsForMonth(today);
    return writeWorkbook(path, options, data, *people, run);
}

DailyAttenOptions DailyAttenReport::readOptions()
{
    const auto decimalTime = QStringLiteral("dattenIsTimeDec");
    const auto minusSign = QStringLiteral("dattenIsMinusSign");
    const auto interruptions = QStringLiteral("dattenInters");
    const auto advancedOvertime = QStringLiteral("advancedOvertime");
    const auto xlsx = QStringLiteral("exportUseXLSX");
    const auto homeBranch = QStringLiteral("dattenHomeBranch");
    const auto values = settings.variableGetMultiple(
        QStringList{decimalTime, minusSign, interruptions, advancedOvertime, xlsx, homeBranch});

    DailyAttenOptions options;
    options.decimalTime = values.value(decimalTime, false).toBool();
    options.minusSign = values.value(minusSign, false).toBool();
    options.interruptions = values.value(interruptions, false).toBool();
    options.advancedOvertime = values.value(advancedOvertime, false).toBool();
    options.xlsx = values.value(xlsx, true).toBool();
    options.homeBranch = values.value(homeBranch, false).toBool();
    return options;
}

QString DailyAttenReport::fileName(const QDate &today)
{
    return fileName(today, readOptions().xlsx);
}

QString DailyAttenReport::fileName(const QDate &today, bool xlsx) const
{
    return QStringLiteral("DennyReport_%1_%2")
               .arg(database.databaseName(), today.toString(QStringLiteral("MMyyyy"))) +
           (xlsx ? QStringLiteral(".xlsx") : QStringLiteral(".xls"));
}

bool DailyAttenReport::writeWorkbook(const QString &path, const DailyAttenOptions &options,
                                     const DailyAttenData &data,
                                     const QVector<DailyAttenPerson> &people,
                                     const ReportRun &run) const
{
    ReportBook book(options.xlsx ? xlCreateXMLBookW() : xlCreateBookW());
    if (!book) {
        qCritical("DailyAttenReport - xlCreateBook() failed!");
        return false;
    }
    setUpReportBook(*book, reportName);

    DailyAttenSheet sheet(*book, options);
    if (!sheet.begin(
            tr("Denný report doch. %1").arg(run.now.date().toString(QStringLiteral("MM-yyyy"))))) {
        qCritical("DailyAttenReport - addSheet failed!");
        return false;
    }
    if (!writeRows(sheet, data, people, run))
        return false;
    sheet.finish();
    return saveReportBook(std::move(book), path, reportName);
}

/// False when there is no point in going on: the thread is to stop, or the connection is lost.
bool DailyAttenReport::writeRows(DailyAttenSheet &sheet, const DailyAttenData &data,
                                 const QVector<DailyAttenPerson> &people,
                                 const ReportRun &run) const
{
    const QDate today = run.now.date();
    for (int dayOfMonth = 1; dayOfMonth <= today.day(); ++dayOfMonth) {
        const AttenDay day = data.day(QDate(today.year(), today.month(), dayOfMonth));
        for (const DailyAttenPerson &person : people) {
            if (isInterrupted(reportName, run))
                return false;
            DailyAttenRow row = data.row(person, day);
            if (!row.complete && isConnectionLost(reportName, database, run.connectionId))
                return false;
            row.shift = shiftFor(static_cast<int>(person.uid), dayOfMonth);
            sheet.writeRow(person, row);
            if (run.progress)
                run.progress(today.day() * people.size());
        }
    }
    return true;
}

int DailyAttenReport::queueMails(const QString &path, const ReportRun &run)
{
    // Without a single mail the next tick tries again.
    return queueReport(reportName, prefix, makeMail(path, run.now.date()), run,
                       CountsAsMade::WithAnyMail, settings, database);
}

MailRecord DailyAttenReport::makeMail(const QString &path, const QDate &today)
{
    const ReportMailTexts texts{
        reportName,
        tr("Denný report dochádzky za %1").arg(today.toString(QStringLiteral("d. M. yyyy"))),
        tr("Denný report dochádzky sa nachádza v prílohe.\n\n\nTento e-mail bol vygenerovaný "
           "automaticky dochádzkovým systémom ZAS (modul AutoReport).")};
    return makeReportMail(texts, path, database);
}

void DailyAttenReport::loadShiftsForMonth(const QDate &date)
{
    shifts.clear();
    const QDate first = firstOfMonth(date);
    QSqlQuery query = freshQuery(database);
    query.prepare(QStringLiteral("\n        SELECT uid, dom, shift\n        FROM atten\n        "
                                 "WHERE date >= :tsFrom AND date < :tsTo\n    "));
    query.bindValue(QStringLiteral(":tsFrom"), dayStart(first).toSecsSinceEpoch());
    query.bindValue(QStringLiteral(":tsTo"), dayStart(first.addMonths(1)).toSecsSinceEpoch());
    if (!query.exec()) {
        qWarning("DailyAttenReport::loadShiftsForMonth failed: %s",
                 qUtf8Printable(query.lastError().text()));
        return;
    }
    while (query.next())
        shifts.insert({query.value(0).toInt(), query.value(1).toInt()}, query.value(2).toInt());
}

int DailyAttenReport::shiftFor(int uid, int dayOfMonth) const
{
    return shifts.value({uid, dayOfMonth}, -1);
}

QVariant DailyAttenReport::strOrDecTimeFormat(double seconds, bool decimal)
{
    return durationValue(seconds, decimal);
}

QDate DailyAttenReport::monthToDate(unsigned month) const
{
    return QDate::fromString(QString::number(month), QStringLiteral("yyyyMM"));
}

unsigned DailyAttenReport::dateToMonth(const QDate &date) const
{
    return date.toString(QStringLiteral("yyyyMM")).toUInt();
}
