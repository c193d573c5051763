#pragma once

#include "reports/reportrun.h"
#include "tool/progress.h"

#include <QDate>
#include <QSqlDatabase>

#include <memory>

class AttenReport;
struct ReportKind;

/// Creates the report of that kind over that connection, which must outlive it.
std::unique_ptr<AttenReport> createReport(const ReportKind &kind, const QSqlDatabase &database);

/**
 * A run that an operator requested, for any day, with a progress bar. An Interruption or the loss
 * of the connection ends it. By default it does not store "lastGenerated".
 *
 * Must outlive the use of `run`. The destructor erases the bar.
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
