#pragma once

#include <QString>
#include <QStringList>

class QCommandLineParser;

/// What is wrong with a command line. Texts have no full stop.
struct UsageError {
    QString text;
    QString meant = {}; ///< what was perhaps meant; empty if nothing comes near
};

/// The answer to a wrong command line: short, so that the error is not lost above a page of help.
namespace Usage
{

/// Returns three lines: the error; what was perhaps meant, or else `synopsis`; and where `help` is.
QStringList threeLines(const UsageError &error, const QString &synopsis, const QString &help);

/// Returns the parser's error; call it after a parse that failed.
UsageError parserError(const QCommandLineParser &parser);

/// Returns the word of `known` that differs from `word` in the fewest letters, or continues it; an
/// empty text if more than a third of the letters differ.
QString nearest(const QString &word, const QStringList &known);

} // namespace Usage
