#include "support/tablerow.h"

#include <QTextStream>

#include <algorithm>

void TableRow::print() const
{
    const auto figure = [this](double value) {
        return QString::number(value, 'f', decimals) + QLatin1Char(' ') + unit;
    };
    const double ratio = ours / theirs;
    const QStringList fields{work,
                             figure(ours),
                             QStringLiteral("%1: %2").arg(against, figure(theirs)),
                             QString::number(ratio, 'f', 2),
                             QString::number(goal, 'f', 2),
                             ratio <= goal ? QStringLiteral("met") : QStringLiteral("missed")};
    QTextStream(stdout) << fields.join(QLatin1Char('\t')) << '\n';
}

void printGrowth(const QStringList &works, const QVector<double> &microseconds)
{
    const double smallest = *std::min_element(microseconds.cbegin(), microseconds.cend());
    for (int i = 0; i < works.size(); ++i)
        TableRow{works[i], microseconds[i],      QStringLiteral("smallest of the three"),
                 smallest, QStringLiteral("us"), 1.15,
                 2}
            .print();
}
