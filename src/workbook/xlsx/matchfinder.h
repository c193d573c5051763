#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace workbook
{

/** Text that was there before, `distance` bytes ago. */
struct Match {
    std::size_t length = 0;
    std::size_t distance = 0;
    int gain = 0; // about how many bits it saves; none is worth nothing
};

/**
 * Keeps the last 32 KiB of a text and finds earlier places in it that go on alike.
 *
 * Places are pointers into what append() returned, valid until the next append. A place is found
 * only if it was looked up or remembered before.
 */
class MatchFinder
{
public:
    MatchFinder();

    /** The same text, where there is room before it for what went before. */
    std::string_view append(std::string_view text);

    /** What follows is another text, for which nothing of this one may be used. */
    void restart();

    /**
     * The match at `place` that gains most among the last `candidates` with the same four bytes. It
     * ends at `end` at the latest.
     */
    Match find(const char *place, const char *end, unsigned candidates);

    /** Makes the places from `begin` on findable for find(). */
    void remember(const char *begin, const char *end);

    /** How far before `begin` the same phrase, [begin, end), was last looked up; 0 for never. */
    std::size_t findPhrase(const char *begin, const char *end);

    /** How far the text from `place` to `end` is the same as `distance` before. */
    static std::size_t length(const char *place, const char *end, std::size_t distance);

private:
    using Position = std::uint32_t; // in the whole text, modulo 4 GiB: only differences count

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
