#pragma once

#include "reports/reportrun.h"
#include "tool/progress.h"

#include <QDate>
#include <QSqlDatabase>

#include <memory>

class AttenReport;
struct ReportKind;

/// Creates a report of this kind. The connection of `database` must outlive the report.
std::unique_ptr<AttenReport> createReport(const ReportKind &kind, const QSqlDatabase &database);

/**
 * A run that an operator requested, for any day, with a progress bar. An Interruption or the loss
 * of the connection ends the run. By default, the run does not store "lastGenerated".
 *
 * The object must outlive every use of `run`. The destructor erases the bar.
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
