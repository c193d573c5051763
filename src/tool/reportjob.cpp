#include "tool/reportjob.h"

#include "tool/interruption.h"

// Any moment of the day will do: a report looks at the date alone.
ReportJob::ReportJob(const QSqlDatabase &database, const QDate &date)
    : run(makeRun({}, date.startOfDay(), database))
{
    run.mark = false;
    run.byHand = true;
    run.isCancelled = &Interruption::isRequested;
    run.progress = [this](int rows) {
        // How many rows there will be is known with the first.
        if (!bar)
            bar = std::make_unique<Progress>(QStringLiteral("rows"), rows);
        bar->step();
    };
}
