#pragma once

#include <QByteArrayList>
#include <QJsonObject>
#include <QStringList>
#include <QVector>

// Workbook files as programs see them that are not ours. Whatever one of them complains about is
// logged as critical, and the answer is empty.

/// tests/support/read-workbook says how the objects look; it makes checks of our own, too.
QVector<QJsonObject> readWorkbooks(const QStringList &paths);

/// The first sheet of one file alone.
QJsonObject readSheet(const QString &path);

/// What read-workbook prints of a file with the given option.
QByteArray readRaw(const QString &option, const QString &path);

enum class Program { Gnumeric, LibreOffice };

/// Lets the program open the file and save it under another suffix; gives the new file's path.
QString savedBy(Program program, const QString &path, const QString &suffix);

/// The lines of the first sheet as that program shows them, cells separated by commas.
QByteArrayList linesBy(Program program, const QString &path);

/// "A1" for 0, 0.
QString cellName(int row, int column);
