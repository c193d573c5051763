#pragma once

#include <cstring>
#include <string>
#include <string_view>

namespace workbook
{

/**
 * Bytes on their way into a file, collected in very many small pieces: what is appended is written
 * into room that was reserved before, and clear() keeps the room.
 */
class Buffer
{
public:
    /** Where the next bytes go, room for `bytes` of them; grow() then takes what was written. */
    char *room(std::size_t bytes)
    {
        if (storage.size() - length < bytes)
            storage.resize(2 * (length + bytes));
        return storage.data() + length;
    }

    void grow(std::size_t bytes) { length += bytes; }

    void append(std::string_view bytes)
    {
        std::memcpy(room(bytes.size()), bytes.data(), bytes.size());
        length += bytes.size();
    }

    void clear() { length = 0; }

    char *data() { return storage.data(); }
    [[nodiscard]] std::size_t size() const { return length; }
    [[nodiscard]] std::string_view view() const { return {storage.data(), length}; }

private:
    std::string storage; // its size is what is reserved
    std::size_t length = 0;
};

} // namespace workbook
