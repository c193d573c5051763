#pragma once

#include <QStringList>

// Where the hosts of this machine keep their sockets, each named "PID.socket".

/// Returns the folder for the socket of a host in this process. It is the first of these that
/// applies: the first folder in RUNTIME_DIRECTORY, which the service manager sets; for root, the
/// packaged service's folder; the folder "autoreport" in XDG_RUNTIME_DIR, which a login session
/// sets; this account's folder in /tmp. The folder need not exist yet.
QString ownSocketFolder();

/// Creates `folder` unless it exists. A new folder is accessible to this account only. Returns the
/// error, or an empty text. Refuses a folder that belongs to another account.
QString makeSocketFolder(const QString &folder);

/// Returns the folders in which commands look for hosts: ownSocketFolder() and the packaged
/// service's folder.
QStringList socketFolders();

/// Returns whether only root or this account can have created the folder. A folder in /tmp could be
/// another account's. The packaged service's folder does belong to another account, but is trusted
/// because only root can create it.
bool isTrustedFolder(const QString &folder);

/// Returns the paths of the sockets in `folder`, sorted by name.
QStringList socketsIn(const QString &folder);

/// The suffix of the sockets' names.
extern const char *const socketSuffix;
