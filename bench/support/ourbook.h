#pragma once

#include "support/samplerows.h"

#include <QString>

/// Writes the sheet with our engine. The extension of `path` selects the format .xls or .xlsx.
/// Returns false if the file was not saved.
bool writeOurBook(const QString &path, const SampleRows &rows);
