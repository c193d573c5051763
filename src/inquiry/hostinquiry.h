#pragma once

#include "inquiry/hostanswer.h"

#include <QStringList>
#include <QVector>

/// The answers of this machine's hosts.
struct HostsFound {
    QVector<HostAnswer> hosts;
    QStringList errors; ///< why folders could not be searched or running hosts did not answer
};

/// Asks every host whose socket is in one of socketFolders(). Asks them in parallel and blocks for
/// at most `timeoutMs`. Needs no event loop. Ignores sockets on which no process listens. If
/// another account could have created a folder, adds an error and ignores the folder's sockets.
HostsFound askHosts(int timeoutMs);
