#pragma once

#include <QString>

// What the benchmarks wrote, as readers see it that are not ours. A fault ends the program.

/// The two workbooks hold the same cells.
void requireSameCells(const QString &path, const QString &otherPath);

/// The sheet has so many rows, the heading among them.
void requireRows(const QString &path, int rows);

/// Both reports of the customers 1 to `customers`, in `folder`, have their rows and show the
/// customer's own people. The databases are named `prefix` and the number.
void requireFleet(const QString &folder, const QString &prefix, int customers, int people,
                  int days);
