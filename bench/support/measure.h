#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

/**
 * Functions for measuring. child() and inTurn() do each run in a process of its own, so that the
 * memory and the caches of one run do not affect the next one.
 *
 * A benchmark program that is called with "run ..." does one run and prints its figures. Otherwise
 * the program starts itself for each such run, and prints the rows of the table.
 */
namespace Bench
{

/// The figures that one run measured, by name.
using Figures = QMap<QString, double>;

/// The names of the most frequent figures.
inline const QString secondsFigure = QStringLiteral("seconds");
inline const QString peakFigure = QStringLiteral("peakMib");

/// The options of the command line.
struct Plan {
    explicit Plan(const QStringList &arguments);

    bool quick;      ///< little data, and each run only once
    int pairs;       ///< how many times to run each side
    QStringList run; ///< the arguments after "run"; empty for the program that starts the runs
};

/// Runs this program again with "run" and `arguments`, and returns the run's figures. If the run
/// fails, ends the program.
Figures child(const QStringList &arguments);

/// Prints the figures of a run in the form that child() reads.
void print(const Figures &figures);

/// Runs all sides of a comparison in turn, `rounds` times. A side is given by the arguments of its
/// run. Returns the figures of each side's runs.
QVector<QVector<Figures>> inTurn(int rounds, const QVector<QStringList> &sides);

double median(const QVector<Figures> &runs, const QString &figure);

double secondsOf(const std::function<void()> &work);

/// Returns the resident memory of this process, in KiB.
double residentKib();
/// Returns the largest resident memory of this process since resetPeak(), in KiB.
double peakKib();
void resetPeak();
/// Returns the largest resident memory of another process of this user, in KiB.
double peakKib(qint64 processId);

/// Ends the program with `complaint` unless `held`, so that no failure is measured.
void require(bool held, const QString &complaint);

/// From now on, ends the program on a warning or a more severe message, and discards debug and info
/// messages.
void failOnWarnings();

} // namespace Bench
