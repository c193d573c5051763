#include "tool/output.h"

#include "common/printable.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>

#include <sys/ioctl.h>

#include <unistd.h>

namespace
{

// coloured() marks colours with code points that are never characters. Before a text is printed,
// harmless() replaces its control characters, which may come from a database, and turns the marks
// into escape sequences. A mark that comes from a database can only change a colour.
constexpr ushort colourMark = 0xFDD0;
constexpr const char *colourCodes[] = {"\033[32m", "\033[31m", "\033[33m", "\033[0m"};
constexpr ushort endMark = colourMark + 3;

/// NO_COLOR turns colours off if it is set and not empty.
bool areColoursUsed()
{
    static const bool used =
        Output::isTerminal(STDOUT_FILENO) && qEnvironmentVariableIsEmpty("NO_COLOR");
    return used;
}

QString harmless(const QString &text)
{
    QString safe;
    for (const QChar c : text) {
        if (areColoursUsed() && c >= QChar(colourMark) && c <= QChar(endMark))
            safe += QLatin1String(colourCodes[c.unicode() - colourMark]);
        else
            safe += isControl(c) ? QChar(QChar::ReplacementCharacter) : c;
    }
    return safe;
}

/// The errno of the first failed write to standard output; 0 if none failed.
int firstErrno = 0;

void noteError(bool isWritten)
{
    if (!isWritten && firstErrno == 0)
        firstErrno = errno;
}

/// Does not use QTextStream, which replaces non-ASCII letters with question marks in the C locale.
void write(const QString &text, std::FILE *stream)
{
    const bool isWritten = std::fputs(text.toUtf8().constData(), stream) >= 0;
    if (stream == stdout)
        noteError(isWritten);
}

} // namespace

void Output::print(const QString &line)
{
    write(harmless(line) + QLatin1Char('\n'), stdout);
}

void Output::print(const QStringList &lines)
{
    for (const QString &line : lines)
        print(line);
}

void Output::print(const QJsonObject &object)
{
    QString text;
    for (const QChar c : QString::fromUtf8(QJsonDocument(object).toJson()).trimmed()) {
        const bool isEscaped =
            isControl(c) && c != QLatin1Char('\n'); // line feeds are the document's own
        text += isEscaped ? QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'))
                          : QString(c);
    }
    print(text.split(QLatin1Char('\n')));
}

bool Output::flush()
{
    noteError(std::fflush(stdout) == 0);
    if (firstErrno == 0)
        return true;
    static bool isTold = false;
    if (!std::exchange(isTold, true))
        error(
            QStringLiteral("cannot write to standard output: %1").arg(qt_error_string(firstErrno)));
    return false;
}

void Output::error(const QString &line)
{
    write(QStringLiteral("autoreport: %1\n").arg(harmless(line)), stderr);
}

void Output::errorLines(const QStringList &lines)
{
    for (const QString &line : lines)
        write(harmless(line) + QLatin1Char('\n'), stderr);
}

bool Output::agrees(const QString &question)
{
    write(harmless(question), stderr);
    char answer[8] = {};
    return std::fgets(answer, sizeof answer, stdin) && (answer[0] == 'y' || answer[0] == 'Y');
}

bool Output::isTerminal(int descriptor)
{
    return ::isatty(descriptor) == 1;
}

int Output::terminalWidth()
{
    struct winsize size = {};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

QString Output::coloured(const QString &text, Colour colour)
{
    if (!areColoursUsed() || text.isEmpty() || colour == Colour::Plain)
        return text;
    return QChar(static_cast<ushort>(colourMark + static_cast<int>(colour))) + text +
           QChar(endMark);
}

QStringList Output::table(const QVector<QStringList> &rows, const QVector<Colour> &colours)
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
        // The last column is not padded, so that lines have no trailing blanks and colour marks do
        // not disturb the alignment.
        for (int col = 0; col + 1 < row.size(); ++col)
            line += row.at(col).leftJustified(widths.at(col) + 2);
        const int entry = lines.size() - 1;
        line += entry < 0 ? row.last() : coloured(row.last(), colours.at(entry));
        lines.append(line);
    }
    return lines;
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
