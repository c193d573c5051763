#pragma once

class QString;

/// Returns whether a file can be written at `path`; prints an error that names it if something else
/// than a regular file, or a link to one, is there. To replace a device or a FIFO would take it
/// from all other programs.
bool isUsableTarget(const QString &path);
