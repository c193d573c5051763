#pragma once

#include <QSqlDatabase>
#include <QString>

/**
 * The named lock of one report of one schema. It keeps hosts that share the schema from making the
 * report at the same time.
 *
 * acquire() does not wait; if it returns false, skip the report. The lock is released by release()
 * or when the connection closes, but not by the destructor, which runs no statement.
 */
class ReportLock
{
public:
    /// `className` is the name of the report's class and becomes part of the lock's name.
    ReportLock(const QSqlDatabase &db, const char *className);

    /// Returns false if another connection has the lock. On an error, returns true without
    /// having the lock: one report too many is better than none.
    bool acquire();
    void release();

    /// Returns the server's id of the connection that asked for the lock, 0 if unknown.
    qulonglong connectionId() const { return connection; }

private:
    QSqlDatabase database;
    QString name;
    qulonglong connection = 0;
    bool held = false;
};
