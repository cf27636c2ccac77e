// examples/Common/Utf8.h: UTF-8 as it comes from outside, and the wide text of the library.
//
// The library's coder takes what it gets: it tests nothing, and knows no sequence of four bytes. So
// text from outside is tested here first, and the characters beyond U+FFFF, which are two elements
// of a key, are coded here.
#pragma once

#include <Ostra/String/UString.h>

#include <string>
#include <string_view>

namespace common
{
// True for well-formed UTF-8: the shortest forms only, no surrogates, nothing beyond U+10FFFF.
bool IsUtf8(std::string_view text);

// The wide text of UTF-8 that is well-formed and holds no zero.
void ToWide(std::string_view text, CT_UString* wide);

// The UTF-8 of wide text up to its zero, or of a count of units that holds none; a lone surrogate
// becomes U+FFFD.
std::string ToUtf8(const unsigned short* text);
std::string ToUtf8(const unsigned short* text, unsigned count);
} // namespace common
