#include "reports/reporttransaction.h"

#include "common/freshquery.h"
#include "reports/reportrun.h"

#include <QSqlError>

ReportTransaction::ReportTransaction(const char *reportName, const QSqlDatabase &db,
                                     qulonglong serverConnection)
    : report(reportName)
    , database(db)
    , connectionId(serverConnection)
    , open(database.transaction())
{
    if (open && !setSavepoint()) {
        database.rollback();
        open = false;
    }
}

ReportTransaction::~ReportTransaction()
{
    if (open)
        database.rollback();
}

bool ReportTransaction::isIntact()
{
    lost = lost || isConnectionLost(report, database, connectionId) || isRolledBack();
    return !lost;
}

/// A transaction begins and ends well over tables that know none.
bool ReportTransaction::canTakeBack() const
{
    QSqlQuery query = freshQuery(database);
    return open &&
           query.exec(QStringLiteral(
               "SELECT 1 FROM information_schema.tables JOIN information_schema.engines USING "
               "(engine) WHERE table_schema = DATABASE() AND table_name = 'emails' AND "
               "transactions = 'YES'")) &&
           query.next();
}

bool ReportTransaction::setSavepoint()
{
    return freshQuery(database).exec(QStringLiteral("SAVEPOINT report"));
}

/// A savepoint goes with its transaction: where it is gone, whatever follows would stand alone.
bool ReportTransaction::isRolledBack()
{
    if (!open)
        return false;
    if (freshQuery(database).exec(QStringLiteral("RELEASE SAVEPOINT report")) && setSavepoint())
        return false;
    qWarning("%s::makeReport() - the server took the mails of this run back, no mail queued!",
             report);
    return true;
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
