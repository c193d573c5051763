#pragma once

#include "support/samplerows.h"

#include <QString>

/// The sheet as our engine writes it, .xls or .xlsx by the name; false when it was not saved.
bool writeOurBook(const QString &path, const SampleRows &rows);
