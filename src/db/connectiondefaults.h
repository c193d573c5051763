#pragma once

#include <QLatin1String>

// The usual names of the host's connections. A host may choose others.
inline const QLatin1String informationConnection("KVH.InfoDB");
inline const QLatin1String productConnection("KVH.ZASDB");

/// The driver's options for a connection that does not reconnect.
inline const QLatin1String commonOptions("CLIENT_IGNORE_SPACE=1");
/// The driver's options for a connection that reconnects, for example after a restart of the
/// server.
inline const QLatin1String reconnectingOptions("MYSQL_OPT_RECONNECT=1;CLIENT_IGNORE_SPACE=1");
