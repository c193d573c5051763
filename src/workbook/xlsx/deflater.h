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

/** A piece [begin, end) of a text. The complete piece has probably occurred before. */
struct Phrase {
    std::size_t begin;
    std::size_t end;
};

/**
 * Compresses texts into deflate streams (RFC 1951).
 *
 * A general compressor spends most of its time searching for repetitions. The writer of a sheet
 * knows nearly all repetitions in the XML: a cell has the same tag as the cell above. The writer
 * passes such tags as phrases, and this class looks up each phrase as a whole. Between two phrases
 * there is little more than a row number and a value, and the row number also occurs in the
 * previous cell. For a daily report, this class takes about a quarter of zlib's time and makes a
 * smaller file.
 */
class Deflater
{
public:
    /**
     * Compresses `text`. `phrases` are pieces of `text`, in ascending order and without overlaps.
     * If there are no phrases, searches thoroughly for repetitions in `text`.
     */
    void append(std::string_view text, const std::vector<Phrase> &phrases);

    /** Completes the stream. The next append() starts another stream. */
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
