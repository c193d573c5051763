#include "host/servecommand.h"

#include "common/filelimit.h"
#include "db/connectiondefaults.h"
#include "db/dbmanager.h"
#include "db/serverlist.h"
#include "db/serversocket.h"
#include "host/hostanswers.h"
#include "host/hoststate.h"
#include "host/logsink.h"
#include "host/metrics.h"
#include "host/oldworkbooks.h"
#include "host/queuewatch.h"
#include "host/scanwatch.h"
#include "host/servicemanager.h"
#include "host/signalwatcher.h"
#include "plugin/databasemanagerinterface.h"
#include "plugin/serverinterface.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QScopeGuard>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <future>
#include <system_error>
#include <thread>

namespace
{

// The connection manager never treats a connection with one of these names as unused.
QString masterName(bool single)
{
    return single ? productConnection : informationConnection;
}

} // namespace

int ServeCommand::run(const ServeOptions &options)
{
    raiseFileLimit();
    HostState state(options.connection.databaseName);
    Metrics metrics(state);
    if (!options.metricsAddress.isEmpty() && !metrics.listen(options.metricsAddress)) {
        qCritical("Host - cannot serve metrics at %s", qUtf8Printable(options.metricsAddress));
        return 1;
    }
    LogSink::setListener(
        [&state](QtMsgType type, const QString &message) { state.take(type, message); });
    const auto unset = qScopeGuard([] { LogSink::setListener(nullptr); });
    return runThread(options, state);
}

int ServeCommand::runThread(const ServeOptions &options, HostState &state)
{
    SignalWatcher signalWatcher;
    ServiceManager services;
    services.follow(signalWatcher);
    const HostAnswers answers(options, state);
    std::atomic<int> status{1};
    std::promise<QThread *> begun;
    std::promise<void> signalsDone; // set when no signal can reach the serving thread any more
    const std::future<void> untilSignalsDone = signalsDone.get_future();
    // Not a QThread: QThread::wait() returns before the thread-local destructors have run, and the
    // process could end before they run.
    std::thread thread;
    try {
        thread = std::thread([&] {
            begun.set_value(QThread::currentThread());
            status = ServeCommand(options, signalWatcher, services, state).serve();
            QMetaObject::invokeMethod(qApp, "quit", Qt::QueuedConnection);
            untilSignalsDone.wait(); // this thread's QThread object must live until then
        });
    } catch (const std::system_error &error) {
        qCritical("Host - cannot start the serving thread: %s", error.what());
        return 1;
    }
    QThread *const serving = begun.get_future().get();
    QObject::connect(&signalWatcher, &SignalWatcher::stopRequested, [serving] {
        serving->requestInterruption();
        serving->quit();
        qInfo("Host - stopping");
    });
    if (options.runForSeconds > 0) {
        QTimer::singleShot(std::chrono::seconds(options.runForSeconds), &signalWatcher,
                           &SignalWatcher::stopRequested);
    }
    QCoreApplication::exec();
    signalsDone.set_value();
    thread.join();
    return status;
}

ServeCommand::ServeCommand(const ServeOptions &serveOptions, SignalWatcher &watcher,
                           ServiceManager &serviceManager, HostState &hostState)
    : options(serveOptions)
    , signalWatcher(watcher)
    , services(serviceManager)
    , state(hostState)
    , manager(std::make_unique<DBManager>())
    , plugin(std::make_unique<PluginHandle>())
{
    manager->debugLevel = options.debugLevel;
}

ServeCommand::~ServeCommand() = default;

int ServeCommand::serve()
{
    const bool started = loadPlugin() && connectDatabase() && startPlugin();
    if (started)
        waitForEnd();
    tearDown();
    if (started)
        qInfo("Host - stopped");
    return started ? 0 : 1;
}

bool ServeCommand::loadPlugin()
{
    const QString error = plugin->load(options.plugin);
    if (error.isEmpty())
        return true;
    qCritical("Host - cannot load the plug-in '%s': %s", qUtf8Printable(options.plugin),
              qUtf8Printable(error));
    return false;
}

bool ServeCommand::connectDatabase()
{
    QSqlDatabase db = options.connection.addDatabase(masterName(options.connection.single),
                                                     ConnectionOptions::OnLoss::Reconnect);
    // Opened once here, so that a failure is logged as a single line that names the server.
    if (!openWithin(db, connectSeconds)) {
        qCritical("Host - %s", qUtf8Printable(ConnectionOptions::openError(db)));
        return false;
    }
    db.close();

    if (options.connection.single) {
        manager->setZasDB(db);
        plugin->server()->setDatabase(db);
        return true;
    }
    // The plug-in scans for schemas only if the manager itself has opened the information database.
    manager->setInfoDB(db);
    return manager->checkOpenDB(db);
}

