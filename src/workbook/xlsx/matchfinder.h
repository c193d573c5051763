#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace workbook
{

/** A text that repeats the text `distance` bytes before it. */
struct Match {
    std::size_t length = 0; // 0 for no match
    std::size_t distance = 0;
    int gain = 0; // the estimated number of bits that the match saves
};

/**
 * Finds earlier occurrences of the bytes at a place in a text. Keeps a window of the text: the text
 * that was appended last and the 32 KiB before it.
 *
 * Places are pointers into the text that append() returned. They are valid until the next append().
 * find() finds only earlier places that were passed to find() or remember().
 */
class MatchFinder
{
public:
    MatchFinder();

    /** Appends `text` to the window. Returns its copy in the window. */
    std::string_view append(std::string_view text);

    /** Starts another text. Places in the previous text are no longer found. */
    void restart();

    /**
     * Returns the match at `place` that saves the most bits, and remembers `place`. Examines at
     * most `candidates` earlier places whose first four bytes have the same hash, the nearest place
     * first. The match does not extend beyond `end`. If fewer than four bytes remain before `end`,
     * returns no match and does not remember `place`.
     */
    Match find(const char *place, const char *end, unsigned candidates);

    /** Makes the places [begin, end) available to find(). */
    void remember(const char *begin, const char *end);

    /**
     * Remembers the phrase [begin, end). Returns the distance to the previous phrase with the same
     * hash, or 0 if there is no such phrase within the last 32 KiB of the text.
     */
    std::size_t findPhrase(const char *begin, const char *end);

    /**
     * Returns the number of successive bytes, from `place` on and before `end`, that equal the
     * bytes `distance` before them.
     */
    static std::size_t length(const char *place, const char *end, std::size_t distance);

private:
    // An offset in the concatenation of all texts so far, modulo 4 GiB. Used to compute distances
    // and, modulo 32 KiB, as an index into `previous`.
    using Position = std::uint32_t;

    [[nodiscard]] Position positionOf(const char *place) const
    {
        return windowBegin + static_cast<Position>(place - window.data());
    }
    [[nodiscard]] std::size_t distanceTo(Position earlier, const char *place) const;
    Position remember(const char *place);

    std::string window;
    Position windowBegin = 0;
    std::vector<Position> latest;   // by the hash of four bytes: the latest position
    std::vector<Position> previous; // by position % 32 KiB: the previous one with the same hash
    std::vector<Position> phrases;  // by the hash of a phrase: the latest position
};

} // namespace workbook
