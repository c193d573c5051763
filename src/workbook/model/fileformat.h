#pragma once

#include <string_view>

namespace workbook
{

class ByteSink;
struct BookData;

/**
 * All that the engine knows about a file format; to add a format, define another constant. The book
 * passed to `write` has at least one sheet, and its cells are sorted. If the format cannot
 * represent the book, `write` calls ByteSink::fail.
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
