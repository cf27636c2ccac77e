// tests/Models/StandardUTF8Model.h: a plain account of well-formed UTF-8 and UTF-16, and of what
// stands for the rest.
#pragma once

#include <algorithm>
#include <string>

namespace standard
{
// The table of well-formed byte sequences: a row a line, the ranges of its bytes.
struct Row
{
    unsigned length;
    unsigned char ranges[4][2];
};
inline constexpr Row ROWS[] = {
    {1, {{0x00, 0x7F}}},
    {2, {{0xC2, 0xDF}, {0x80, 0xBF}}},
    {3, {{0xE0, 0xE0}, {0xA0, 0xBF}, {0x80, 0xBF}}},
    {3, {{0xE1, 0xEC}, {0x80, 0xBF}, {0x80, 0xBF}}},
    {3, {{0xED, 0xED}, {0x80, 0x9F}, {0x80, 0xBF}}},
    {3, {{0xEE, 0xEF}, {0x80, 0xBF}, {0x80, 0xBF}}},
    {4, {{0xF0, 0xF0}, {0x90, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}}},
    {4, {{0xF1, 0xF3}, {0x80, 0xBF}, {0x80, 0xBF}, {0x80, 0xBF}}},
    {4, {{0xF4, 0xF4}, {0x80, 0x8F}, {0x80, 0xBF}, {0x80, 0xBF}}},
};

inline void PutUnits(char32_t value, std::u16string& wide)
{
    if (value < 0x10000) {
        wide += static_cast<char16_t>(value);
        return;
    }
    wide += static_cast<char16_t>(0xD800 + (value - 0x10000) / 0x400);
    wide += static_cast<char16_t>(0xDC00 + (value - 0x10000) % 0x400);
}

inline std::string Bytes(char32_t value)
{
    if (value < 0x80)
        return {static_cast<char>(value)};
    const unsigned length = value < 0x800 ? 2 : value < 0x10000 ? 3 : 4;
    std::string bytes;
    for (unsigned n = 1; n < length; ++n, value /= 64)
        bytes.insert(bytes.begin(), static_cast<char>(0x80 + value % 64));
    const unsigned marks[] = {0xC0, 0xE0, 0xF0};
    bytes.insert(bytes.begin(), static_cast<char>(marks[length - 2] + value));
    return bytes;
}

// Bytes at that place that are the start of a well-formed sequence, and whether they are all of it.
struct Match
{
    std::size_t length;
    bool whole;
};
inline Match Longest(const std::string& bytes, std::size_t at)
{
    std::size_t longest = 0;
    for (const Row& row : ROWS) {
        std::size_t n = 0;
        while (n < row.length && at + n < bytes.size()) {
            const auto byte = static_cast<unsigned char>(bytes[at + n]);
            if (byte < row.ranges[n][0] || byte > row.ranges[n][1])
                break;
            ++n;
        }
        if (n == row.length)
            return {n, true};
        longest = std::max(longest, n);
    }
    return {longest, false};
}

struct Result
{
    std::u16string wide;
    std::size_t ill = std::u16string::npos; // the first offset
};
inline Result Model(const std::string& bytes)
{
    Result result;
    for (std::size_t at = 0; at < bytes.size();) {
        const Match match = Longest(bytes, at);
        if (!match.whole) {
            result.wide += u'\uFFFD';
            result.ill = std::min(result.ill, at);
            at += std::max<std::size_t>(match.length, 1);
            continue;
        }
        const unsigned masks[] = {0x7F, 0x1F, 0x0F, 0x07};
        char32_t value = static_cast<unsigned char>(bytes[at]) & masks[match.length - 1];
        for (std::size_t n = 1; n < match.length; ++n)
            value = value * 64 + (static_cast<unsigned char>(bytes[at + n]) & 0x3F);
        PutUnits(value, result.wide);
        at += match.length;
    }
    return result;
}

struct ByteResult
{
    std::string bytes;
    std::size_t ill = std::string::npos;
};
inline ByteResult Model(const std::u16string& wide)
{
    ByteResult result;
    for (std::size_t at = 0; at < wide.size(); ++at) {
        const bool high = wide[at] >= 0xD800 && wide[at] < 0xDC00;
        const bool low = wide[at] >= 0xDC00 && wide[at] < 0xE000;
        if (high && at + 1 < wide.size() && wide[at + 1] >= 0xDC00 && wide[at + 1] < 0xE000) {
            result.bytes += Bytes(0x10000 + (wide[at] - 0xD800) * 0x400 + wide[at + 1] - 0xDC00);
            ++at;
        } else {
            result.bytes += Bytes(high || low ? 0xFFFD : wide[at]);
            if (high || low)
                result.ill = std::min(result.ill, at);
        }
    }
    return result;
}
} // namespace standard
