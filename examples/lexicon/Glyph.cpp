// examples/lexicon/Glyph.cpp
#include "Glyph.h"

#include <Ostra/Unicode/CharProperties.h>
#include <Common/Utf8.h>

namespace lexicon
{
namespace
{
constexpr char OPEN_BOX[] = "\xE2\x90\xA3";
constexpr char DOTTED_CIRCLE[] = "\xE2\x97\x8C";
constexpr unsigned REPLACEMENT = 0xFFFD;
constexpr unsigned LAST_UNIT = 0xFFFF;
constexpr unsigned LAST_CHARACTER = 0x10FFFF;

bool IsBetween(unsigned value, unsigned first, unsigned last)
{
    return value >= first && value <= last;
}

std::string Hex(unsigned number)
{
    std::string digits;
    for (int shift = number > LAST_UNIT ? 28 : 12; shift >= 0; shift -= 4)
        digits += "0123456789ABCDEF"[number >> shift & 15];
    return digits;
}

std::string Utf8(unsigned character)
{
    unsigned short units[] = {static_cast<unsigned short>(character), 0};
    if (character <= LAST_UNIT)
        return common::ToUtf8(units, 1);
    units[0] = static_cast<unsigned short>(0xD800 + ((character - 0x10000) >> 10));
    units[1] = static_cast<unsigned short>(0xDC00 + (character & 0x3FF));
    return common::ToUtf8(units, 2);
}

// A character beyond U+FFFF of the two elements of a key, or the second one as it is.
unsigned Join(unsigned before, unsigned character)
{
    if (!IsBetween(before, 0xD800, 0xDBFF) || !IsBetween(character, 0xDC00, 0xDFFF))
        return character;
    return 0x10000 + ((before & 0x3FF) << 10) + (character & 0x3FF);
}

CT_CharProperties::et_UnicodeProperty Category(unsigned character)
{
    return CT_CharProperties::seo_GetUnicodeProperty(static_cast<unsigned short>(character));
}

// What text can't show: controls, what turns the direction of others, halves of pairs, and the two
// units that are no characters.
bool IsHidden(unsigned character)
{
    return character < 0x20 || IsBetween(character, 0x7F, 0x9F) ||
           IsBetween(character, 0x2028, 0x202E) || IsBetween(character, 0x2066, 0x2069) ||
           IsBetween(character, 0xD800, 0xDFFF) || IsBetween(character, 0xFFFE, LAST_UNIT) ||
           character > LAST_CHARACTER;
}

// What has no form when it stands alone.
bool IsFormless(unsigned character)
{
    if (character > LAST_UNIT || IsHidden(character))
        return IsHidden(character);
    switch (Category(character)) {
    case CT_CharProperties::SeparatorSpace:
    case CT_CharProperties::OtherFormat:
    case CT_CharProperties::OtherPrivateUse:
        return true;
    default:
        return false;
    }
}

bool IsMark(unsigned character)
{
    return character <= LAST_UNIT && Category(character) == CT_CharProperties::MarkNonSpacing;
}

// The next character of well-formed UTF-8.
unsigned NextCharacter(const std::string& text, size_t* place)
{
    const unsigned lead = static_cast<unsigned char>(text[(*place)++]);
    if (lead < 0x80)
        return lead;
    const unsigned trailing = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    unsigned character = lead & (0x3F >> trailing);
    for (unsigned n = 0; n < trailing && *place < text.size(); ++n)
        character = character << 6 | (text[(*place)++] & 0x3F);
    return character;
}
} // namespace

Glyph ShowCharacter(unsigned character, unsigned before, unsigned elementSize)
{
    if (character == ' ')
        return {OPEN_BOX, false};
    if (elementSize == 1)
        return IsBetween(character, 0x20, 0x7E) ? Glyph{Utf8(character), false}
                                                : Glyph{Hex(character).substr(2), true};
    const unsigned joined = Join(before, character);
    if (IsFormless(joined))
        return {Hex(joined), true};
    return {(IsMark(joined) ? DOTTED_CIRCLE : "") + Utf8(joined), false};
}

std::string ShowText(const std::vector<unsigned>& key, unsigned elementSize)
{
    std::string text;
    for (size_t n = 0; n < key.size(); ++n) {
        unsigned character = key[n];
        if (n + 1 < key.size() && Join(character, key[n + 1]) != key[n + 1])
            character = Join(character, key[++n]);
        const bool shown = !IsHidden(character) && (elementSize > 1 || character < 0x80);
        text += Utf8(shown ? character : REPLACEMENT);
    }
    return text;
}

std::string ShowText(const std::string& text)
{
    std::string shown;
    for (size_t place = 0; place < text.size();) {
        const unsigned character = NextCharacter(text, &place);
        shown += Utf8(character == '\t' ? ' ' : IsHidden(character) ? REPLACEMENT : character);
    }
    return shown;
}

unsigned EstimateWidth(const std::string& text, unsigned fontSize)
{
    unsigned tenths = 0;
    for (size_t place = 0; place < text.size();)
        tenths += NextCharacter(text, &place) < 0x1100 ? 7 : 11;
    return (tenths * fontSize + 9) / 10;
}
} // namespace lexicon
