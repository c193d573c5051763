#include "support/checkoutput.h"

#include "support/measure.h"

#include <QProcess>

namespace
{

void check(const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(QStringLiteral(AUTOREPORT_CHECK_OUTPUT), arguments);
    Bench::require(process.waitForFinished(300000) &&
                       process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
                   QStringLiteral("wrong output: ") + arguments.join(QLatin1Char(' ')));
}

} // namespace

void requireSameCells(const QString &path, const QString &otherPath)
{
    check({QStringLiteral("same"), path, otherPath});
}

void requireRows(const QString &path, int rows)
{
    check({QStringLiteral("rows"), path, QString::number(rows)});
}

void requireFleet(const QString &folder, const QString &prefix, int customers, int people, int days)
{
    check({QStringLiteral("fleet"), folder, prefix, QString::number(customers),
           QString::number(people), QString::number(days)});
}
