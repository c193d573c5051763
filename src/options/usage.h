#pragma once

#include <QString>
#include <QStringList>

class QCommandLineParser;

/// What is wrong with a command line. Texts have no full stop.
struct UsageError {
    QString text;
    QString meant = {}; ///< a suggestion; empty if nothing is similar
};

/// What to print for a wrong command line: short, so that the error is not lost above a page of
/// help.
namespace Usage
{

/// Returns three lines: the error; the suggestion or, without one, `synopsis`; and `help`, which
/// says where to read more.
QStringList threeLines(const UsageError &error, const QString &synopsis, const QString &help);

/// Returns the parser's error; call it after a parse that failed.
UsageError parserError(const QCommandLineParser &parser);

/// Returns the word of `known` that begins with `word`, or differs from it in the fewest letters;
/// an empty text if all of them differ in more than about a third of the letters.
QString nearest(const QString &word, const QStringList &known);

} // namespace Usage
