#pragma once

#include "workbook/book.h"

/**
 * Reads the data of one run and writes it to the sheet of its workbook, row by row.
 *
 * Uses the report's connection, in the report's thread. Failed queries are logged. Call the
 * functions in the order of their declaration.
 */
class ReportContent
{
public:
    ReportContent() = default;
    virtual ~ReportContent() = default;
    ReportContent(const ReportContent &) = delete;
    ReportContent &operator=(const ReportContent &) = delete;

    /// Loads the people. Returns false if the query failed; the run then ends. If any other query
    /// fails, the run goes on unless the connection is lost.
    virtual bool loadPeople() = 0;
    /// Returns the number of rows below the headings; 0 if there are no people.
    virtual int rowCount() const = 0;
    /// Loads everything else that is read before the first row. Returns false if values may be
    /// missing because a query failed. May return true nevertheless if writeNextRow() detects a
    /// lost connection.
    virtual bool loadValues() = 0;

    /// Adds the sheet and writes its headings. `book` must exist until endSheet() has returned.
    /// Returns false if the book rejects the sheet.
    virtual bool beginSheet(libxl::IBookT<wchar_t> &book) = 0;
    /// Writes the next row. Returns false if values may be missing because a query failed or the
    /// run is stopped.
    virtual bool writeNextRow() = 0;
    virtual void endSheet() = 0;
};
