#pragma once

#include "workbook/book.h"

/**
 * What one workbook shows: reads the data of a run and writes it to one sheet, row by row.
 *
 * Lives for one workbook, in the thread of its report and on the report's connection. Failed
 * queries are logged. Call the functions in the order of their declaration.
 */
class ReportContent
{
public:
    ReportContent() = default;
    virtual ~ReportContent() = default;
    ReportContent(const ReportContent &) = delete;
    ReportContent &operator=(const ReportContent &) = delete;

    /// Loads the people. Returns false if the query failed, which ends the run. The run survives
    /// other failed queries unless the connection is lost.
    virtual bool loadPeople() = 0;
    /// Returns the number of rows below the headings; 0 if there are no people.
    virtual int rowCount() const = 0;
    /// Loads everything else that is read before the first row. Returns false if a query failed, so
    /// that values may be missing.
    virtual bool loadValues() = 0;

    /// Adds the sheet and writes its headings. `book` must exist until endSheet() has returned.
    /// Returns false if the book refuses the sheet.
    virtual bool beginSheet(libxl::IBookT<wchar_t> &book) = 0;
    /// Writes the next row. Returns false if a query failed or the run is stopped, so that values
    /// may be missing.
    virtual bool writeNextRow() = 0;
    virtual void endSheet() = 0;
};
