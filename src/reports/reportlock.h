#pragma once

#include <QSqlDatabase>
#include <QString>

/**
 * The named lock of one report of one schema. It keeps hosts that share the schema from making the
 * report at the same time.
 *
 * acquire() does not wait. The lock is released by release() or when the connection closes, but not
 * by the destructor, which runs no statement. Without the lock, skip the report.
 */
class ReportLock
{
public:
    /// `className` is the report's class.
    ReportLock(const QSqlDatabase &db, const char *className);

    /// Returns false if another connection has the lock. Returns true also if the server could not
    /// be asked: one report too many is better than none.
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
