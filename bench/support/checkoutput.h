#pragma once

#include <QString>

// What the benchmarks wrote, as readers see it that are not ours. A fault ends the program.

/// The two workbooks hold the same cells.
void requireSameCells(const QString &path, const QString &otherPath);

/// The sheet has so many rows, the heading among them.
void requireRows(const QString &path, int rows);
