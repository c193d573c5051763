#include "workbook/model/stringtable.h"

#include <cstring>
#include <functional>

namespace workbook
{

namespace
{

constexpr std::size_t firstSlots = 256;

/**
 * Returns whether the texts are equal. Faster than operator==, which compares char16_t texts unit
 * by unit.
 */
bool sameUnits(std::u16string_view a, std::u16string_view b)
{
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0;
}

} // namespace

std::u16string_view StringTable::at(std::uint32_t index) const
{
    const Entry &entry = entries[index];
    return std::u16string_view(characters).substr(entry.begin, entry.length);
}

std::uint32_t StringTable::intern(std::u16string_view text)
{
    if (entries.size() * 2 >= slots.size())
        grow();
    const auto hash = static_cast<std::uint32_t>(std::hash<std::u16string_view>()(text));
    const std::size_t slot = slotOf(text, hash);
    if (slots[slot] != 0)
        return slots[slot] - 1;

    // Append the characters first: if push_back() throws, no entry refers to them.
    const std::size_t begin = characters.size();
    characters += text;
    entries.push_back({begin, static_cast<std::uint32_t>(text.size()), hash});
    slots[slot] = static_cast<std::uint32_t>(entries.size());
    return slots[slot] - 1;
}

/** Returns the slot of `text`, or the free slot where it belongs. */
std::size_t StringTable::slotOf(std::u16string_view text, std::uint32_t hash) const
{
    const std::size_t mask = slots.size() - 1;
    std::size_t slot = hash & mask;
    while (slots[slot] != 0) {
        const std::uint32_t index = slots[slot] - 1;
        if (entries[index].hash == hash && sameUnits(at(index), text))
            break;
        slot = (slot + 1) & mask;
    }
    return slot;
}

void StringTable::grow()
{
    std::vector<std::uint32_t> wider(slots.empty() ? firstSlots : slots.size() * 2);
    const std::size_t mask = wider.size() - 1;
    for (std::size_t index = 0; index < entries.size(); ++index) {
        std::size_t slot = entries[index].hash & mask;
        while (wider[slot] != 0)
            slot = (slot + 1) & mask;
        wider[slot] = static_cast<std::uint32_t>(index + 1);
    }
    slots = std::move(wider);
}

} // namespace workbook
