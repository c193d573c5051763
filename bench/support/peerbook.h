#pragma once

#include "support/samplerows.h"

#include <QString>

/// The same sheet as libxlsxwriter writes it, in its default mode; false when it was not saved.
bool writePeerBook(const QString &path, const SampleRows &rows);
