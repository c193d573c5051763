#pragma once

#include "workbook/xlsx/bitwriter.h"
#include "workbook/xlsx/deflateblock.h"
#include "workbook/xlsx/matchfinder.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace workbook
{

/** A piece [begin, end) of a text that has probably occurred before as a whole. */
struct Phrase {
    std::size_t begin;
    std::size_t end;
};

/**
 * Compresses texts into streams of deflate (RFC 1951).
 *
 * A general compressor spends most of its time searching for repetitions. In the XML of a sheet,
 * the writer knows nearly all repetitions: a cell has the same tag as the cell above. This class
 * looks up such phrases as a whole. Between two phrases there are only a value and a row number,
 * and the row number also occurs in the previous cell. This method takes a quarter of the time of
 * zlib and makes smaller files.
 */
class Deflater
{
public:
    /**
     * Compresses `text`. `phrases` are pieces of it, in ascending order and without overlaps.
     * Without phrases, searches the whole text thoroughly for repetitions.
     */
    void append(std::string_view text, const std::vector<Phrase> &phrases);

    /** Completes the stream; the next append() starts another one. */
    void finish();

    /** Returns the complete bytes of the stream; clear() removes them. */
    [[nodiscard]] std::string_view packed() const { return bits.view(); }
    void clear() { bits.clear(); }

private:
    void search(const char *end);
    void phrase(const char *begin, const char *end, const char *textEnd);
    void byte();
    void copy(std::size_t length, std::size_t distance);

    const char *next = nullptr; // the first byte of the text that is not compressed yet
    unsigned candidates = 1;    // how many earlier places a search examines
    MatchFinder finder;
    DeflateBlock block;
    BitWriter bits;
};

} // namespace workbook
