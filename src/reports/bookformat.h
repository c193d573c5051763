#pragma once

#include "workbook/book.h"

#include <QLatin1String>
#include <QString>
#include <QStringList>

/// A file format of the reports' workbooks.
struct BookFormat {
    QLatin1String extension;             ///< including the dot
    QLatin1String mimeType;              ///< used on systems without a MIME database
    int rows;                            ///< the limit of a sheet, including the heading row
    libxl::IBookT<wchar_t> *(*create)(); ///< returns null or a book that the caller releases
};

extern const BookFormat xlsxFormat;
extern const BookFormat xlsFormat;

/// Returns the names of both formats, "xlsx" and "xls": the extensions without the dot.
QStringList bookFormatNames();
/// Returns the format called `name`, or null. The comparison is case-insensitive.
const BookFormat *bookFormatNamed(const QString &name);

/// Returns xlsFormat if `path` ends with ".xls", otherwise xlsxFormat. The comparison is
/// case-insensitive.
const BookFormat &bookFormatOf(const QString &path);
