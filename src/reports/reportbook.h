#pragma once

#include "workbook/book.h"

#include <QString>

#include <memory>

struct ReleaseBook {
    void operator()(libxl::IBookT<wchar_t> *book) const { book->release(); }
};

/// Owns a book and releases it, whether or not it was saved.
using ReportBook = std::unique_ptr<libxl::IBookT<wchar_t>, ReleaseBook>;

/// Passes the licence to a new book and applies the settings that all reports share. If the engine
/// rejects the locale, logs a warning; the book stays usable. `report` is the report's class, for
/// the log.
void setUpReportBook(libxl::IBookT<wchar_t> &book, const char *report);

/// Returns the path of a report's file in the temporary directory. If that directory does not
/// exist, the path still names it, so that saving fails.
QString reportPath(const QString &fileName);

/// Saves the book and releases it. If it cannot be saved, returns false and logs the path and the
/// reason. `report` is the report's class, for the log.
bool saveReportBook(ReportBook book, const QString &path, const char *report);
