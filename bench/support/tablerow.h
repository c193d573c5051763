#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

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

/// Rows of the same work at several sizes: each time per row against the smallest of them.
void printGrowth(const QStringList &works, const QVector<double> &microseconds);
