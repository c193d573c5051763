#pragma once

#include "host/pluginhandle.h"
#include "host/serveoptions.h"

#include <QDate>
#include <QEventLoop>

#include <memory>

class DBManager;
class HostState;
class ScanWatch;
class ServiceManager;
class QueueWatch;
class SignalWatcher;

/**
 * `autoreport serve`: hands the databases to the plug-in, starts the plug-in, and stops it on
 * request.
 *
 * Works in a thread of its own. The main thread handles the signals, so that a signal can end a
 * report that runs in the serving thread itself. Removes the serving thread's connections that
 * the plug-in does not remove itself: the one to the configured database, and those that the
 * plug-in's scan opened to schemas.
 */
class ServeCommand
{
public:
    /// Call it in the main thread. Returns the exit status: 0 after a requested stop, 1 if serving
    /// never began.
    static int run(const ServeOptions &options);

private:
    static int runThread(const ServeOptions &options, HostState &state);
    ServeCommand(const ServeOptions &serveOptions, SignalWatcher &watcher,
                 ServiceManager &serviceManager, HostState &hostState);
    ~ServeCommand();
    Q_DISABLE_COPY(ServeCommand)

    int serve();
    bool loadPlugin();
    bool connectDatabase();
    bool startPlugin();
    void waitForEnd();
    void followSignals(ScanWatch &scans);
    void reload(ScanWatch &scans);
    void clearWorkbooks();
    void tearDown();
    /// Removes this thread's connections to schemas. The manager reopens those that it needs.
    void removeSchemaConnections();

    const ServeOptions &options;
    SignalWatcher &signalWatcher; // lives in the main thread, like `services`
    ServiceManager &services;
    HostState &state; // outlives this object
    bool isPaused = false;
    QDate clearedOn; // when old workbooks were last looked for
    QEventLoop loop; // created before the plug-in, whose timers need the loop's dispatcher
    std::unique_ptr<DBManager> manager;
    std::unique_ptr<QueueWatch> queues;   // null without metrics
    std::unique_ptr<PluginHandle> plugin; // destroyed before the manager that it uses
};
