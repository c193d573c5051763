#include "tool/output.h"

#include <QDateTime>

#include <algorithm>
#include <cstdio>

#include <unistd.h>

// No text stream: in the C locale it would turn letters into question marks.
void Output::print(const QString &text)
{
    std::fputs((text + QLatin1Char('\n')).toUtf8().constData(), stdout);
}

void Output::error(const QString &text)
{
    std::fputs(QStringLiteral("autoreport: %1\n").arg(text).toUtf8().constData(), stderr);
}

bool Output::isTerminal(int descriptor)
{
    return ::isatty(descriptor) == 1;
}

QString Output::coloured(const QString &text, Colour colour)
{
    // Asked once: neither changes while the program runs. The rule of NO_COLOR: set and not empty.
    static const bool used = isTerminal(STDOUT_FILENO) && qEnvironmentVariableIsEmpty("NO_COLOR");
    if (!used || text.isEmpty())
        return text;
    const char *code = colour == Colour::Good ? "32" : colour == Colour::Bad ? "31" : "33";
    return QStringLiteral("\033[%1m%2\033[0m").arg(QLatin1String(code), text);
}

QString Output::table(const QVector<QStringList> &rows, const QVector<Colour> &colours)
{
    QVector<int> widths;
    for (const QStringList &row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (int col = 0; col < row.size(); ++col)
            widths[col] = std::max(widths.at(col), row.at(col).size());
    }
    QStringList lines;
    for (const QStringList &row : rows) {
        QString line;
        // The last column is not padded: no line ends with blanks, and colours have no width.
        for (int col = 0; col + 1 < row.size(); ++col)
            line += row.at(col).leftJustified(widths.at(col) + 2);
        const int entry = lines.size() - 1;
        line += entry < 0 ? row.last() : coloured(row.last(), colours.at(entry));
        lines.append(line);
    }
    return lines.join(QLatin1Char('\n'));
}

QString Output::shortened(const QString &text, int width)
{
    return text.size() <= width ? text : text.left(width - 1) + QChar(0x2026);
}

QString Output::moment(const QDateTime &moment)
{
    return moment.isValid() ? moment.toString(QStringLiteral("yyyy-MM-dd HH:mm"))
                            : QStringLiteral("-");
}

QString Output::exactMoment(const QDateTime &moment)
{
    return moment.isValid() ? moment.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss t"))
                            : QStringLiteral("never");
}
