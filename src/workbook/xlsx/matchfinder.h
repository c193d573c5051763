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
    int gain = 0; // about how many bits it saves
};

/**
 * Keeps the last 32 KiB of a text, and finds earlier occurrences of the bytes at a place.
 *
 * Places are pointers into what append() returned, valid until the next append(). find()
 * finds only earlier places that were passed to find() or remember().
 */
class MatchFinder
{
public:
    MatchFinder();

    /** Appends `text` to the window. Returns its copy in the window. */
    std::string_view append(std::string_view text);

    /** Starts another text. find() and findPhrase() no longer find places in the previous text. */
    void restart();

    /**
     * Returns the match at `place` that saves most bits, and remembers `place`. Examines at most
     * `candidates` earlier places, the nearest first, whose next four bytes have the same hash. The
     * match ends before or at `end`. Does nothing if fewer than four bytes remain before `end`.
     */
    Match find(const char *place, const char *end, unsigned candidates);

    /** Makes the places [begin, end) available to find(). */
    void remember(const char *begin, const char *end);

    /**
     * Remembers the phrase [begin, end). Returns how many bytes before `begin` the last phrase with
     * the same hash begins; 0 if there is none within reach.
     */
    std::size_t findPhrase(const char *begin, const char *end);

    /**
     * Returns how many successive bytes from `place` on, but before `end`, equal the bytes that are
     * `distance` before them.
     */
    static std::size_t length(const char *place, const char *end, std::size_t distance);

private:
    // An offset in all text so far, modulo 4 GiB: only differences between offsets are used.
    using Position = std::uint32_t;

    [[nodiscard]] Position positionOf(const char *place) const
    {
        return windowBegin + static_cast<Position>(place - window.data());
    }
    [[nodiscard]] std::size_t distanceTo(Position earlier, const char *place) const;
    Position remember(const char *place);

    std::string window;
    Position windowBegin = 0;
    std::vector<Position> latest;   // by the hash of four bytes
    std::vector<Position> previous; // by position: the previous one with the same hash
    std::vector<Position> phrases;  // by the hash of a phrase
};

} // namespace workbook
