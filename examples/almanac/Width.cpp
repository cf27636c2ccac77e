// examples/almanac/Width.cpp
#include "Width.h"

#include <Common/Utf8.h>

#include <Ostra/Unicode/CharProperties.h>

namespace almanac
{
namespace
{
constexpr char RIGHT_TO_LEFT_ISOLATE[] = "\xE2\x81\xA7";
constexpr char END_OF_ISOLATE[] = "\xE2\x81\xA9";

// Marks of directions that are younger than the character tables.
bool IsIsolate(unsigned short unit)
{
    return unit >= 0x2066 && unit <= 0x2069;
}

bool IsHidden(unsigned short unit)
{
    switch (CT_CharProperties::seo_GetUnicodeProperty(unit)) {
    case CT_CharProperties::MarkNonSpacing:
    case CT_CharProperties::MarkEnclosing:
    case CT_CharProperties::OtherControl:
    case CT_CharProperties::OtherFormat:
        return true;
    default:
        return IsIsolate(unit);
    }
}

bool IsSquare(unsigned short unit)
{
    const int block = CT_CharProperties::seo_GetUnicodeBlock(unit);
    if (CT_CharProperties::sb_IsTPHalfwidth(unit))
        return false;
    return CT_CharProperties::sb_IsTPFullwidth(unit) || CT_CharProperties::sb_IsTPIdeograph(unit) ||
           block == CT_CharProperties::HangulSyllables ||
           (block >= CT_CharProperties::CJKSymbolsAndPunctuation &&
            block <= CT_CharProperties::CJKCompatibility);
}

// Each half of a pair has one of the two columns.
unsigned WidthOf(unsigned short unit)
{
    return IsHidden(unit) ? 0 : IsSquare(unit) ? 2 : 1;
}
} // namespace

unsigned WidthOf(const std::string& text)
{
    CT_UString wide;
    common::ToWide(text, &wide);
    unsigned width = 0;
    for (unsigned n = 0; n < wide.vn_GetLength(); ++n)
        width += WidthOf(wide.u_GetAt(n));
    return width;
}

std::string Isolated(const std::string& text)
{
    CT_UString wide;
    common::ToWide(text, &wide);
    for (unsigned n = 0; n < wide.vn_GetLength(); ++n) {
        if (CT_CharProperties::seo_GetLayoutInformation(wide.u_GetAt(n)) ==
            CT_CharProperties::LayoutRightToLeft)
            return RIGHT_TO_LEFT_ISOLATE + text + END_OF_ISOLATE;
    }
    return text;
}

std::string PaddedRight(const std::string& text, unsigned width)
{
    const unsigned own = WidthOf(text);
    return own < width ? text + std::string(width - own, ' ') : text;
}

std::string PaddedLeft(const std::string& text, unsigned width)
{
    const unsigned own = WidthOf(text);
    return own < width ? std::string(width - own, ' ') + text : text;
}
} // namespace almanac
