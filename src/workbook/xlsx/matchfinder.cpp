#include "workbook/xlsx/matchfinder.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace workbook
{

namespace
{

constexpr std::size_t windowBytes = 0x8000; // the longest distance in a deflate stream
constexpr std::size_t hashedBytes = 4;
constexpr unsigned hashBits = 13; // `latest` takes 32 KiB, the size of a typical L1 cache
constexpr unsigned phraseHashBits = 12;
constexpr std::size_t plenty = 32; // bytes; a match of at least this length ends the search

constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C15U; // mixes all bits into the highest ones

template <class Number>
Number load(const char *from)
{
    Number number = 0;
    std::memcpy(&number, from, sizeof number);
    return number;
}

std::size_t hashOf(const char *place)
{
    return (load<std::uint32_t>(place) * multiplier) >> (64U - hashBits);
}

std::size_t hashOfPhrase(const char *begin, const char *end)
{
    std::uint64_t hash = 0;
    for (; end - begin >= 8; begin += 8)
        hash = ((hash ^ load<std::uint64_t>(begin)) * multiplier) ^ (hash >> 29U);
    for (; begin != end; ++begin)
        hash = (hash ^ static_cast<unsigned char>(*begin)) * multiplier;
    return hash >> (64U - phraseHashBits);
}

/**
 * Estimates how many bits a copy saves: a byte costs about four bits, a copy about ten plus the
 * bits of its distance.
 */
int gainOf(std::size_t length, std::size_t distance)
{
    constexpr int copyBits = 10;
    const int distanceBits = 31 - __builtin_clz(static_cast<unsigned>(distance));
    return 4 * static_cast<int>(length) - copyBits - distanceBits;
}

} // namespace

MatchFinder::MatchFinder()
    : latest(std::size_t{1} << hashBits)
    , previous(windowBytes)
    , phrases(std::size_t{1} << phraseHashBits)
{
}

std::string_view MatchFinder::append(std::string_view text)
{
    if (window.size() > windowBytes) {
        const std::size_t tooOld = window.size() - windowBytes;
        window.erase(0, tooOld);
        windowBegin += static_cast<Position>(tooOld);
    }
    window += text;
    return std::string_view(window).substr(window.size() - text.size());
}

void MatchFinder::restart()
{
    windowBegin += static_cast<Position>(window.size());
    window.clear();
}

/**
 * Returns the distance from `earlier` to `place`. Returns 0 if `earlier` is outside the window or
 * too far back for deflate: the tables may contain outdated positions.
 */
std::size_t MatchFinder::distanceTo(Position earlier, const char *place) const
{
    const Position distance = positionOf(place) - earlier;
    const auto reach =
        std::min<std::size_t>(windowBytes, static_cast<std::size_t>(place - window.data()));
    return distance <= reach ? distance : 0;
}

/** Remembers `place`. Returns the position of the previous place with the same hash. */
MatchFinder::Position MatchFinder::remember(const char *place)
{
    const Position position = positionOf(place);
    const Position before = std::exchange(latest[hashOf(place)], position);
    previous[position % windowBytes] = before;
    return before;
}

void MatchFinder::remember(const char *begin, const char *end)
{
    const char *const windowEnd = window.data() + window.size();
    for (; begin < end && windowEnd - begin >= static_cast<std::ptrdiff_t>(hashedBytes); ++begin)
        remember(begin);
}

Match MatchFinder::find(const char *place, const char *end, unsigned candidates)
{
    Match best;
    if (end - place < static_cast<std::ptrdiff_t>(hashedBytes))
        return best;
    std::size_t nearer = 0;
    for (Position candidate = remember(place); candidates > 0; --candidates) {
        const std::size_t distance = distanceTo(candidate, place);
        if (distance <= nearer)
            break;
        nearer = distance;
        const std::size_t length = MatchFinder::length(place, end, distance);
        const int gain = gainOf(length, distance);
        if (gain > best.gain)
            best = {length, distance, gain};
        if (length >= plenty)
            break;
        candidate = previous[candidate % windowBytes];
    }
    return best;
}

std::size_t MatchFinder::findPhrase(const char *begin, const char *end)
{
    const Position before = std::exchange(phrases[hashOfPhrase(begin, end)], positionOf(begin));
    return distanceTo(before, begin);
}

std::size_t MatchFinder::length(const char *place, const char *end, std::size_t distance)
{
    // Compare eight bytes at a time, because most matches have more than eight bytes.
    const char *at = place;
    while (end - at >= 8 && load<std::uint64_t>(at) == load<std::uint64_t>(at - distance))
        at += 8;
    while (at != end && *at == *(at - distance))
        ++at;
    return static_cast<std::size_t>(at - place);
}

} // namespace workbook
