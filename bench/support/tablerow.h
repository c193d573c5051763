#pragma once

#include <QString>

/**
 * One row of the table of results. `ours` and `theirs` are in `unit`; the goal is the largest
 * ratio of the two. Printed as fields between tabs, which scripts/bench lays out.
 */
struct TableRow {
    QString work;
    double ours;
    QString against; ///< what `theirs` is the figure of
    double theirs;
    QString unit;
    double goal;
    int decimals = 3;

    void print() const;
};

/// A row of work that this build cannot do: not measured, and so missed.
void printNotBuilt(const QString &work, double goal);
