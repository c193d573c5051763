#include "reports/reporttransaction.h"

#include "db/serverconnection.h"

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
    if (lost || connectionId == 0 || serverConnectionId(database) == connectionId)
        return !lost;
    lost = true;
    qWarning("%s::makeReport() - database connection lost, no mail queued!", report);
    return false;
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
