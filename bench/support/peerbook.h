#pragma once

#include "support/samplerows.h"

#include <QString>

/// With ConstantMemory, the library keeps only one row in memory, and no table of strings.
enum class PeerMode { Default, ConstantMemory };

/// Writes the same sheet as writeOurBook(), but with libxlsxwriter. Returns false if the file was
/// not saved.
bool writePeerBook(const QString &path, const SampleRows &rows, PeerMode mode);
