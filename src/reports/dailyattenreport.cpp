#include "reports/dailyattenreport.h"

#include "common/zascalendar.h"
#include "reports/dailyattensheet.h"
#include "reports/duration.h"
#include "reports/reportcontent.h"
#include "reports/reportkind.h"

/// The rows are all people of day 1, then all people of day 2, and so on up to today.
class DailyAttenReport::Content : public ReportContent
{
public:
    Content(DailyAttenReport &owner, const ReportRun &run)
        : report(owner)
        , isScheduled(run.isScheduled)
        , today(run.now.date())
        , data(report.database, report.options, today, [&run] { return isStopRequested(run); })
    {
    }

    /// After a scheduled run, frees the shift table: a host may have hundreds of workers, and each
    /// keeps its report between the runs.
    ~Content() override
    {
        if (isScheduled)
            report.shifts = ShiftTable();
    }
    Q_DISABLE_COPY_MOVE(Content)

    bool loadPeople() override { return data.loadPeople(); }

    int rowCount() const override { return today.day() * data.people().size(); }

    bool loadValues() override
    {
        data.loadBranches();
        report.loadShiftsForMonth(today);
        data.setShifts(report.shifts);
        return true; // a lost connection is noticed at the first row, whose queries fail
    }

    bool beginSheet(libxl::IBookT<wchar_t> &book) override
    {
        sheet = std::make_unique<DailyAttenSheet>(book, report.options);
        return sheet->begin(DailyAttenReport::tr("Denný report doch. %1")
                                .arg(today.toString(QStringLiteral("MM-yyyy"))));
    }

    bool writeNextRow() override
    {
        const DailyAttenPerson &person = data.people().at(written % data.people().size());
        const DailyAttenRow row = data.row(person, 1 + written / data.people().size());
        ++written;
        sheet->writeRow(person, row);
        return row.complete;
    }

    void endSheet() override { sheet->finish(); }

private:
    DailyAttenReport &report;
    bool isScheduled; ///< see ReportRun::isScheduled
    QDate today;
    DailyAttenData data;
    std::unique_ptr<DailyAttenSheet> sheet;
    int written = 0;
};

DailyAttenReport::DailyAttenReport(const QSqlDatabase &db, QObject *parent)
    : AttenReport(dailyReport, db, parent)
{
}

void DailyAttenReport::loadOptions()
{
    options = DailyAttenOptions::read(settings);
}

QString DailyAttenReport::fileNameByOptions(const QDate &today) const
{
    return QStringLiteral("DennyReport_%1_%2")
               .arg(database.databaseName(), today.toString(QStringLiteral("MMyyyy"))) +
           options.format->extension;
}

std::unique_ptr<ReportContent> DailyAttenReport::createContent(const ReportRun &run)
{
    uids = run.settings.uids;
    return std::make_unique<Content>(*this, run);
}

ReportNeeds DailyAttenReport::needs(const QMap<QString, QVariant> &values, const QDate &today)
{
    const auto options = DailyAttenOptions::of(values);
    return {DailyAttenData::statements(options, today), DailyAttenData::countStatement(today),
            today.day(), options.format};
}

AttenReport::MailTexts DailyAttenReport::mailTexts(const QDate &today) const
{
    return {tr("Denný report dochádzky za %1").arg(today.toString(QStringLiteral("d. M. yyyy"))),
            tr("Denný report dochádzky sa nachádza v prílohe.\n\n\nTento e-mail bol vygenerovaný "
               "automaticky dochádzkovým systémom ZAS (modul AutoReport).")};
}

void DailyAttenReport::loadShiftsForMonth(const QDate &date)
{
    shifts = loadShifts(database, date);
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
    return ZAS::monthFromDate(date);
}
