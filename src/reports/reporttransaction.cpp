#include "reports/reporttransaction.h"

#include "common/freshquery.h"
#include "db/serversocket.h"

#include <QSqlError>
#include <QVariant>

ReportTransaction::ReportTransaction(const QSqlDatabase &db)
    : database(db)
{
}

/// Sends all statements in one packet, so that the run waits only once for the server.
QSqlQuery ReportTransaction::begin(const QString &statement)
{
    QSqlQuery query = freshQuery(database);
    const QString begin = QStringLiteral("BEGIN WORK;SAVEPOINT report;SELECT CONNECTION_ID()");
    open = query.exec(statement.isEmpty() ? begin : begin + QLatin1Char(';') + statement);
    if (open && !(query.nextResult() && query.nextResult() && query.next()))
        rollback();
    if (open)
        id = query.value(0).toULongLong();
    if (open && !statement.isEmpty())
        query.nextResult();
    return query;
}

/// The savepoint is lost with its transaction, and the transaction with its connection.
///
/// A cluster node reports no error if it rolls the transaction back between two statements of a
/// packet. It then executes the rest of the packet outside a transaction. The packet must therefore
/// end with a statement that fails outside a transaction.
bool ReportTransaction::isIntact()
{
    QSqlQuery query = freshQuery(database);
    return open &&
           query.exec(QStringLiteral("RELEASE SAVEPOINT report;SAVEPOINT report;"
                                     "SAVEPOINT probe;RELEASE SAVEPOINT probe")) &&
           query.nextResult() && query.nextResult() && query.nextResult();
}

/// Looks up the engine of `emails`, because BEGIN and COMMIT succeed even if it has no
/// transactions.
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
    // The first attempt may fail because the server has already ended the transaction. If the
    // second one fails too, the connection must end, because the next BEGIN would commit the open
    // transaction.
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
