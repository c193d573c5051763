#pragma once

class QString;

/// Returns true if a file may be written at `path`: if nothing exists there, or if `path` names a
/// regular file or a link to one. Otherwise prints an error that names `path`. A device or a FIFO
/// is never replaced, because other programs need it.
bool isUsableTarget(const QString &path);
