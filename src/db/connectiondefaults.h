#pragma once

#include <QLatin1String>

// The usual names of the host's connections. A host may choose others.
constexpr QLatin1String informationConnection("KVH.InfoDB");
constexpr QLatin1String productConnection("KVH.ZASDB");

/// The driver's options of every connection.
constexpr QLatin1String commonOptions("CLIENT_IGNORE_SPACE=1");
/// Those of a connection that outlives a restart of the server.
constexpr QLatin1String reconnectingOptions("MYSQL_OPT_RECONNECT=1;CLIENT_IGNORE_SPACE=1");
