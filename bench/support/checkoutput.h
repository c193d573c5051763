#pragma once

#include <QString>

// These functions use other projects' readers to check what the benchmarks wrote. If a check fails,
// they end the program.

/// Checks that both workbooks have the same cells.
void requireSameCells(const QString &path, const QString &otherPath);

/// Checks that the sheet has `rows` rows, including the heading.
void requireRows(const QString &path, int rows);

/// Checks the workbooks in `folder`, which must contain both reports of each of the customers 1 to
/// `customers`. Checks each workbook's number of rows, and that it shows only the customer's own
/// people. The name of a customer's database is `prefix` followed by the customer's number.
void requireFleet(const QString &folder, const QString &prefix, int customers, int people,
                  int days);
