#pragma once

#include <QtPlugin>

class DBManager;

/// Takes the host's connection manager. The manager stays the host's and must outlive the plug-in.
class DatabaseManagerInterface
{
public:
    virtual void setDBManager(DBManager *manager) { dbManager = manager; }

protected:
    // No virtual destructor: nobody deletes a plug-in through this interface, so nobody can.
    ~DatabaseManagerInterface() = default;

    DBManager *dbManager = nullptr;
};

Q_DECLARE_INTERFACE(DatabaseManagerInterface, "com.velmora.kvh.DatabaseManagerInterface")
