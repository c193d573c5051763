#pragma once

#include <QString>

#include <memory>

class DatabaseManagerInterface;
class QObject;
class ServerInterface;

/**
 * Loads a plug-in module and owns its plug-in object.
 *
 * The module itself stays loaded until the process ends: the host's connections and caches may
 * still refer to its string literals.
 */
class PluginHandle
{
public:
    PluginHandle();
    ~PluginHandle();
    Q_DISABLE_COPY(PluginHandle)

    /// Returns the path of the module beside the program, as in a build tree. If there is none,
    /// returns the path of the installed module.
    static QString defaultFile();

    /// Loads the module and creates the object. Returns the error, empty on success.
    QString load(const QString &file);

    /// The next three functions return null before load(). After load() has succeeded, they never
    /// return null.
    QObject *pluginObject() const { return object.get(); }
    ServerInterface *server() const { return serverPart; }
    DatabaseManagerInterface *databaseManager() const { return databasePart; }

    /// Returns the plug-in's version information as one line.
    QString description() const;

private:
    std::unique_ptr<QObject> object;
    ServerInterface *serverPart = nullptr;
    DatabaseManagerInterface *databasePart = nullptr;
};
