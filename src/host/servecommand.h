#pragma once

#include "host/pluginhandle.h"
#include "host/serveoptions.h"

#include <QEventLoop>

#include <memory>

class DBManager;
class SignalWatcher;

/**
 * `autoreport serve`: hands the databases to the plug-in, starts it, and stops it when asked to.
 *
 * Lives and works in a thread of its own, so that a signal, which the main thread takes, can end a
 * report that the plug-in itself is making there. What it registered (the master connection, and
 * the connections to schemas that the plug-in's scan asked for in this thread) it removes again.
 */
class ServeCommand
{
public:
    /// To be called in the main thread. Gives the exit status: 0 after a stop on demand, 1 when it
    /// did not come so far.
    static int run(const ServeOptions &options);

private:
    ServeCommand(const ServeOptions &options, SignalWatcher &signalWatcher);
    ~ServeCommand();
    Q_DISABLE_COPY(ServeCommand)

    int serve();
    bool loadPlugin();
    bool connectDatabase();
    bool startPlugin();
    void waitForEnd();
    void giveBack();

    const ServeOptions &options;
    SignalWatcher &signalWatcher; // in the main thread
    QEventLoop loop; // from the first on: without it, a thread that Qt did not start has no timers
    std::unique_ptr<DBManager> manager;
    std::unique_ptr<PluginHandle> plugin; // goes before the manager that it uses
};
