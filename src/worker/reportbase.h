#pragma once

#include <QObject>
#include <QSqlDatabase>

/**
 * What a worker knows of a report: once a minute it is asked to do its work.
 *
 * A report belongs to its worker and lives in the worker's thread. It keeps a handle of the
 * worker's connection, so the worker deletes its reports before it gives the connection up.
 */
class ReportBase : public QObject
{
    Q_OBJECT

public:
    ReportBase(const QSqlDatabase &db, QObject *parent)
        : QObject(parent)
        , database(db)
    {
    }

    /// Makes the report if it is due. Failures are the report's to log; nothing comes back.
    virtual void doWork() = 0;

protected:
    QSqlDatabase database;
};
