#pragma once

#include "inquiry/hostanswer.h"

#include <QStringList>
#include <QVector>

/// The hosts of this machine that this account may ask.
struct HostsFound {
    QVector<HostAnswer> hosts;
    QStringList errors; ///< why folders could not be searched or running hosts did not answer
};

/// Asks every host whose socket is in one of socketFolders(). Asks them in parallel and blocks for
/// at most `timeoutMs`, without an event loop. Ignores sockets without a process. A folder that
/// another account could have created is an error.
HostsFound askHosts(int timeoutMs);
