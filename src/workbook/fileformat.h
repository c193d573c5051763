#pragma once

#include <cstddef>

namespace workbook
{

class ByteSink;
struct BookData;

/**
 * What the interface has to know of a file format; another format is another of these. The model
 * that a writer gets holds a sheet at least, and its cells are sorted. A writer answers through
 * the sink: what the format cannot hold is ByteSink::fail.
 */
struct FileFormat {
    int rows;
    int columns;
    void (*write)(const BookData &book, ByteSink &sink);
};

extern const FileFormat xlsxFormat;

} // namespace workbook
