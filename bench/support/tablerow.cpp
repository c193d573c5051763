#include "support/tablerow.h"

#include <QStringList>
#include <QTextStream>

namespace
{

void printFields(const QStringList &fields)
{
    QTextStream(stdout) << fields.join(QLatin1Char('\t')) << '\n';
}

} // namespace

void TableRow::print() const
{
    const auto figure = [this](double value) {
        return QString::number(value, 'f', decimals) + QLatin1Char(' ') + unit;
    };
    const double ratio = ours / theirs;
    printFields({work, figure(ours), QStringLiteral("%1: %2").arg(against, figure(theirs)),
                 QString::number(ratio, 'f', 2), QString::number(goal, 'f', 2),
                 ratio <= goal ? QStringLiteral("met") : QStringLiteral("missed")});
}

void printNotBuilt(const QString &work, double goal)
{
    const auto dash = QStringLiteral("-");
    printFields({work, QStringLiteral("not built"), dash, dash, QString::number(goal, 'f', 2),
                 QStringLiteral("missed")});
}
