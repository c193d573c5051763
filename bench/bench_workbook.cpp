// The engine against libxlsxwriter: the same cells, formats and page set-up, both into a file.

#include "support/checkoutput.h"
#include "support/measure.h"
#include "support/ourbook.h"
#include "support/peerbook.h"
#include "support/tablerow.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>

namespace
{

const QString ours = QStringLiteral("ours");
const QString theirs = QStringLiteral("theirs");
const QString secondsFigure = QStringLiteral("seconds");

/// One run: "ours" or "theirs", the path, the number of rows.
void run(const QStringList &arguments)
{
    const QString path = arguments.at(1);
    const SampleRows rows(arguments.at(2).toInt());
    Bench::resetPeak();
    const double idle = Bench::residentKib();
    bool saved = false;
    const double seconds = Bench::secondsOf([&] {
        saved = arguments.at(0) == ours ? writeOurBook(path, rows) : writePeerBook(path, rows);
    });
    Bench::require(saved, QStringLiteral("not saved: ") + path);
    Bench::print({{secondsFigure, seconds},
                  {QStringLiteral("peakMib"), (Bench::peakKib() - idle) / 1024},
                  {QStringLiteral("bytes"), double(QFileInfo(path).size())}});
}

/// Both formats against the same peer, in one turn.
void compare(const Bench::Plan &plan, const QString &folder)
{
    const QString rows = plan.quick ? QStringLiteral("200") : QStringLiteral("31000");
    const QString xlsx = folder + QStringLiteral("/ours.xlsx");
    const QString xls = folder + QStringLiteral("/ours.xls");
    const QString peer = folder + QStringLiteral("/theirs.xlsx");
    const bool hasXls = canWriteXls();
    QVector<QStringList> sides{{ours, xlsx, rows}, {theirs, peer, rows}};
    if (hasXls)
        sides.append({ours, xls, rows});
    const auto runs = Bench::inTurn(plan.pairs, sides);
    requireSameCells(xlsx, peer);

    const auto row = [&](const QString &work, int side, const QString &figure, const char *unit,
                         double goal, int decimals) {
        TableRow{work,
                 Bench::median(runs[side], figure),
                 QStringLiteral("libxlsxwriter"),
                 Bench::median(runs[1], figure),
                 QString::fromLatin1(unit),
                 goal,
                 decimals}
            .print();
    };
    row(QStringLiteral(".xlsx, %1 rows x 15 columns: time").arg(rows), 0, secondsFigure, "s", 0.30,
        3);
    row(QStringLiteral(".xlsx: peak memory"), 0, QStringLiteral("peakMib"), "MiB", 0.50, 1);
    row(QStringLiteral(".xlsx: file size"), 0, QStringLiteral("bytes"), "B", 1.03, 0);
    if (!hasXls) {
        printNotBuilt(QStringLiteral(".xls, the same sheet: time"), 0.10);
        return;
    }
    requireSameCells(xls, peer);
    row(QStringLiteral(".xls, the same sheet: time"), 2, secondsFigure, "s", 0.10, 3);
}

void growth(const Bench::Plan &plan, const QString &folder)
{
    const QVector<int> sizes =
        plan.quick ? QVector<int>{100, 200, 400} : QVector<int>{10000, 100000, 1000000};
    QVector<QStringList> sides;
    for (const int rows : sizes)
        sides.append({ours, folder + QStringLiteral("/%1.xlsx").arg(rows), QString::number(rows)});
    const auto runs = Bench::inTurn(plan.quick ? 1 : 3, sides);
    QVector<double> microseconds;
    for (int size = 0; size < sizes.size(); ++size) {
        requireRows(sides[size].at(1), sizes[size] + 1);
        microseconds.append(Bench::median(runs[size], secondsFigure) * 1e6 / sizes[size]);
    }
    const double smallest = *std::min_element(microseconds.begin(), microseconds.end());
    for (int size = 0; size < sizes.size(); ++size) {
        TableRow{QStringLiteral("growth, .xlsx of %1 rows: time per row").arg(sizes[size]),
                 microseconds[size],
                 QStringLiteral("smallest of the three"),
                 smallest,
                 QStringLiteral("us"),
                 1.15,
                 2}
            .print();
    }
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
    compare(plan, folder.path());
    growth(plan, folder.path());
    return 0;
}
