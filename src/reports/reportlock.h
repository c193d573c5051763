#pragma once

#include <QSqlDatabase>
#include <QString>

/**
 * The right to make one report of one schema, among all hosts that serve the schema.
 *
 * It is the database's own named lock, asked for without waiting and given back at the end of the
 * object; with the connection it is gone too. Who does not get it leaves the report to the other.
 */
class ReportLock
{
public:
    /// `report` is the report's class.
    ReportLock(const QSqlDatabase &database, const char *report);
    ~ReportLock();
    Q_DISABLE_COPY_MOVE(ReportLock)

    /// True also where the lock could not be asked for: better one report too many than none.
    bool mayRun() const { return !takenByAnother; }

    /// The server's number of the connection that the lock belongs to, 0 if unknown.
    qulonglong connectionId() const { return connection; }

private:
    QSqlDatabase database;
    QString name;
    qulonglong connection = 0;
    bool held = false;
    bool takenByAnother = false;
};
