#pragma once

#include "workbook/book.h"

/**
 * What one workbook shows: reads the data of a run and writes it to one sheet, row by row.
 *
 * Lives for one workbook, in the thread of its report and on the report's connection. Failed
 * queries are logged here. The calls come in the order in which they stand.
 */
class ReportContent
{
public:
    ReportContent() = default;
    virtual ~ReportContent() = default;
    ReportContent(const ReportContent &) = delete;
    ReportContent &operator=(const ReportContent &) = delete;

    /// Returns false when the query failed: the one failure that ends a run.
    virtual bool loadPeople() = 0;
    /// Known once the people are loaded; 0 when there are none.
    virtual int rowCount() const = 0;
    /// Loads what else is read before the first row. Returns false when a query failed, so that
    /// values may be missing.
    virtual bool loadValues() = 0;

    /// Adds the sheet and writes its headings. The book lives until
    /// endSheet() has returned. Returns false when the
    /// book refuses the sheet.
    virtual bool beginSheet(libxl::IBookT<wchar_t> &book) = 0;
    /// Writes the next row. Returns false when a query failed, so that values may be missing.
    virtual bool writeNextRow() = 0;
    virtual void endSheet() = 0;
};
