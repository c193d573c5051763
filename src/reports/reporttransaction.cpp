#include "reports/reporttransaction.h"

#include "common/freshquery.h"
#include "db/serversocket.h"

#include <QSqlError>

ReportTransaction::ReportTransaction(const QSqlDatabase &db)
    : database(db)
{
}

bool ReportTransaction::begin()
{
    if (!database.driver()->hasFeature(QSqlDriver::Transactions))
        return true;
    open = database.transaction();
    if (open && !setSavepoint())
        rollback();
    return open;
}

bool ReportTransaction::setSavepoint()
{
    return freshQuery(database).exec(QStringLiteral("SAVEPOINT report"));
}

/// A savepoint goes with its transaction.
bool ReportTransaction::isRolledBack()
{
    return open && !(freshQuery(database).exec(QStringLiteral("RELEASE SAVEPOINT report")) &&
                     setSavepoint());
}

/// BEGIN and COMMIT succeed even on non-transactional tables.
bool ReportTransaction::canRollBack() const
{
    QSqlQuery query = freshQuery(database);
    return open &&
           query.exec(QStringLiteral(
               "SELECT 1 FROM information_schema.tables JOIN information_schema.engines USING "
               "(engine) WHERE table_schema = DATABASE() AND table_name = 'emails' AND "
               "transactions = 'YES'")) &&
           query.next();
}

bool ReportTransaction::commit()
{
    // A refused commit may leave the transaction open; rollback() then ends it.
    if (open && !database.commit())
        return false;
    open = false;
    return true;
}

void ReportTransaction::rollback()
{
    // Refused once if the server had ended the transaction by itself. If it is still there, the
    // next transaction's begin would commit it: it has to go with the connection.
    if (open && !database.rollback() && !database.rollback())
        ServerSocket(database).shutDown();
    open = false;
}

QString ReportTransaction::error() const
{
    return database.lastError().text();
}

QString ReportTransaction::errorCode() const
{
    return database.lastError().nativeErrorCode();
}
