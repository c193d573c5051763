#pragma once

#include "plugin/databasemanagerinterface.h"
#include "plugin/serverinterface.h"
#include "plugin/verinfointerface.h"
#include "plugin/workerregistry.h"

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QStringList>

#include <memory>

struct AutoReportDbConfig;
class AutoReportWorker;
class ConnectionGuard;
class QTimer;
class ServerWatch;

/**
 * The plug-in object that the host loads: finds the schemas with an automatic report enabled and
 * keeps one worker for each.
 *
 * With an information database it scans the schemas one second after `start` and then every hour,
 * and starts a worker in a new thread for each schema with a report enabled. A long scan returns to
 * the event loop several times a second, so that a stop or a pause need not wait until the scan
 * ends. Without an information database it never scans, but runs a single worker in the object's
 * thread, on the database that the host passes to setDatabase().
 *
 * All functions run in the object's thread. The host owns the object and calls `stop` before
 * deleting it. Without that call, the destructor stops only the workers that have threads of their
 * own.
 */
class AutoReport : public QObject,
                   public ServerInterface,
                   public DatabaseManagerInterface,
                   public VerInfoInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.velmora.kvh.ServerInterface")
    Q_INTERFACES(ServerInterface DatabaseManagerInterface VerInfoInterface)

public:
    explicit AutoReport(QObject *parent = nullptr);
    ~AutoReport() override;

    QMap<QString, QString> getVerInfo() const override;
    QString getVersion() const override;
    /// Returns false if there is no DBManager, or if the single worker cannot start.
    bool start() override;
    /// Waits until all workers have ended, at most ten seconds; see WorkerRegistry::stopAll().
    void stop() override;
    void pause() override;
    void resume() override;

private Q_SLOTS:
    void checkSchemas();
    void handleTimer();

private:
    bool startScanning();
    bool startSingleWorker();
    void holdScanning();
    void scanSlice();
    void guardInfoDatabase();
    void releaseInfoDatabase();
    void checkRegistry();
    void loseServer(const QString &obstacle);
    void leaveScan();
    void endScan();
    void checkSchema(const QString &token);
    void serveSchema(const QString &token, const QSqlDatabase &db);
    bool takeDescriptors(int wanted);
    bool checkAutoReport(const QSqlDatabase &db);
    bool queryEnabled(const QSqlDatabase &db);
    AutoReportDbConfig makeDbConfig(const QSqlDatabase &db, const QString &connectionName) const;
    std::unique_ptr<AutoReportWorker> createWorker(const AutoReportDbConfig &config);
    void stopAllWorkers();
    QString addressText() const;

    /// Progress of the running scan.
    struct Scan {
        unsigned int total = 0;
        unsigned int visited = 0;
        QStringList page;            ///< tokens that are loaded but not yet visited
        int descriptors = 0;         ///< file descriptors that this scan may still use
        QString obstacle;            ///< why the scan has to end early; empty otherwise
        bool hasUnreachable = false; ///< whether a schema could not be opened
        bool isServerLost = false;   ///< whether a new scan must follow in a minute
    };

    QTimer *timer;
    QTimer *soonScan;  ///< single shot: starts the first scan, a scan that a pause postponed or
                       ///< interrupted, and a new scan after one that lost the server
    QTimer *nextSlice; ///< single shot, running between two slices of a scan
    Scan scan;
    bool scanPending = false; ///< a scan is due or running
    int interval = 0;         ///< milliseconds between two scans; 0 until `start`
    bool started = false;
    bool infoDb = false; ///< whether `start` found an information database
    QPointer<AutoReportWorker> singleWorker;
    WorkerRegistry workers{this};
    std::unique_ptr<ServerWatch> watch;         ///< exists between `start` and `stop`
    std::shared_ptr<ConnectionGuard> infoGuard; ///< guards the information database during scans
};
