#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/**
 * One row of the table of results. `ours` and `theirs` are in `unit`. `goal` is the largest ratio
 * `ours` / `theirs` that meets the goal.
 */
struct TableRow {
    QString work;
    double ours;
    QString against; ///< names what `theirs` measures
    double theirs;
    QString unit;
    double goal;
    int decimals = 3;

    /// Prints the row as fields separated by tabs, which scripts/bench formats.
    void print() const;
};

/// Prints a table row for each size of the same work. Compares the time per row of a report or
/// sheet with the smallest such time.
void printGrowth(const QStringList &works, const QVector<double> &microseconds);
