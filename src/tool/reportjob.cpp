#include "tool/reportjob.h"

#include "reports/attenreport.h"
#include "reports/reportkind.h"
#include "tool/interruption.h"

std::unique_ptr<AttenReport> createReport(const ReportKind &kind, const QSqlDatabase &database)
{
    return std::unique_ptr<AttenReport>(kind.create(database, nullptr));
}

/// The time of day does not matter, because reports use only the date.
ReportJob::ReportJob(const QSqlDatabase &database, const QDate &date)
    : run(runFor({}, date.startOfDay(), CountsAsMade::Never, database))
{
    run.isCancelled = &Interruption::isRequested;
    run.progress = [this](int rows) {
        // The bar needs the total, which the report passes only after its first row.
        if (!bar)
            bar = std::make_unique<Progress>(QStringLiteral("rows"), rows);
        bar->step();
    };
}
