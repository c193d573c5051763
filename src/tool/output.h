#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

class QDateTime;
class QJsonObject;

/**
 * The commands' output: UTF-8 in every locale, with colours only on a terminal.
 *
 * Names, settings and server messages come from databases that other programs write to. Control
 * characters in them, including line feeds and marks of the writing direction, are printed as
 * U+FFFD: they could control the terminal, fake a line of output, or change the order in which a
 * line is displayed. In JSON they are escaped instead. flush() reports the first
 * error in writing to standard output. Errors in writing to standard error are ignored: there is
 * nowhere else to report them.
 */
namespace Output
{

enum class Colour { Good, Bad, Notable, Plain }; // green, red, yellow, none

/// Prints `line` and a line feed to standard output.
void print(const QString &line);
/// Prints several lines.
void print(const QStringList &lines);
void print(const QJsonObject &object);
/// Writes buffered output. Returns false if any output so far could not be written; the first call
/// that returns false prints why.
bool flush();
/// Prints "autoreport: " and the line to standard error.
void error(const QString &line);
/// Prints several lines to standard error, without the prefix.
void errorLines(const QStringList &lines);
/// Prints the question to standard error, where it is seen even if standard output is a file, and
/// reads the answer from standard input. Returns whether the answer begins with "y" or "Y"; the end
/// of input means no.
bool agrees(const QString &question);

/// Returns `text` marked for printing in that colour, or unchanged if standard output is not a
/// terminal, if NO_COLOR is not empty, or if the colour is Plain.
QString coloured(const QString &text, Colour colour);

bool isTerminal(int descriptor);

/// Returns the width of the terminal in columns; 0 if standard output is not a terminal.
int terminalWidth();

/// Returns the lines of a table whose columns are two blanks apart. The first row has the headings.
/// `colours` has, for each further row, the colour of its last column.
QStringList table(const QVector<QStringList> &rows, const QVector<Colour> &colours);

/// Returns "2026-11-21 07:00", or "-" for an invalid moment.
QString moment(const QDateTime &moment);
/// Returns "2026-11-21 07:00:00 CET", or "never" for an invalid moment.
QString exactMoment(const QDateTime &moment);

} // namespace Output