bool ServeCommand::startPlugin()
{
    qInfo("Host - plug-in '%s': %s", qUtf8Printable(options.plugin),
          qUtf8Printable(plugin->description()));
    plugin->databaseManager()->setDBManager(manager.get());
    plugin->server()->setDebugLevel(options.debugLevel);
    if (plugin->server()->start())
        return true;
    qCritical("Host - the plug-in failed to start");
    return false;
}

void ServeCommand::waitForEnd()
{
    // A local variable, so that it and its signal connections are destroyed before the plug-in.
    ScanWatch scans(*plugin->pluginObject());
    followSignals(scans);
    state.takeNextScan(scans.nextScan());
    QObject::connect(&scans, &ScanWatch::scanned, &services, &ServiceManager::scanned);
    QObject::connect(&scans, &ScanWatch::scanned, &scans, [this, &scans](qint64 milliseconds) {
        state.takeScan(milliseconds);
        state.takeNextScan(scans.nextScan());
        if (queues)
            queues->ask();
    });
    // A scan opens a connection to each schema. No code uses these connections between two turns of
    // the event loop, so remove them when the loop wakes up.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &scans,
                     [this] { removeSchemaConnections(); });
    // The main thread feeds the watchdog only when this timer fires. The timer does not fire while
    // this thread is stuck.
    QTimer heartbeat;
    QObject::connect(&heartbeat, &QTimer::timeout, &services, &ServiceManager::feedWatchdog);
    if (const int interval = ServiceManager::watchdogIntervalMs(); interval > 0)
        heartbeat.start(interval);

    qInfo("Host - serving '%s' on %s", qUtf8Printable(options.connection.databaseName),
          qUtf8Printable(serverText(options.connection.host, options.connection.port)));
    if (options.connection.single) // otherwise ready after the first scan
        QMetaObject::invokeMethod(&services, &ServiceManager::ready, Qt::QueuedConnection);
    QTimer hourly;
    QObject::connect(&hourly, &QTimer::timeout, &scans, [this] { clearWorkbooks(); });
    hourly.start(std::chrono::hours(1));
    clearWorkbooks();
    if (!options.metricsAddress.isEmpty())
        queues = std::make_unique<QueueWatch>(options.connection, *manager, state);
    loop.exec(); // ended by the thread's quit(), even if quit() was called before
    if (queues)
        queues->requestStop();
    plugin->server()->stop();
    queues.reset();
}

void ServeCommand::followSignals(ScanWatch &scans)
{
    const auto setPaused = [this, &scans](bool paused) {
        isPaused = paused;
        state.takePaused(paused);
        state.takeNextScan(scans.nextScan());
    };
    QObject::connect(&signalWatcher, &SignalWatcher::pauseRequested, &scans,
                     [this, &scans, setPaused] {
                         plugin->server()->pause();
                         scans.forgetScan();
                         setPaused(true);
                     });
    QObject::connect(&signalWatcher, &SignalWatcher::resumeRequested, &scans, [this, setPaused] {
        plugin->server()->resume();
        setPaused(false);
    });
    QObject::connect(&signalWatcher, &SignalWatcher::reloadRequested, &scans,
                     [this, &scans] { reload(scans); });
    QMetaObject::invokeMethod(&signalWatcher, "watch", Qt::QueuedConnection);
}

void ServeCommand::clearWorkbooks()
{
    const QDate today = QDate::currentDate();
    if (!options.clearsWorkbooks || clearedOn == today)
        return;
    clearedOn = today;
    const QString path = QDir::tempPath(); // empty if missing; QDir("") is "."
    if (path.isEmpty())
        return;
    const QDir folder(path);
    if (const int removed = removeOldWorkbooks(folder, today); removed > 0)
        qInfo("Host - %i workbooks of past months removed from '%s'", removed,
              qUtf8Printable(folder.path()));
}

void ServeCommand::reload(ScanWatch &scans)
{
    if (!isPaused && !options.connection.single) {
        qInfo("Host - scanning on request");
        scans.scanNow();
        return;
    }
    qInfo("Host - scan request ignored: %s", isPaused ? "paused" : "only one schema is served");
    QMetaObject::invokeMethod(&services, &ServiceManager::ready, Qt::QueuedConnection);
}

void ServeCommand::tearDown()
{
    // No event loop will run again to delete the objects on which deleteLater() was called.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    plugin.reset();
    removeSchemaConnections();
    manager.reset();
    QSqlDatabase::removeDatabase(masterName(options.connection.single));
}

void ServeCommand::removeSchemaConnections()
{
    // The common prefix of the names of this thread's connections to schemas.
    const QString mine = manager->getConnectionNameFromToken(QString());
    bool found = false;
    const QStringList names = QSqlDatabase::connectionNames();
    for (const QString &name : names) {
        if (!name.startsWith(mine))
            continue;
        QSqlDatabase::database(name, false).close(); // the manager removes only closed connections
        manager->addUnusedConnection(name);
        found = true;
    }
    if (found)
        manager->removeUnusedConnections();
}
