#pragma once

#include "workbook/book.h"

#include <QLatin1String>
#include <QString>

/// A file format of the reports' workbooks. The two objects live as long as the program.
struct BookFormat {
    QLatin1String extension;             ///< with its full stop
    QLatin1String mimeType;              ///< where the system has no MIME database
    int rows;                            ///< of a sheet, its headings included
    libxl::IBookT<wchar_t> *(*create)(); ///< returns a new book, or null; the caller releases it
};

extern const BookFormat xlsxFormat;
extern const BookFormat xlsFormat;

/// Returns the format that the extension of `path` names, in any case of letters; xlsx for any
/// other extension.
const BookFormat &bookFormatOf(const QString &path);
