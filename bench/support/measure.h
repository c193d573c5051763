#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

/**
 * Measuring: every run is a child of its own, so that neither memory nor warmth of one run helps
 * or hurts the next.
 *
 * A benchmark program called with "run ..." does one run and prints its figures; called otherwise
 * it starts itself for each run, the two sides in turn, and prints the rows of the table.
 */
namespace Bench
{

/// What one run measured, by name.
using Figures = QMap<QString, double>;

/// The names of the most frequent figures.
inline const QString secondsFigure = QStringLiteral("seconds");
inline const QString peakFigure = QStringLiteral("peakMib");

/// What the command line asks for. Quick: little data, each run once, no judgement on times.
struct Plan {
    explicit Plan(const QStringList &arguments);

    bool quick;
    int pairs;
    QStringList run; ///< what follows "run"; empty for the program that starts the runs
};

/// Runs this program again as "run" with `arguments`. A run that fails ends the program.
Figures child(const QStringList &arguments);

/// The last word of a run: its figures, for child() to read.
void print(const Figures &figures);

/// Sides of a comparison: each entry is the arguments of one run. Run in turn, `rounds` times.
QVector<QVector<Figures>> inTurn(int rounds, const QVector<QStringList> &sides);

double median(const QVector<Figures> &runs, const QString &figure);

double secondsOf(const std::function<void()> &work);

/// Resident memory of this process, in KiB, now and at most since resetPeak().
double residentKib();
double peakKib();
void resetPeak();
/// The peak of another process of this user.
double peakKib(qint64 processId);

/// Ends the program with `complaint` unless `held`: what failed must not be measured.
void require(bool held, const QString &complaint);

/// From here on a warning or worse ends the program, and lesser lines are dropped.
void failOnWarnings();

} // namespace Bench
