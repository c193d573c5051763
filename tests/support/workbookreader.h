#pragma once

#include <QtCore>

// Workbook files as other people's programs see them. If such a program complains, that is logged
// as critical, and the result is empty.

/// tests/support/read-workbook says what its options are and how the objects look; it makes checks
/// of our own, too.
QVector<QJsonObject> readWorkbooks(const QStringList &paths, const QStringList &options = {});

/// Returns the first sheet of a file.
QJsonObject readSheet(const QString &path);

/// Returns what the sheet says of a cell: a text, a number, a formula's text, or null.
QJsonValue cellValue(const QJsonObject &sheet, const QString &reference, const char *key = "value");

/// Returns what read-workbook prints about a file with the given option.
QByteArray readRaw(const QString &option, const QString &path);

enum class Program { Gnumeric, LibreOffice };

/// Lets the program open the file and save it with another suffix. Returns the new file's path.
QString savedBy(Program program, const QString &path, const QString &suffix);

/// Returns the lines of the first sheet as that program shows them, cells separated by commas.
QByteArrayList linesBy(Program program, const QString &path);

/// "A1" for 0, 0.
QString cellName(int row, int column);
