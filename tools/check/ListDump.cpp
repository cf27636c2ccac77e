// tools/check/ListDump.cpp
#include "ListDump.h"

#include "ListLayout.h"

#include <algorithm>
#include <cstdio>

namespace
{
class Dumper
{
public:
    Dumper(const unsigned char* data, std::size_t count) : bytes(data), length(count) {}

    std::string Run()
    {
        if (length >= LIST_HEAD) {
            const ListShape shape(bytes);
            if (shape.ElementIsKnown() && shape.HandleIsKnown())
                width = std::max(width, 3 * (shape.element + std::max(shape.handle, shape.offset)));
            Head();
            Stream();
        }
        while (at < length)
            Row(std::min<std::size_t>(16, length - at), "");
        return text;
    }

private:
    // A row of the next bytes; the position and the note stand behind them.
    void Row(std::size_t count, const std::string& note)
    {
        std::string row;
        char part[32];
        for (std::size_t i = 0; i < count; ++i) {
            std::snprintf(part, sizeof part, i ? " %02X" : "%02X", bytes[at + i]);
            row += part;
        }
        row.resize(std::max(row.size() + 1, width), ' ');
        std::snprintf(part, sizeof part, "# %3llu", static_cast<unsigned long long>(at));
        text += row + part + (note.empty() ? "" : "  " + note) + "\n";
        at += count;
    }

    void Head()
    {
        Row(4, "magic " + Number(4));
        Row(4, "end " + Number(4));
        Row(4, "code page " + Number(4));
        Row(4, "empty string handle: " + (Value(4) == LIST_NO_HANDLE ? "none" : Number(4)));
        for (char letter = 'a'; letter <= 'z'; ++letter)
            Row(4,
                std::string("jump offset of ") + letter + ": " + (Value(4) ? Number(4) : "none"));
        Row(4, "entries " + Number(4));
        Row(1, "network byte order " + Number(1));
        Row(1, "element size " + Number(1));
        Row(1, "handle size " + Number(1));
        Row(1, std::string("flags: ") + (Value(1) & LIST_EMPTY_SUPPORT ? "" : "no ") +
                   "empty string, offsets of " + (Value(1) & LIST_LONG_OFFSETS ? "4" : "2") +
                   " bytes");
        Row(1, "format mark " + Number(1));
        Row(3, "reserved");
    }

    void Stream()
    {
        const ListShape shape(bytes);
        if (!shape.ElementIsKnown() || !shape.HandleIsKnown())
            return;
        while (at + shape.element <= length) {
            const std::uint32_t element = Value(shape.element);
            const std::size_t size = shape.ItemSize(element);
            if (at + size > length)
                return;
            Row(size, Item(shape, element));
        }
    }

    std::string Item(const ListShape& shape, std::uint32_t element) const
    {
        const unsigned char* rest = bytes + at + shape.element;
        char name[32];
        switch (element) {
        case INNER_END:
            return "inner end, handle " + std::to_string(ListNumber(rest, shape.handle));
        case LEAF_END:
            return "leaf end, handle " + std::to_string(ListNumber(rest, shape.handle));
        case ALTERNATIVE:
            return "alternative at " + std::to_string(at + ListNumber(rest, shape.offset));
        case STREAM_END:
            return "list end";
        }
        if (element > ' ' && element < 0x7F)
            return std::string(1, static_cast<char>(element));
        std::snprintf(name, sizeof name, "character %02X", element);
        return name;
    }

    std::uint32_t Value(std::size_t size) const { return ListNumber(bytes + at, size); }
    std::string Number(std::size_t size) const { return std::to_string(Value(size)); }

    const unsigned char* bytes;
    std::size_t length;
    std::size_t at = 0;
    std::size_t width = 12; // of the bytes of a row
    std::string text;
};
} // namespace

std::string DumpList(const unsigned char* bytes, std::size_t length)
{
    return Dumper(bytes, length).Run();
}

std::string DumpList(const std::string& bytes)
{
    return DumpList(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}
