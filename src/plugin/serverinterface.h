#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QtPlugin>

/**
 * The lifecycle of a server plug-in, as the host drives it.
 *
 * Every operation is called from the thread that owns the plug-in object. The order of the
 * virtual operations is part of the binary interface between host and plug-in.
 */
class ServerInterface
{
public:
    virtual ~ServerInterface() = default;
    virtual QString getVersion() const = 0;
    virtual bool start() = 0;
    virtual void stop() = 0;
    virtual void pause() = 0;
    virtual void resume() = 0;
    virtual void setDebugLevel(unsigned char level) { debugLevel = level; }
    /// Sets the database of single-database mode. Only its parameters are used, not the connection.
    virtual void setDatabase(const QSqlDatabase &db) { database = db; }

protected:
    unsigned char debugLevel = 0; ///< only zero or not zero matters
    QSqlDatabase database;
};

Q_DECLARE_INTERFACE(ServerInterface, "com.velmora.kvh.ServerInterface")
