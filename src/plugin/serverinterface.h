#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QtPlugin>

/**
 * The interface through which the host starts, pauses and stops a server plug-in.
 *
 * The host calls every function in the plug-in object's thread. The order of the virtual functions
 * is part of the binary interface between host and plug-in.
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
    /// Sets the database of single-database mode. The plug-in uses the parameters of `db`, but not
    /// its connection.
    virtual void setDatabase(const QSqlDatabase &db) { database = db; }

protected:
    unsigned char debugLevel = 0; ///< 0: off; all other values have the same effect
    QSqlDatabase database;
};

Q_DECLARE_INTERFACE(ServerInterface, "com.velmora.kvh.ServerInterface")
