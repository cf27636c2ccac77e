// examples/recode/Encoding.cpp
#include "Encoding.h"

#include <windows.h>

#include <algorithm>
#include <charconv>

namespace recode
{
namespace
{
constexpr unsigned UTF16_PAGE = 1200;
constexpr unsigned UTF16_BE_PAGE = 1201;
constexpr unsigned GB18030_PAGE = 54936; // up to four bytes a character

struct Named
{
    const char* name;
    Encoding encoding;
};

const Named NAMES[] = {
    {"utf-8", {Encoding::UTF8}},
    {"utf8", {Encoding::UTF8}},
    {"utf-8-mark", {Encoding::UTF8, 0, true}},
    {"utf-16", {Encoding::UTF16, 0, true}},
    {"utf16", {Encoding::UTF16, 0, true}},
    {"utf-16le", {Encoding::UTF16, 0, true}},
    {"utf-16be", {Encoding::UTF16_BE, 0, true}},
    {"utf-7", {Encoding::UTF7}},
    {"utf7", {Encoding::UTF7}},
};

// Pages whose characters are more than bytes or pairs of them refuse the flag, or are known.
bool IsOfBytesAndPairs(unsigned page)
{
    char16_t unit[2];
    return IsValidCodePage(page) && page != GB18030_PAGE &&
           MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, "A", 1, reinterpret_cast<LPWSTR>(unit),
                               2) == 1;
}

bool FromPage(unsigned page, Encoding* encoding)
{
    if (page == CP_UTF8)
        *encoding = {Encoding::UTF8};
    else if (page == CP_UTF7)
        *encoding = {Encoding::UTF7};
    else if (page == UTF16_PAGE)
        *encoding = {Encoding::UTF16, 0, true};
    else if (page == UTF16_BE_PAGE)
        *encoding = {Encoding::UTF16_BE, 0, true};
    else if (IsOfBytesAndPairs(page))
        *encoding = {Encoding::PAGE, page};
    else
        return false;
    return true;
}
} // namespace

bool Encoding::Parse(std::string_view name)
{
    std::string lower(name);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    if (lower == "ansi") {
        *this = Ansi();
        return true;
    }
    for (const Named& known : NAMES) {
        if (lower == known.name) {
            *this = known.encoding;
            return true;
        }
    }
    unsigned number = 0;
    const char* digits = lower.data() + (lower.starts_with("cp") ? 2 : 0);
    const char* end = lower.data() + lower.size();
    const auto [last, error] = std::from_chars(digits, end, number);
    return error == std::errc() && last == end && FromPage(number, this);
}

Encoding Encoding::Ansi()
{
    Encoding ansi;
    FromPage(GetACP(), &ansi);
    return ansi;
}

std::string Encoding::Name() const
{
    switch (kind) {
    case UTF8:
        return "UTF-8";
    case UTF16:
        return "UTF-16";
    case UTF16_BE:
        return "UTF-16, high byte first";
    case UTF7:
        return "UTF-7";
    default:
        return "code page " + std::to_string(page);
    }
}
} // namespace recode
