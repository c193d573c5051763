#pragma once

#include <string_view>

namespace workbook
{

class ByteSink;
struct BookData;

/**
 * Everything the engine needs to know about a file format. To add a format, define another constant
 * of this type, and a function like xlCreateBookW() that creates its books. The book passed to
 * `write` has at least one sheet, and the cells of its sheets are sorted. If the format cannot
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
