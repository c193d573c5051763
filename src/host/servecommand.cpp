#include "host/servecommand.h"

#include "common/filelimit.h"
#include "db/dbmanager.h"
#include "host/signalwatcher.h"
#include "plugin/databasemanagerinterface.h"
#include "plugin/serverinterface.h"

#include <QCoreApplication>
#include <QEvent>
#include <QSqlError>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <future>
#include <system_error>
#include <thread>

namespace
{

// Names that the connection manager knows: never removed as unused.
QString masterName(bool single)
{
    return single ? QStringLiteral("KVH.ZASDB") : QStringLiteral("KVH.InfoDB");
}

} // namespace

int ServeCommand::run(const ServeOptions &options)
{
    raiseFileLimit();
    SignalWatcher signalWatcher;
    std::atomic<int> status{1};
    std::promise<QThread *> begun;
    std::promise<void> deaf;
    const std::future<void> deafness = deaf.get_future();
    // Not a QThread: waiting for one ends before the libraries have taken down what they keep for
    // it, and the end of the process would come in between.
    std::thread thread;
    try {
        thread = std::thread([&] {
            begun.set_value(QThread::currentThread());
            status = ServeCommand(options, signalWatcher).serve();
            QMetaObject::invokeMethod(qApp, "quit", Qt::QueuedConnection);
            deafness.wait(); // until then a signal may ask for this thread
        });
    } catch (const std::system_error &error) {
        qCritical("Host - no thread to serve in: %s", error.what());
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
    deaf.set_value();
    thread.join();
    return status;
}

ServeCommand::ServeCommand(const ServeOptions &serveOptions, SignalWatcher &watcher)
    : options(serveOptions)
    , signalWatcher(watcher)
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
    giveBack();
    if (started)
        qInfo("Host - stopped");
    return started ? 0 : 1;
}

bool ServeCommand::loadPlugin()
{
    const QString reason = plugin->load(options.plugin);
    if (reason.isEmpty())
        return true;
    qCritical("Host - can not load the plug-in '%s': %s", qUtf8Printable(options.plugin),
              qUtf8Printable(reason));
    return false;
}

bool ServeCommand::connectDatabase()
{
    QSqlDatabase db = options.connection.addDatabase(masterName(options.connection.single),
                                                     ConnectionOptions::OnLoss::Reconnect);
    // Tried here first, so that a failure is one line which names the server.
    if (!db.open()) {
        qCritical("Host - can not open the database '%s' on %s:%i: %s",
                  qUtf8Printable(options.connection.databaseName),
                  qUtf8Printable(options.connection.host), options.connection.port,
                  qUtf8Printable(db.lastError().text()));
        return false;
    }
    db.close();

    if (options.connection.single) {
        manager->setZasDB(db);
        plugin->server()->setDatabase(db);
        return true;
    }
    // The manager counts only what it opened itself; this is what chooses the plug-in's mode.
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
    qCritical("Host - the plug-in does not start");
    return false;
}

void ServeCommand::waitForEnd()
{
    ServerInterface *server = plugin->server();
    const QObject here; // ends the connections before the plug-in goes
    QObject::connect(&signalWatcher, &SignalWatcher::pauseRequested, &here,
                     [server] { server->pause(); });
    QObject::connect(&signalWatcher, &SignalWatcher::resumeRequested, &here,
                     [server] { server->resume(); });
    QMetaObject::invokeMethod(&signalWatcher, "watch", Qt::QueuedConnection);
    qInfo("Host - serving '%s' on %s:%i", qUtf8Printable(options.connection.databaseName),
          qUtf8Printable(options.connection.host), options.connection.port);
    loop.exec(); // which the thread's quit() ends, even if it comes first
    server->stop();
}

void ServeCommand::giveBack()
{
    // What was left to deleteLater() gets no event loop any more.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    plugin.reset();

    // What the names of all of this thread's connections to schemas begin with.
    const QString mine = manager->getConnectionNameFromToken(QString());
    const QStringList names = QSqlDatabase::connectionNames();
    for (const QString &name : names) {
        if (!name.startsWith(mine))
            continue;
        QSqlDatabase::database(name, false).close(); // the pool spares what is open
        manager->addUnusedConnection(name);
    }
    manager->removeUnusedConnections();

    manager.reset();
    QSqlDatabase::removeDatabase(masterName(options.connection.single));
}
