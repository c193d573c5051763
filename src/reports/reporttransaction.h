#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

/**
 * Holds the mails of one run and its "lastGenerated" together: all of them reach the database, or
 * none.
 *
 * End it with commit() or rollback(). The destructor runs no statement, so one that ends without
 * either is rolled back by the server when the connection closes. Where the tables know no
 * transactions, each statement counts at once.
 */
class ReportTransaction
{
public:
    explicit ReportTransaction(const QSqlDatabase &database);

    /// Begins the transaction and executes `statement` in it, if it is not empty. Returns its
    /// query, inactive on an error. If the server refuses the transaction, isOpen() is false and
    /// `statement` is not executed: it would count at once.
    QSqlQuery begin(const QString &statement = QString());

    /// Returns whether it was begun, and is to be ended.
    bool isOpen() const { return open; }

    /// Asks the server whether the transaction is still there. It is not if the server ended it by
    /// itself, as it does to end a deadlock, nor on a connection that was lost or that reconnected;
    /// later statements would autocommit. False without a transaction.
    bool isIntact();

    /// Asks the server whether the mails that are queued so far can be rolled back.
    bool canRollBack() const;

    /// Returns false when the server refused; error() then says why, and rollback() is due.
    bool commit();
    /// Takes back what is not committed, if need be by breaking the connection off.
    void rollback();

    QString error() const;
    /// Returns the server's number for it.
    QString errorCode() const;

private:
    QSqlDatabase database;
    bool open = false;
};
