#pragma once

#include <QSqlDatabase>
#include <QString>

/**
 * Holds the mails of one run and its "lastGenerated" together: all of them reach the database, or
 * none.
 *
 * End it with commit() or rollback(). The destructor runs no statement, so one that ends without
 * either is rolled back by the server when the connection closes. Where the driver or the tables
 * know no transactions, each statement counts at once.
 */
class ReportTransaction
{
public:
    explicit ReportTransaction(const QSqlDatabase &database);

    /// Returns false when the server refused: each statement would count at once. True where the
    /// driver knows no transactions.
    bool begin();

    /// Asks the server whether it ended the transaction by itself, as it does to end a deadlock;
    /// later statements would autocommit. False without a transaction.
    bool isRolledBack();

    /// Asks the server whether the mails that are queued so far can be rolled back.
    bool canRollBack() const;

    /// Returns false when the server refused; error() then says why, and rollback() is due. True
    /// without a transaction.
    bool commit();
    /// Takes back what is not committed, if need be by breaking the connection off.
    void rollback();

    QString error() const;
    /// Returns the server's number for it.
    QString errorCode() const;

private:
    bool setSavepoint();

    QSqlDatabase database;
    bool open = false;
};
