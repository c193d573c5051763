#pragma once

#include "workbook/book.h"

#include <QLatin1String>
#include <QString>
#include <QStringList>

/// A file format of the reports' workbooks. The two objects live as long as the program.
struct BookFormat {
    QLatin1String extension;             ///< with its full stop
    QLatin1String mimeType;              ///< where the system has no MIME database
    int rows;                            ///< of a sheet, its headings included
    libxl::IBookT<wchar_t> *(*create)(); ///< returns a new book, or null; the caller releases it
};

extern const BookFormat xlsxFormat;
extern const BookFormat xlsFormat;

/// Returns the names of both, their extensions without the full stop: "xlsx", "xls".
QStringList bookFormatNames();
/// Returns the format of that name, in any case of letters; null for any other text.
const BookFormat *bookFormatNamed(const QString &name);

/// Returns the format that the extension of `path` names, in any case of letters; xlsx for any
/// other extension.
const BookFormat &bookFormatOf(const QString &path);
