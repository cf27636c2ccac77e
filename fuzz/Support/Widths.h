// fuzz/Support/Widths.h: the two widths of text, with the same names for both.
#pragma once

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>

#include "Support/Input.h"

#include <string>

struct Narrow
{
    using Text = std::string;
    using Unit = char;
    using String = CT_CString;

    static const char* Get(const Text& text) { return text.data(); }
    static String Of(const Text& text)
    {
        return String(text.data(), static_cast<unsigned>(text.size()));
    }
    static Text From(const String& string) { return {string.qccz_Get(), string.vn_GetLength()}; }
    static Text Take(Input& input, unsigned most) { return input.Text(most); }
};

struct Wide
{
    using Text = std::u16string;
    using Unit = unsigned short;
    using String = CT_UString;

    static const Unit* Get(const Text& text) { return reinterpret_cast<const Unit*>(text.data()); }
    static String Of(const Text& text)
    {
        return String(Get(text), static_cast<unsigned>(text.size()));
    }
    static Text From(const String& string)
    {
        return {reinterpret_cast<const char16_t*>(string.qcuz_Get()), string.vn_GetLength()};
    }
    // Of bytes, so that texts are alike; now and then of whole units.
    static Text Take(Input& input, unsigned most)
    {
        const unsigned length = input.Byte();
        if (length >= 0xE0)
            return input.WideText(length % most);
        const std::string bytes = Input::WithoutZeros(input.Bytes(length % (most + 1)));
        Text text;
        for (const char c : bytes)
            text += static_cast<char16_t>(static_cast<unsigned char>(c));
        return text;
    }
};
