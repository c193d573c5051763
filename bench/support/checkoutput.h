#pragma once

#include <QString>

// These functions check what the benchmarks wrote, with other projects' readers. If a check fails,
// they end the program.

/// Checks that both workbooks have the same cells.
void requireSameCells(const QString &path, const QString &otherPath);

/// Checks that the sheet has `rows` rows, including the heading.
void requireRows(const QString &path, int rows);

/// Checks the workbooks of both reports of the customers 1 to `customers` in `folder`: the number
/// of their rows, and that they show only the customer's own people. The name of a customer's
/// database is `prefix` followed by the customer's number.
void requireFleet(const QString &folder, const QString &prefix, int customers, int people,
                  int days);
