#include "tool/reportjob.h"

#include "db/serverconnection.h"
#include "tool/messages.h"
#include "tool/output.h"

ReportJob::ReportJob(const QSqlDatabase &database, const QDate &date)
{
    run.now = date.startOfDay();
    run.connectionId = serverConnectionId(database);
    run.mark = false;
    run.byHand = true;
    run.progress = [this](int rows) {
        if (!bar)
            bar = std::make_unique<Progress>(QStringLiteral("rows"), rows);
        bar->step();
    };
}
