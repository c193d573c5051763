#pragma once

#include <QtSql>

/// A host's own declarations of what it shares with its plug-ins; none of the plug-in's headers.
namespace foreign
{

struct Scheme {
    QString name, user, pass, token;
};

/// The connection manager as it lies in memory.
struct Manager {
    quint8 debugLevel = 0;
    QHash<QString, Scheme> schemes;
    QSqlDatabase info;
    QSqlDatabase product;
    QVector<QString> connections;
    QVector<QString> unusedConnections;
    bool closeInfoAfterUse = false;
    bool infoOpen = false;
    QString productConnection;
    QString infoConnection;
    QMutex mutex;
    QHash<QString, QString> second;
    bool poolEnabled = true;
};

} // namespace foreign
