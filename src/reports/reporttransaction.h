#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

/**
 * Ensures that the mails of a run and its "lastGenerated" are stored together or not at all.
 *
 * End it with commit() or rollback(). The destructor runs no statement; without either call, the
 * server rolls the transaction back when the connection closes. If the tables do not support
 * transactions, each statement takes effect at once.
 */
class ReportTransaction
{
public:
    explicit ReportTransaction(const QSqlDatabase &db);

    /// Begins the transaction and executes `statement` in it, unless that is empty. Returns the
    /// query, which is inactive after an error. If the server refuses the transaction, isOpen() is
    /// false and `statement` is not executed, because it would take effect at once.
    QSqlQuery begin(const QString &statement = QString());

    /// Returns whether the transaction has begun and must be ended.
    bool isOpen() const { return open; }

    /// Returns the server's id of the connection on which the transaction has begun; 0 if it has
    /// not.
    qulonglong connectionId() const { return id; }

    /// Asks the server whether the transaction still exists. Returns false if it has not begun, or
    /// if the server rolled it back on its own, for example to resolve a deadlock. Also returns
    /// false if the connection was lost, even if it has been reopened: later statements would
    /// autocommit.
    bool isIntact();

    /// Asks the server whether the mails queued so far can be rolled back. Returns false if the
    /// server does not answer.
    bool canRollBack() const;

    /// Commits the transaction. If this returns false, error() says why, and rollback() must be
    /// called.
    bool commit();
    /// Rolls the transaction back, if necessary by breaking the connection off.
    void rollback();

    QString error() const;
    /// Returns the server's code for error().
    QString errorCode() const;

private:
    QSqlDatabase database;
    bool open = false;
    qulonglong id = 0;
};
