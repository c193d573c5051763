#pragma once

#include "workbook/book.h"

#include <QString>

#include <memory>

struct ReleaseBook {
    void operator()(libxl::IBookT<wchar_t> *book) const { book->release(); }
};

/// A book that is released with its last use, whether or not it was saved.
using ReportBook = std::unique_ptr<libxl::IBookT<wchar_t>, ReleaseBook>;

/// Unlocks a new book and sets it up as all reports do. A locale that the engine refuses is logged
/// with `report`, the report's class; the book stays usable.
void setUpReportBook(libxl::IBookT<wchar_t> &book, const char *report);

/// Returns the path of a report's file in the temporary directory. If that does not exist it stays
/// in the path, so that saving fails.
QString reportPath(const QString &fileName);

/// Saves the book and releases it; a failure is logged with `report`, the report's class, and so is
/// its reason, with the path.
bool saveReportBook(ReportBook book, const QString &path, const char *report);
