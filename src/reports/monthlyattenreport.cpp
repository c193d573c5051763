#include "reports/monthlyattenreport.h"

#include "reports/bookformat.h"
#include "reports/monthlyattensheet.h"
#include "reports/reportcontent.h"
#include "reports/reportkind.h"

/// One row per person, in the order in which the people are read.
class MonthlyAttenReport::Content : public ReportContent
{
public:
    Content(const MonthlyAttenReport &report, const QDate &today)
        : options(report.options)
        , data(report.database, options, today)
    {
        loadInterruptionCatalogue(report.database, catalogue.iidToName, catalogue.shortcutToIid,
                                  "MonthlyAttenReport::makeReport() inters ERROR:");
    }

    bool loadPeople() override { return data.loadPeople(); }
    int rowCount() const override { return data.count(); }
    bool loadValues() override { return data.loadValues(); }

    bool beginSheet(libxl::IBookT<wchar_t> &book) override
    {
        sheet = std::make_unique<MonthlyAttenSheet>(book, options, catalogue);
        return sheet->begin();
    }

    bool writeNextRow() override
    {
        sheet->writeRow(data.row(written++));
        return true; // everything was read before the first row
    }

    void endSheet() override { sheet->finish(); }

private:
    const MonthlyAttenOptions options;
    InterruptionCatalogue catalogue;
    MonthlyAttenData data;
    std::unique_ptr<MonthlyAttenSheet> sheet;
    int written = 0;
};

MonthlyAttenReport::MonthlyAttenReport(const QSqlDatabase &db, QObject *parent)
    : AttenReport(monthlyReport, db, parent)
{
}

void MonthlyAttenReport::loadOptions()
{
    options = MonthlyAttenOptions::read(settings);
}

QString MonthlyAttenReport::fileNameByOptions(const QDate &today) const
{
    return QStringLiteral("MesReportDochadzky_%1_%2.xlsx")
        .arg(database.databaseName(), today.toString(QStringLiteral("MMyyyy")));
}

std::unique_ptr<ReportContent> MonthlyAttenReport::createContent(const ReportRun &run)
{
    return std::make_unique<Content>(*this, run.now.date());
}

ReportNeeds MonthlyAttenReport::needs(const QMap<QString, QVariant> &, const QDate &today)
{
    return {MonthlyAttenData::statements(today), MonthlyAttenData::countStatement(today), 1,
            &xlsxFormat};
}

AttenReport::MailTexts MonthlyAttenReport::mailTexts(const QDate &today) const
{
    return {tr("Mesačný report dochádzky za %1 / %2")
                .arg(QString::number(today.month()), QString::number(today.year())),
            tr("Mesačný report dochádzky sa nachádza v prílohe.\n\n\nTento e-mail bol vygenerovaný "
               "automaticky dochádzkovým systémom ZAS.")};
}

bool MonthlyAttenReport::loadInterruptionMaps(QHash<unsigned, QString> &iidToName,
                                              QHash<QString, unsigned> &shortcutToIid)
{
    return loadInterruptionCatalogue(database, iidToName, shortcutToIid,
                                     "MonthlyAttenReport::loadInterruptionMaps() ERROR:");
}
