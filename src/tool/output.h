#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

class QDateTime;
class QJsonObject;

/**
 * What the commands print: UTF-8 whatever the locale, colours on a terminal alone.
 *
 * Names, settings and the server's messages come out of databases that others write: a control
 * character in what is printed, a line feed too, becomes U+FFFD, so that it neither begins a line
 * of its own nor moves a terminal. Write errors are ignored.
 */
namespace Output
{

enum class Colour { Good, Bad, Notable }; // green, red, yellow

/// One line on standard output, to which the line end is added.
void print(const QString &line);
/// The same for several.
void print(const QStringList &lines);
void print(const QJsonObject &object);
/// "autoreport: " and the line, on standard error.
void error(const QString &line);
/// A text of our own with its line feeds, such as the help, on standard error.
void errorHelp(const QString &text);
/// A question on standard error, without a line end: it is seen even if the output goes into a
/// file.
void ask(const QString &question);

/// `text` in that colour when it is printed, where standard output is a terminal and NO_COLOR is
/// not set.
QString coloured(const QString &text, Colour colour);

bool isTerminal(int descriptor);

/// Rows in columns two blanks apart, the first row being the headings; no blanks at line ends.
/// `colours` holds one entry per row below the headings: that of its last column.
QStringList table(const QVector<QStringList> &rows, const QVector<Colour> &colours);

/// `text`, or as much of it as fits into `width` characters with an ellipsis.
QString shortened(const QString &text, int width);

/// "2026-11-21 07:00", or "-" for an invalid moment; with seconds and time zone for `exact`.
QString moment(const QDateTime &moment);
QString exactMoment(const QDateTime &moment);

} // namespace Output
