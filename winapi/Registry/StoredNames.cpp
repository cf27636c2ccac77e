// winapi/Registry/StoredNames.cpp
#include "Registry/StoredNames.h"

#include "Text/UpperCase.h"

namespace winapi
{
namespace
{
bool IsHigh(unsigned unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

bool IsLow(unsigned unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

void Append(std::string& text, unsigned code)
{
    const auto tail = [&](unsigned shift) {
        text += static_cast<char>(0x80 | (code >> shift & 0x3F));
    };
    if (code < 0x80)
        text += static_cast<char>(code);
    else if (code < 0x800) {
        text += static_cast<char>(0xC0 | code >> 6);
        tail(0);
    } else if (code < 0x10000) {
        text += static_cast<char>(0xE0 | code >> 12);
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | code >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

// The bytes of a character as its first byte tells.
unsigned LengthOf(unsigned char first)
{
    return first < 0xC0 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}
} // namespace

std::string StoredName(WideView name)
{
    std::string text;
    for (std::size_t i = 0; i < name.size(); ++i) {
        unsigned code = name[i];
        if (IsHigh(code) && i + 1 < name.size() && IsLow(name[i + 1]))
            code = 0x10000 + ((code - 0xD800) << 10) + (name[++i] - 0xDC00U);
        Append(text, code);
    }
    return text;
}

WideText NameOf(std::string_view stored)
{
    WideText name;
    for (std::size_t i = 0; i < stored.size();) {
        const auto first = static_cast<unsigned char>(stored[i]);
        const unsigned length = LengthOf(first);
        unsigned code = length == 1 ? first : first & (0x7FU >> length);
        for (unsigned k = 1; k < length && i + k < stored.size(); ++k)
            code = code << 6 | (static_cast<unsigned char>(stored[i + k]) & 0x3FU);
        i += length;
        if (code >= 0x10000) {
            name += static_cast<WCHAR>(0xD800 + ((code - 0x10000) >> 10 & 0x3FF));
            code = 0xDC00 + (code & 0x3FF);
        }
        name += static_cast<WCHAR>(code);
    }
    return name;
}

std::string FoldOf(WideView name)
{
    std::string text;
    for (const WCHAR unit : name)
        Append(text, LowerCase(unit));
    return text;
}
} // namespace winapi
