#include "tool/progress.h"

#include "tool/output.h"

#include <cstdio>

#include <unistd.h>

namespace
{

constexpr qint64 patienceMs = 1000;
constexpr qint64 intervalMs = 100; // between two drawings
constexpr int barWidth = 30;

} // namespace

Progress::Progress(const QString &counted, int ofAll)
    : what(counted)
    , total(ofAll)
    , possible(ofAll > 0 && Output::isTerminal(STDERR_FILENO))
{
    sinceStart.start();
    sinceDrawn.start();
}

Progress::~Progress()
{
    if (shown)
        std::fputs("\r\033[K", stderr); // returns to the start of the line and clears it
}

void Progress::step()
{
    ++done;
    // Short work needs no bar, and drawing one for every item would slow the work down.
    if (!possible || sinceStart.elapsed() < patienceMs)
        return;
    if (shown && sinceDrawn.elapsed() < intervalMs)
        return;
    shown = true;
    sinceDrawn.restart();
    draw();
}

void Progress::draw() const
{
    const int filled = barWidth * done / total;
    const QString bar = QString(filled, QLatin1Char('#')).leftJustified(barWidth, QLatin1Char('.'));
    const QString line = QStringLiteral("\r[%1] %2 of %3 %4")
                             .arg(bar, QString::number(done), QString::number(total), what);
    std::fputs(line.toUtf8().constData(), stderr);
    std::fflush(stderr);
}
