#pragma once

#include <QtPlugin>

class DBManager;

/// Receives the host's connection manager. The host owns the manager, which must outlive the
/// plug-in.
class DatabaseManagerInterface
{
public:
    virtual void setDBManager(DBManager *manager) { dbManager = manager; }

protected:
    // Not virtual, because a protected destructor keeps the host from deleting a plug-in through
    // this interface.
    ~DatabaseManagerInterface() = default;

    DBManager *dbManager = nullptr;
};

Q_DECLARE_INTERFACE(DatabaseManagerInterface, "com.velmora.kvh.DatabaseManagerInterface")
