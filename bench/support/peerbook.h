#pragma once

#include "support/samplerows.h"

#include <QString>

/// ConstantMemory keeps one row at a time and no table of strings.
enum class PeerMode { Default, ConstantMemory };

/// Writes the same sheet with libxlsxwriter. Returns false if the file was not saved.
bool writePeerBook(const QString &path, const SampleRows &rows, PeerMode mode);
