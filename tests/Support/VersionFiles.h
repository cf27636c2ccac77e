// tests/Support/VersionFiles.h: version records, and executable files that hold one, made of their parts.
#pragma once

#include <string>
#include <utility>
#include <vector>

// Numbers as a file stores them.
inline std::string Word(unsigned number)
{
    return {static_cast<char>(number), static_cast<char>(number >> 8)};
}
inline std::string Long(unsigned number)
{
    return Word(number) + Word(number >> 16);
}

inline std::string Padded(std::string bytes, std::size_t unit = 4)
{
    bytes.resize((bytes.size() + unit - 1) / unit * unit);
    return bytes;
}

// The two layouts of a record: for 32 bits, in UTF-16, and for 16 bits, in bytes.
enum class Layout
{
    WIDE,
    NARROW
};

inline std::string KeyText(Layout layout, const std::string& text)
{
    if (layout == Layout::NARROW)
        return text + '\0';
    std::string out;
    for (const char c : text)
        out += Word(static_cast<unsigned char>(c));
    return out + Word(0);
}

// A node: its value as bytes, the length that it tells of it, and its children behind one another.
struct Node
{
    std::string key;
    std::string value;
    unsigned told = 0;
    std::vector<std::string> children;
    unsigned type = 0;
};

inline std::string Bytes(Layout layout, const Node& node)
{
    const std::string head = layout == Layout::WIDE ? Word(node.type) : "";
    std::string body = Padded(std::string(4, '\0') + head + KeyText(layout, node.key)) + node.value;
    for (const std::string& child : node.children)
        body = Padded(body) + child;
    return body.replace(0, 4, Word(static_cast<unsigned>(body.size())) + Word(node.told));
}

using Pairs = std::vector<std::pair<std::string, std::string>>;

inline std::string TableEntry(Layout layout, const std::string& key, const std::string& value)
{
    if (value.empty())
        return Bytes(layout, {key, "", 0, {}, 1});
    const std::string text = KeyText(layout, value);
    const std::size_t told = layout == Layout::WIDE ? text.size() / 2 : text.size();
    return Bytes(layout, {key, text, static_cast<unsigned>(told), {}, 1});
}

inline std::string StringTable(Layout layout, const std::string& key, const Pairs& pairs)
{
    Node table = {key, "", 0, {}, 1};
    for (const auto& [name, value] : pairs)
        table.children.push_back(TableEntry(layout, name, value));
    return Bytes(layout, table);
}

inline std::string StringFileInfo(Layout layout, const std::vector<std::string>& tables)
{
    return Bytes(layout, {"StringFileInfo", "", 0, tables, 1});
}

inline std::string VarFileInfo(Layout layout)
{
    const std::string value = Word(0x409) + Word(1252);
    return Bytes(layout, {"VarFileInfo", "", 0, {Bytes(layout, {"Translation", value, 4, {}})}, 1});
}

// 13 numbers; the build is the lower word of the file's version.
inline std::string FixedPart(unsigned build = 0x00030004)
{
    std::string out = Long(0xFEEF04BD) + Long(0x00010000) + Long(0x00010002) + Long(build);
    for (unsigned n = 5; n <= 13; ++n)
        out += Long(n);
    return out;
}

inline std::string Record(Layout layout, const std::vector<std::string>& children,
                          const std::string& fixed = FixedPart())
{
    return Bytes(layout,
                 {"VS_VERSION_INFO", fixed, static_cast<unsigned>(fixed.size()), children, 0});
}

inline std::string SimpleRecord(Layout layout, const Pairs& pairs)
{
    return Record(layout, {StringFileInfo(layout, {StringTable(layout, "040904E4", pairs)}),
                           VarFileInfo(layout)});
}

// ---- Files ----------------------------------------------------------------------------------

constexpr std::size_t PE_HEADER = 0x40;
constexpr std::size_t PE_RESOURCES = 0x200;
constexpr std::size_t PE_RECORD = PE_RESOURCES + 0x58;

// A file for 32 or 64 bits with nothing but a record.
inline std::string PortableFile(const std::string& record, bool wide = false)
{
    const std::string directory = Long(0) + Long(0) + Long(0) + Word(0) + Word(1);
    std::string resources = directory + Long(16) + Long(0x80000018) + directory + Long(1) +
                            Long(0x80000030) + directory + Long(0x409) + Long(0x48) + Long(0x1058) +
                            Long(static_cast<unsigned>(record.size())) + Long(0) + Long(0) + record;
    const auto size = static_cast<unsigned>(resources.size());
    resources = Padded(resources, 0x200);
    const auto stored = static_cast<unsigned>(resources.size());
    std::string file = "MZ" + std::string(58, '\0') + Long(PE_HEADER) + std::string("PE\0\0", 4);
    const unsigned optional = wide ? 0xF0 : 0xE0;
    file += Word(wide ? 0x8664 : 0x14C) + Word(1) + Long(0) + Long(0) + Long(0) + Word(optional) +
            Word(wide ? 0x2022 : 0x2102);
    std::string head = Word(wide ? 0x20B : 0x10B) + Word(0) + Long(0) + Long(stored) + Long(0) +
                       Long(0) + Long(0x1000);
    head += wide ? Long(0x10000000) + Long(0) : Long(0x1000) + Long(0x10000000);
    head += Long(0x1000) + Long(0x200) + Word(4) + Word(0) + Word(0) + Word(0) + Word(4) + Word(0) +
            Long(0) + Long(0x1000 + (stored + 0xFFF) / 0x1000 * 0x1000) + Long(0x200) + Long(0) +
            Word(2) + Word(0);
    head += std::string(wide ? 36 : 20, '\0') + Long(16);
    head += std::string(16, '\0') + Long(0x1000) + Long(size);
    head.resize(optional);
    file += head + std::string(".rsrc\0\0\0", 8) + Long(size) + Long(0x1000) + Long(stored) +
            Long(PE_RESOURCES) + std::string(12, '\0') + Long(0x40000040);
    file.resize(PE_RESOURCES);
    return file + resources;
}

// A file for 16 bits with nothing but a record.
inline std::string SegmentedFile(const std::string& record)
{
    constexpr unsigned TABLE = 0x40;
    constexpr unsigned SHIFT = 4;
    const std::string stored = Padded(record, 1 << SHIFT);
    const auto length = static_cast<unsigned>(stored.size() >> SHIFT);
    std::string file = "MZ" + std::string(58, '\0') + Long(0x40) + "NE";
    file.resize(0x40 + 0x24);
    file += Word(TABLE) + Word(TABLE + 0x20);
    file.resize(0x40 + TABLE);
    file += Word(SHIFT) + Word(0x8010) + Word(1) + Long(0) + Word(0x100 >> SHIFT) + Word(length) +
            Word(0x1030) + Word(0x8001) + Long(0) + Word(0);
    file.resize(0x100);
    return file + stored;
}
