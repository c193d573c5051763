#pragma once

#include "host/pluginhandle.h"
#include "host/serveoptions.h"
#include "host/signalwatcher.h"

#include <memory>

class DBManager;

/**
 * `autoreport serve`: hands the databases to the plug-in, starts it, and stops it when asked to.
 *
 * Lives and works in the main thread. What it registered (the master connection, and the
 * connections to schemas that the plug-in's scan asked for in this thread) it removes again.
 */
class ServeCommand
{
public:
    explicit ServeCommand(const ServeOptions &options);
    ~ServeCommand();
    Q_DISABLE_COPY(ServeCommand)

    /// Gives the exit status: 0 after a stop on demand, 1 when it did not come so far.
    int run();

private:
    bool loadPlugin();
    bool connectDatabase();
    bool startPlugin();
    void waitForEnd();
    void giveBack();

    ServeOptions options;
    SignalWatcher signalWatcher;
    std::unique_ptr<DBManager> manager;
    std::unique_ptr<PluginHandle> plugin; // goes before the manager that it uses
};
