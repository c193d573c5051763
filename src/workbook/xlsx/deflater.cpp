#include "workbook/xlsx/deflater.h"

#include <algorithm>

namespace workbook
{

namespace
{

constexpr unsigned candidatesBetweenPhrases =
    1; // the nearest earlier place, usually in the previous cell
constexpr unsigned candidatesInText = 16;

/**
 * If a match is at least this far away, a search also tries the match that begins one byte later,
 * which may save more bits.
 */
constexpr std::size_t farDistance = 256;

} // namespace

void Deflater::append(std::string_view text, const std::vector<Phrase> &phrases)
{
    candidates = phrases.empty() ? candidatesInText : candidatesBetweenPhrases;
    const std::string_view kept = finder.append(text);
    const char *const begin = kept.data();
    const char *const end = begin + kept.size();
    next = begin;
    for (const Phrase &known : phrases) {
        search(begin + known.begin);
        phrase(begin + known.begin, begin + known.end, end);
    }
    search(end);
}

void Deflater::finish()
{
    block.write(bits, true);
    bits.align();
    finder.restart();
}

/** Compresses the text up to `end`. Searches for matches that do not extend beyond `end`. */
void Deflater::search(const char *end)
{
    Match match;
    while (next < end) {
        if (match.length == 0)
            match = finder.find(next, end, candidates);
        Match later;
        if (match.distance >= farDistance)
            later = finder.find(next + 1, end, candidates);
        if (match.length == 0 || later.gain > match.gain) {
            byte();
        } else {
            if (candidates > candidatesBetweenPhrases)
                finder.remember(next + 2, next + match.length);
            copy(match.length, match.distance);
            later = {};
        }
        match = later;
    }
}

/**
 * If the phrase [begin, end) occurred before, compresses it as a copy. The copy may extend beyond
 * the phrase and include following phrases.
 */
void Deflater::phrase(const char *begin, const char *end, const char *textEnd)
{
    const std::size_t distance = finder.findPhrase(begin, end);
    if (distance > 0 && next < end)
        copy(MatchFinder::length(next, textEnd, distance), distance);
}

void Deflater::byte()
{
    block.byte(*next++);
    if (block.full())
        block.write(bits, false);
}

void Deflater::copy(std::size_t length, std::size_t distance)
{
    while (length >= DeflateBlock::minCopy) {
        const std::size_t step = std::min(length, DeflateBlock::maxCopy);
        block.copy(step, distance);
        next += step;
        length -= step;
        if (block.full())
            block.write(bits, false);
    }
}

} // namespace workbook
