// examples/recode/Encoding.h: how a text lies in bytes.
#pragma once

#include <string>
#include <string_view>

namespace recode
{
struct Encoding
{
    enum Kind
    {
        UTF8,
        UTF16,    // low byte first
        UTF16_BE, // high byte first
        UTF7,
        PAGE
    };

    // The encoding of that name: utf-8, utf-8-mark, utf-16, utf-16be, utf-7, ansi, or the number of
    // a code page. False if there is none, or if this program can't cut its text into characters.
    bool Parse(std::string_view name);
    static Encoding Ansi();

    // As messages have it.
    std::string Name() const;
    bool IsUtf16() const { return kind == UTF16 || kind == UTF16_BE; }

    Kind kind = UTF8;
    unsigned page = 0;
    // Whether a target of it begins with a mark of the encoding.
    bool marked = false;
};

constexpr char16_t MARK = 0xFEFF;
constexpr char16_t REPLACEMENT = 0xFFFD;
} // namespace recode
