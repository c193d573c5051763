#include "support/measure.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace
{

constexpr int measuredPairs = 5;
constexpr int childTimeoutMs = 300000;

double statusKib(const char *field, const QString &process = QStringLiteral("self"))
{
    QFile status(QStringLiteral("/proc/%1/status").arg(process));
    Bench::require(status.open(QIODevice::ReadOnly), QStringLiteral("no ") + status.fileName());
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(field))
            return line.mid(static_cast<int>(qstrlen(field)) + 1)
                .simplified()
                .split(' ')[0]
                .toDouble();
    }
    Bench::require(false, QStringLiteral("no such field in ") + status.fileName());
    return 0;
}

void endOnWarning(QtMsgType type, const QMessageLogContext & /*context*/, const QString &text)
{
    if (type == QtDebugMsg || type == QtInfoMsg)
        return;
    std::fprintf(stderr, "%s\n", qUtf8Printable(text));
    std::_Exit(EXIT_FAILURE);
}

} // namespace

Bench::Plan::Plan(const QStringList &arguments)
    : quick(arguments.contains(QStringLiteral("--quick")))
    , pairs(quick ? 1 : measuredPairs)
{
    const int place = arguments.indexOf(QStringLiteral("run"));
    if (place >= 0)
        run = arguments.mid(place + 1);
}

Bench::Figures Bench::child(const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(),
                  QStringList{QStringLiteral("run")} + arguments);
    require(process.waitForFinished(childTimeoutMs) &&
                process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
            QStringLiteral("failed: ") + arguments.join(QLatin1Char(' ')));
    Figures figures;
    const QStringList lines =
        QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QStringList words = line.split(QLatin1Char(' '));
        if (words.size() == 2)
            figures.insert(words[0], words[1].toDouble());
    }
    require(!figures.isEmpty(), QStringLiteral("no figures: ") + arguments.join(QLatin1Char(' ')));
    return figures;
}

void Bench::print(const Figures &figures)
{
    QTextStream out(stdout);
    for (auto figure = figures.cbegin(); figure != figures.cend(); ++figure)
        out << figure.key() << ' ' << QString::number(figure.value(), 'f', 6) << '\n';
}

QVector<QVector<Bench::Figures>> Bench::inTurn(int rounds, const QVector<QStringList> &sides)
{
    QVector<QVector<Figures>> runs(sides.size());
    for (int round = 0; round < rounds; ++round) {
        for (int side = 0; side < sides.size(); ++side)
            runs[side].append(child(sides[side]));
    }
    return runs;
}

double Bench::median(const QVector<Figures> &runs, const QString &figure)
{
    QVector<double> values;
    for (const Figures &run : runs) {
        require(run.contains(figure), QStringLiteral("no figure ") + figure);
        values.append(run.value(figure));
    }
    std::sort(values.begin(), values.end());
    const int middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

double Bench::secondsOf(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

double Bench::residentKib()
{
    return statusKib("VmRSS");
}

double Bench::peakKib()
{
    return statusKib("VmHWM");
}

double Bench::peakKib(qint64 processId)
{
    return statusKib("VmHWM", QString::number(processId));
}

void Bench::resetPeak()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    require(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write("5") == 1,
            QStringLiteral("cannot reset the peak of memory"));
}

void Bench::require(bool held, const QString &complaint)
{
    if (held)
        return;
    std::fprintf(stderr, "benchmark: %s\n", qUtf8Printable(complaint));
    std::exit(EXIT_FAILURE);
}

void Bench::failOnWarnings()
{
    qInstallMessageHandler(endOnWarning);
}
