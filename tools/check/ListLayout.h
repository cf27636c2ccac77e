// tools/check/ListLayout.h: where things lie in a compressed list. Internal.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr std::size_t LIST_HEAD = 132;
constexpr std::size_t LIST_END = 4, LIST_CODE_PAGE = 8, LIST_EMPTY = 12, LIST_JUMPS = 16;
constexpr std::size_t LIST_ENTRIES = 120, LIST_ORDER = 124, LIST_ELEMENT = 125, LIST_HANDLE = 126;
constexpr std::size_t LIST_FLAGS = 127, LIST_FORMAT = 128, LIST_RESERVED = 129;
constexpr std::uint32_t LIST_MAGIC = 19970101, LIST_NO_HANDLE = 0xFFFFFFFF;
constexpr unsigned LIST_LETTERS = 26;
constexpr unsigned LIST_EMPTY_SUPPORT = 1, LIST_LONG_OFFSETS = 2;

enum ListElement : std::uint32_t
{
    INNER_END = 10,
    ALTERNATIVE = 13,
    STREAM_END = 25,
    LEAF_END = 26,
};

// A number of that many bytes, the lowest first.
inline std::uint32_t ListNumber(const unsigned char* bytes, std::size_t size)
{
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < size; ++i)
        number |= static_cast<std::uint32_t>(bytes[i]) << 8 * i;
    return number;
}

// The head's statements about the stream, and how items are read by them.
struct ListShape
{
    explicit ListShape(const unsigned char* head)
        : element(head[LIST_ELEMENT]),
          handle(head[LIST_HANDLE]),
          offset(head[LIST_FLAGS] & LIST_LONG_OFFSETS ? 4 : 2)
    {}

    bool ElementIsKnown() const { return element == 1 || element == 2 || element == 4; }
    bool HandleIsKnown() const { return handle == 0 || handle == 1 || handle == 2 || handle == 4; }
    // The bytes of an item that begins with that element.
    std::size_t ItemSize(std::uint32_t first) const
    {
        if (first == INNER_END || first == LEAF_END)
            return element + handle;
        return first == ALTERNATIVE ? element + offset : element;
    }

    std::size_t element, handle, offset;
};
