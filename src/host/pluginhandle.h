#pragma once

#include <QString>

#include <memory>

class DatabaseManagerInterface;
class QObject;
class ServerInterface;

/**
 * The plug-in object of a loaded module; the handle owns it.
 *
 * The module itself stays loaded until the process ends: texts of its own may live on in
 * connections and caches of the host.
 */
class PluginHandle
{
public:
    PluginHandle();
    ~PluginHandle();
    Q_DISABLE_COPY(PluginHandle)

    /// The module beside the program (a build tree) or else where it is installed.
    static QString defaultFile();

    /// Loads the module and creates the object. Gives the reason of a failure, or an empty text.
    QString load(const QString &file);

    /// Both null until load() succeeded.
    ServerInterface *server() const { return serverPart; }
    DatabaseManagerInterface *databaseManager() const { return databasePart; }

    /// What the plug-in says about its version, as one text.
    QString description() const;

private:
    std::unique_ptr<QObject> object;
    ServerInterface *serverPart = nullptr;
    DatabaseManagerInterface *databasePart = nullptr;
};
