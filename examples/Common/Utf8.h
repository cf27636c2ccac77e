// examples/Common/Utf8.h: texts of the standard library, which are UTF-8, and of this one.
#pragma once

#include <Ostra/String/CString.h>
#include <Ostra/String/UString.h>
#include <System/String/StandardUTF8.h>

#include <string>
#include <string_view>

namespace common
{
inline bool IsUtf8(std::string_view text)
{
    constexpr unsigned none = 0xFFFFFFFF;
    return CT_StandardUTF8::sn_FindIllFormed(text.data(), static_cast<unsigned>(text.size())) ==
           none;
}

// What is ill-formed becomes U+FFFD, in both directions.
inline void ToWide(std::string_view text, CT_UString* wide)
{
    CT_StandardUTF8::sb_ToWide(wide, text.data(), static_cast<unsigned>(text.size()),
                               CT_StandardUTF8::e_Replace);
}

// Up to the terminator, without a count.
inline std::string ToUtf8(const unsigned short* text, unsigned count = 0xFFFFFFFF)
{
    CT_CString bytes;
    CT_StandardUTF8::sb_FromWide(&bytes, text, count, CT_StandardUTF8::e_Replace);
    return {bytes.qccz_Get(), bytes.vn_GetLength()};
}
} // namespace common
