#pragma once

#include <QSqlDatabase>
#include <QString>

/**
 * The named lock of one report of one schema, which spares the hosts that share the schema from
 * making the report at the same time.
 *
 * Acquired without waiting, released by release() or when the connection closes; never by the
 * destructor, which runs no statement. Without the lock, skip the report.
 */
class ReportLock
{
public:
    /// `className` is the report's class.
    ReportLock(const QSqlDatabase &database, const char *className);

    /// Returns false when another connection has the lock. True also where the server could not be
    /// asked for it: better one report too many than none.
    bool acquire();
    void release();

    /// Returns the server's number of the connection that asked for the lock, 0 if unknown.
    qulonglong connectionId() const { return connection; }

private:
    QSqlDatabase database;
    QString name;
    qulonglong connection = 0;
    bool held = false;
};
