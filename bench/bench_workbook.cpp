// Compares the engine with libxlsxwriter: both write the same cells, formats and page set-up to a
// file.

#include "support/checkoutput.h"
#include "support/measure.h"
#include "support/ourbook.h"
#include "support/peerbook.h"
#include "support/tablerow.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryDir>

namespace
{

const QString ours = QStringLiteral("ours");
const QString theirs = QStringLiteral("theirs");
const QString theirsConstant = QStringLiteral("theirs-constant");
const QString bytesFigure = QStringLiteral("bytes");
const QString peer = QStringLiteral("libxlsxwriter");

struct Mix {
    SampleMix mix;
    QString name;
    double timeGoal;
};

const QVector<Mix> mixes{{SampleMix::Daily, QStringLiteral("daily report"), 0.28},
                         {SampleMix::Mixed, QStringLiteral("mixed text, numbers"), 0.33},
                         {SampleMix::UniqueTexts, QStringLiteral("the same, 60 % unique"), 0.33},
                         {SampleMix::Numbers, QStringLiteral("numbers alone"), 0.33}};

/// Writes a workbook and prints the figures. Arguments: the side (`ours`, `theirs` or
/// `theirsConstant`), the path, the number of rows, the mix, and how many times to write the
/// workbook (1 if left out).
void run(const QStringList &arguments)
{
    const QString &side = arguments.at(0);
    const QString &path = arguments.at(1);
    const SampleRows rows(SampleMix(arguments.at(3).toInt()), arguments.at(2).toInt());
    Bench::resetPeak();
    const double idle = Bench::residentKib();
    const int times = arguments.value(4, QStringLiteral("1")).toInt();
    bool saved = true;
    const double seconds = Bench::secondsOf([&] {
        for (int i = 0; i < times && saved; ++i)
            saved = side == ours ? writeOurBook(path, rows)
                                 : writePeerBook(path, rows,
                                                 side == theirs ? PeerMode::Default
                                                                : PeerMode::ConstantMemory);
    });
    Bench::require(saved, QStringLiteral("not saved: ") + path);
    Bench::print({{Bench::secondsFigure, seconds},
                  {Bench::peakFigure, (Bench::peakKib() - idle) / 1024},
                  {bytesFigure, double(QFileInfo(path).size())}});
}

/// Returns the arguments of a run of `side`, which writes a file of its own.
QStringList sideOf(const QString &side, const QString &folder, int rows, const Mix &mix,
                   const QString &suffix = QStringLiteral("xlsx"))
{
    return {side, QStringLiteral("%1/%2.%3").arg(folder, side, suffix), QString::number(rows),
            QString::number(int(mix.mix))};
}

using Runs = QVector<Bench::Figures>;

void printRow(const QString &work, const Runs &our, const QString &against, const Runs &their,
              const QString &figure, double goal)
{
    const bool bytes = figure == bytesFigure;
    TableRow{work,
             Bench::median(our, figure),
             against,
             Bench::median(their, figure),
             QLatin1String(bytes                            ? "B"
                           : figure == Bench::secondsFigure ? "s"
                                                            : "MiB"),
             goal,
             bytes                            ? 0
             : figure == Bench::secondsFigure ? 3
                                              : 1}
        .print();
}

/// Writes one mix as .xlsx, and compares the engine with both modes of libxlsxwriter.
void compare(int rounds, const QString &folder, int rows, const Mix &mix)
{
    const QVector<QStringList> sides{sideOf(ours, folder, rows, mix),
                                     sideOf(theirs, folder, rows, mix),
                                     sideOf(theirsConstant, folder, rows, mix)};
    const auto runs = Bench::inTurn(rounds, sides);
    constexpr int cellsOfLarge = 100000; // rows; comparing so many cells takes minutes
    if (rows < cellsOfLarge)
        requireSameCells(sides[0].at(1), sides[1].at(1));
    else
        requireRows(sides[0].at(1), rows + 1);

    const QString work = QStringLiteral(".xlsx, %1 rows x 15, %2: ").arg(rows).arg(mix.name);
    printRow(work + QStringLiteral("time"), runs[0], peer, runs[1], Bench::secondsFigure,
             mix.timeGoal);
    printRow(work + QStringLiteral("size"), runs[0], peer, runs[1], bytesFigure, 1.00);
    printRow(work + QStringLiteral("peak memory"), runs[0], peer, runs[1], Bench::peakFigure, 0.60);
    printRow(work + QStringLiteral("time"), runs[0], QStringLiteral("its constant_memory"), runs[2],
             Bench::secondsFigure, 0.45);
}

void compareXls(int rounds, const QString &folder, int rows)
{
    const QVector<QStringList> sides{
        sideOf(ours, folder, rows, mixes.first(), QStringLiteral("xls")),
        sideOf(theirs, folder, rows, mixes.first())};
    const auto runs = Bench::inTurn(rounds, sides);
    requireSameCells(sides[0].at(1), sides[1].at(1));
    printRow(QStringLiteral(".xls, %1 rows x 15, daily report: time").arg(rows), runs[0], peer,
             runs[1], Bench::secondsFigure, 0.10);
}

/// Measures the time per row for several sizes. A run saves smaller books several times, so that
/// all runs write the same number of rows.
void growth(const Bench::Plan &plan, const QString &folder)
{
    const QVector<int> sizes =
        plan.quick ? QVector<int>{100, 200, 400} : QVector<int>{10000, 100000, 1000000};
    QVector<QStringList> sides;
    for (const int rows : sizes)
        sides.append({ours, folder + QStringLiteral("/%1.xlsx").arg(rows), QString::number(rows),
                      QString::number(int(SampleMix::Daily)),
                      QString::number(sizes.last() / rows)});
    const auto runs = Bench::inTurn(plan.quick ? 1 : 3, sides);
    QStringList works;
    QVector<double> microseconds;
    for (int size = 0; size < sizes.size(); ++size) {
        requireRows(sides[size].at(1), sizes[size] + 1);
        works.append(QStringLiteral("growth, .xlsx of %1 rows: time per row").arg(sizes[size]));
        microseconds.append(Bench::median(runs[size], Bench::secondsFigure) * 1e6 /
                            (sizes.last() / sizes[size] * sizes[size]));
    }
    printGrowth(works, microseconds);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const Bench::Plan plan(QCoreApplication::arguments());
    if (!plan.run.isEmpty()) {
        run(plan.run);
        return 0;
    }
    const QTemporaryDir folder;
    const int small = plan.quick ? 200 : 31000;
    const int large = plan.quick ? 400 : 200000;
    for (const Mix &mix : mixes)
        compare(plan.pairs, folder.path(), small, mix);
    for (const Mix &mix : mixes)
        compare(plan.quick ? 1 : 3, folder.path(), large, mix);
    compareXls(plan.pairs, folder.path(), small);
    growth(plan, folder.path());
    return 0;
}
