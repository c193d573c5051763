#pragma once

#include <string_view>

namespace workbook
{

class ByteSink;
struct BookData;

/**
 * What the interface has to know of a file format; another format is another of these. The model
 * passed to a writer has at least one sheet, and its cells are sorted. A writer reports what the
 * format cannot hold by ByteSink::fail.
 */
struct FileFormat {
    int rows;
    int columns;
    bool (*acceptsFormula)(std::u16string_view text);
    void (*write)(const BookData &book, ByteSink &sink);
};

extern const FileFormat xlsxFormat;
extern const FileFormat xlsFormat;

} // namespace workbook
