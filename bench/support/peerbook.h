#pragma once

#include "support/samplerows.h"

#include <QString>

/// ConstantMemory keeps one row at a time and no table of strings.
enum class PeerMode { Default, ConstantMemory };

/// The same sheet as libxlsxwriter writes it; false when it was not saved.
bool writePeerBook(const QString &path, const SampleRows &rows, PeerMode mode);
