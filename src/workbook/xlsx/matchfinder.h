#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace workbook
{

/** A repetition of the text `distance` bytes back. */
struct Match {
    std::size_t length = 0;
    std::size_t distance = 0;
    int gain = 0; // about how many bits it saves; 0 without a match
};

/**
 * Keeps the last 32 KiB of a text and finds earlier occurrences of what follows a place.
 *
 * Places are pointers into what append() returned, valid until the next append(). An earlier place
 * is found only if it was passed to find() or remember().
 */
class MatchFinder
{
public:
    MatchFinder();

    /** Appends `text` to the window and returns the copy of it there. */
    std::string_view append(std::string_view text);

    /** Starts another text. find() and findPhrase() no longer find anything of the previous one. */
    void restart();

    /**
     * Returns the match at `place` that saves most, among the last `candidates` places with the
     * same four bytes. It does not reach beyond `end`.
     */
    Match find(const char *place, const char *end, unsigned candidates);

    /** Makes the places from `begin` to `end` available to find(). */
    void remember(const char *begin, const char *end);

    /**
     * Returns how far before `begin` the phrase [begin, end) was probably last passed to this
     * function, judging by its hash; 0 if it was not, or is out of reach.
     */
    std::size_t findPhrase(const char *begin, const char *end);

    /**
     * Returns for how many bytes the text from `place` to `end` equals the text `distance` bytes
     * back.
     */
    static std::size_t length(const char *place, const char *end, std::size_t distance);

private:
    // An offset in the whole text, modulo 4 GiB; that suffices, because only differences are used.
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
    std::vector<Position> previous; // by position: the one before with the same hash
    std::vector<Position> phrases;  // by the hash of a phrase
};

} // namespace workbook
