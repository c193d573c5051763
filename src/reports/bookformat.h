#pragma once

#include "workbook/book.h"

#include <QLatin1String>
#include <QString>
#include <QStringList>

/// A file format of the reports' workbooks.
struct BookFormat {
    QLatin1String extension;             ///< with its dot
    QLatin1String mimeType;              ///< for systems without a MIME database
    int rows;                            ///< the most rows of a sheet, including the heading row
    libxl::IBookT<wchar_t> *(*create)(); ///< returns a new book, or null; the caller releases it
};

extern const BookFormat xlsxFormat;
extern const BookFormat xlsFormat;

/// Returns the names of both formats, "xlsx" and "xls": the extensions without the dot.
QStringList bookFormatNames();
/// Returns the format called `name`, or null. The comparison is case-insensitive.
const BookFormat *bookFormatNamed(const QString &name);

/// Returns the format for the extension of `path`, compared case-insensitively. Any extension but
/// ".xls" means xlsx.
const BookFormat &bookFormatOf(const QString &path);
