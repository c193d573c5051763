#pragma once

#include "reports/reportrun.h"
#include "tool/progress.h"

#include <QDate>
#include <QSqlDatabase>

#include <memory>

class AttenReport;
struct ReportKind;

/// Returns the report of that kind over that connection, which must outlive it.
std::unique_ptr<AttenReport> createReport(const ReportKind &kind, const QSqlDatabase &database);

/**
 * A run of a report on an operator's demand: for any day, with a progress bar where rows take long,
 * over a connection whose loss ends it, as does an Interruption. "lastGenerated" is left alone.
 *
 * To be kept as long as `run` is used. The bar is wiped with it.
 */
class ReportJob
{
public:
    ReportJob(const QSqlDatabase &database, const QDate &date);
    Q_DISABLE_COPY(ReportJob)

    ReportRun run;

private:
    std::unique_ptr<Progress> bar;
};
