#pragma once

#include <QObject>
#include <QSqlDatabase>

/**
 * The interface of a report, whose worker calls doWork() once a minute.
 *
 * A report belongs to its worker and lives in the worker's thread. It holds a copy of the worker's
 * QSqlDatabase, so the worker deletes its reports before it removes the connection.
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

    /// Makes the report if it is due. Errors are logged.
    virtual void doWork() = 0;

protected:
    QSqlDatabase database;
};
