#pragma once

#include <QString>
#include <QStringList>

class QCommandLineParser;

/// An error in a command line. The texts end without a full stop.
struct UsageError {
    QString text;
    QString meant = {}; ///< a suggestion; empty if nothing is similar
};

/// Describes errors in a command line in a few lines, so that a page of help does not hide the
/// error.
namespace Usage
{

/// Returns three lines: the error; the suggestion or, if there is none, `synopsis`; and `help`,
/// which says where to find help.
QStringList threeLines(const UsageError &error, const QString &synopsis, const QString &help);

/// Returns the parser's error. Call it only after a failed parse.
UsageError parserError(const QCommandLineParser &parser);

/// Returns the word of `known` that begins with `word` or differs from `word` in the fewest
/// letters. Returns an empty text if all words differ in more than about a third of the letters.
QString nearest(const QString &word, const QStringList &known);

} // namespace Usage
