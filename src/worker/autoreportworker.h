#pragma once

#include "worker/autoreportdbconfig.h"

#include <QList>
#include <QObject>
#include <QSqlDatabase>

#include <memory>

class ConnectionGuard;
class QTimer;
class ReportBase;

/**
 * Serves one schema: opens a connection of its own and asks its reports every minute whether
 * they are due.
 *
 * All slots run in the thread in which `start` ran; the connection is made, used and removed
 * there. The worker has no parent; its creator connects `finished` to its `deleteLater`.
 * After `stop`, or a `start` that failed, a worker is not started again.
 */
class AutoReportWorker : public QObject
{
    Q_OBJECT

public:
    AutoReportWorker(const AutoReportDbConfig &config, QObject *parent);
    ~AutoReportWorker() override;

    QString getConnectionName() const { return config.connectionName; }

    /// Never null. Through it other threads end what waits on the connection, also when the worker
    /// is gone.
    std::shared_ptr<ConnectionGuard> connectionGuard() const { return guard; }

Q_SIGNALS:
    /// The worker has ended and will not start again.
    void finished();

public Q_SLOTS:
    void activateReports();
    /// Returns false when the connection's name is taken or the database cannot be opened.
    bool start();
    void stop();
    void pause();
    void resume();

private:
    bool openDatabase();
    bool keepDatabase();
    void closeDatabase();
    void createReports();
    void startTimer();
    bool fail();

    AutoReportDbConfig config;
    std::shared_ptr<ConnectionGuard> guard;
    QSqlDatabase database;       ///< invalid until `start`
    qulonglong connectionId = 0; ///< the server's number of the connection, 0 if unknown
    bool databaseLost = false;   ///< the server did not answer at the last tick
    QList<ReportBase *> reports;
    QTimer *timer = nullptr; ///< null until `start` has succeeded
    bool active = false;
};
