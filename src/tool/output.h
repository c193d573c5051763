#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

class QDateTime;

/// What the commands print: UTF-8 whatever the locale, colours on a terminal alone.
namespace Output
{

enum class Colour { Good, Bad, Notable };

/// `text` with a line end, on standard output.
void print(const QString &text);
/// "autoreport: " and `text`, on standard error.
void error(const QString &text);

/// `text` in that colour, where standard output is a terminal and NO_COLOR is not set.
QString coloured(const QString &text, Colour colour);

bool isTerminal(int descriptor);

/// Rows in columns two blanks apart, the first row being the headings; no blanks at line ends.
/// `colours` holds one entry per row below the headings: that of its last column.
QString table(const QVector<QStringList> &rows, const QVector<Colour> &colours);

/// `text`, or as much of it as fits with an ellipsis.
QString shortened(const QString &text, int width);

/// "2026-11-21 07:00", or "-" for an invalid moment; with seconds and time zone for `exact`.
QString moment(const QDateTime &moment);
QString exactMoment(const QDateTime &moment);

} // namespace Output
