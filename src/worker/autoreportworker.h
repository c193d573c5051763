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
 * Serves one schema: opens its own connection and polls its reports once a minute.
 *
 * Call all slots in the same thread; the connection is opened, used and removed there. The creator
 * of a worker connects `finished` to `deleteLater`. Do not start a worker again after `stop` or a
 * failed `start`.
 */
class AutoReportWorker : public QObject
{
    Q_OBJECT

public:
    AutoReportWorker(const AutoReportDbConfig &config, QObject *parent);
    ~AutoReportWorker() override;

    QString getConnectionName() const { return config.connectionName; }

    /// Returns the guard with which other threads break off the connection. The guard is never null
    /// and may outlive the worker.
    std::shared_ptr<ConnectionGuard> connectionGuard() const { return guard; }

Q_SIGNALS:
    /// Emitted at the end of stop(), and when start() fails.
    void finished();

public Q_SLOTS:
    /// Makes the reports that are due. Called right after start() and then once a minute.
    void activateReports();
    /// Opens the connection and starts the ticks. If a connection of the same name exists, or if
    /// the database cannot be opened, emits finished() and returns false. If the worker has already
    /// been started, only logs a warning and returns true.
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
    qulonglong connectionId = 0; ///< the server's id of the connection, 0 if unknown
    bool databaseLost = false;   ///< true if the last tick found no usable connection
    QList<ReportBase *> reports;
    QTimer *timer = nullptr; ///< null until `start` has succeeded
    bool active = false;
};
