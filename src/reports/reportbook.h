#pragma once

#include "workbook/book.h"

#include <QString>

#include <memory>

struct ReleaseBook {
    void operator()(libxl::IBookT<wchar_t> *book) const { book->release(); }
};

/// A book that is released with its last use, whether or not it was saved.
using ReportBook = std::unique_ptr<libxl::IBookT<wchar_t>, ReleaseBook>;

/// Unlocks a new book and gives it the set-up of all reports. A locale that the engine refuses is
/// logged in the name of `report`, the class of the report, and the book is used all the same.
void setUpReportBook(libxl::IBookT<wchar_t> &book, const char *report);

/// Where a report puts its file: in the temporary directory. One that does not exist stays in the
/// path, so that saving fails.
QString reportPath(const QString &fileName);

/// Saves the book and releases it; a failure is then logged in the name of `report`.
bool saveReportBook(ReportBook book, const QString &path, const char *report);
