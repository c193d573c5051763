#include "reports/reporttransaction.h"

#include "reports/reportrun.h"

#include <QSqlError>

ReportTransaction::ReportTransaction(const char *reportName, const QSqlDatabase &db,
                                     qulonglong serverConnection)
    : report(reportName)
    , database(db)
    , connectionId(serverConnection)
    , open(database.transaction())
{
}

ReportTransaction::~ReportTransaction()
{
    if (open)
        database.rollback();
}

bool ReportTransaction::isIntact()
{
    lost = lost || isConnectionLost(report, database, connectionId);
    return !lost;
}

bool ReportTransaction::commit()
{
    if (!isIntact())
        return false;
    if (!open)
        return true;
    open = false;
    if (database.commit())
        return true;
    qCritical("%s::makeReport() - mails not committed: %s", report,
              qUtf8Printable(database.lastError().text()));
    return false;
}
