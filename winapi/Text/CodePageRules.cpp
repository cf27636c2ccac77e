// winapi/Text/CodePageRules.cpp: pages that are made from the tables of others.
#include "Text/CodePageTables.h"

#include "winapi/Errors/Codes.h"

namespace winapi
{
namespace
{
constexpr signed char NONE = -1;
constexpr signed char FILL = -2; // the letter's place stands empty

// The five bits of a letter to its number, 0 for the first one.
constexpr signed char INITIALS[32] = {
    NONE, FILL, 0,  1,  2,  3,    4,    5,    6,    7,    8,    9,    10,   11,   12,   13,
    14,   15,   16, 17, 18, NONE, NONE, NONE, NONE, NONE, NONE, NONE, NONE, NONE, NONE, NONE};
constexpr signed char VOWELS[32] = {NONE, NONE, FILL, 0,    1,  2,    3,    4,  NONE, NONE, 5,
                                    6,    7,    8,    9,    10, NONE, NONE, 11, 12,   13,   14,
                                    15,   16,   NONE, NONE, 17, 18,   19,   20, NONE, NONE};
constexpr signed char FINALS[32] = {NONE, FILL, 1,  2,  3,  4,  5,  6,    7,    8,   9,
                                    10,   11,   12, 13, 14, 15, 16, NONE, 17,   18,  19,
                                    20,   21,   22, 23, 24, 25, 26, 27,   NONE, NONE};

// The unit of a pair, which may be the undefined unit's own code; NO_VALUE where the page has none.
WCHAR Known(const CodePage& page, unsigned pair)
{
    const WCHAR unit = page.FromPair(pair);
    return unit == page.facts->undefinedUnit && page.FromUnit(unit) != pair ? NO_VALUE : unit;
}

// Three letters of five bits each: a syllable, or one letter alone.
WCHAR Hangul(unsigned pair)
{
    const int initial = INITIALS[pair >> 10 & 31];
    const int vowel = VOWELS[pair >> 5 & 31];
    const int final = FINALS[pair & 31];
    if (initial == NONE || vowel == NONE || final == NONE)
        return NO_VALUE;
    if (initial != FILL && vowel != FILL)
        return static_cast<WCHAR>(0xAC00 + (initial * 21 + vowel) * 28 +
                                  (final == FILL ? 0 : final));
    if ((initial != FILL) + (vowel != FILL) + (final != FILL) != 1)
        return NO_VALUE;
    return static_cast<WCHAR>(initial != FILL ? 0x1100 + initial
                              : vowel != FILL ? 0x1161 + vowel
                                              : 0x11A7 + final);
}

// The row of page 949 that holds a half of a row of symbols or Chinese characters.
unsigned KoreanRow(unsigned lead, bool second)
{
    if (lead == 0xD8)
        return second ? 0xFE : 0xC9;
    return (lead < 0xE0 ? 0xA1 + 2 * (lead - 0xD9) : 0xCA + 2 * (lead - 0xE0)) + second;
}

// 188 trail bytes in two stretches are two rows of 94.
void FillJohabRow(CodePageDraft& page, const CodePage& korean, unsigned lead)
{
    unsigned place = 0;
    for (unsigned trail = 0x31; trail <= 0xFE; ++trail) {
        if (trail == 0x7F)
            trail = 0x91;
        const unsigned source = KoreanRow(lead, place >= 94) << 8 | (0xA1 + place % 94);
        page.fromPair[lead << 8 | trail] = Known(korean, source);
        ++place;
    }
}

// A pair of two bytes from A1 to FE lies in page 932 two rows to a row.
unsigned ShiftedPair(unsigned lead, unsigned trail)
{
    const unsigned row = lead - 0xA1;
    const unsigned first = row / 2 + (row < 62 ? 0x81 : 0xC1);
    const unsigned cell = trail - 0xA1;
    if (row % 2)
        return first << 8 | (0x9F + cell);
    return first << 8 | (0x40 + cell + (cell >= 63));
}
} // namespace

void ApplyJohabRule(CodePageDraft& page, const CodePage& korean)
{
    for (unsigned pair = 0x8400; pair <= 0xD3FF; ++pair)
        page.fromPair[pair] = Hangul(pair);
    for (unsigned lead = 0xD8; lead <= 0xF9; ++lead)
        if (page.isLead[lead])
            FillJohabRow(page, korean, lead);
}

DWORD ApplyEucJpRule(CodePageDraft& page, const CodePage& japanese)
{
    Converter converter("euc-jp-2007");
    if (!converter.IsOpen())
        return converter.HasHost() ? ERROR_NOT_ENOUGH_MEMORY : ERROR_MOD_NOT_FOUND;
    for (unsigned trail = 0xA1; trail <= 0xDF; ++trail)
        page.fromPair[0x8E00 | trail] = static_cast<WCHAR>(0xFF61 + (trail - 0xA1));
    for (unsigned lead = 0xA1; lead <= 0xFE; ++lead) {
        for (unsigned trail = 0x21; trail <= 0x7E; ++trail) {
            const char bytes[] = {'\x8F', static_cast<char>(lead), static_cast<char>(trail | 0x80)};
            page.fromPair[lead << 8 | trail] = converter.ToUnit(bytes, 3);
        }
        for (unsigned trail = 0xA1; trail <= 0xFE; ++trail)
            page.fromPair[lead << 8 | trail] = Known(japanese, ShiftedPair(lead, trail));
    }
    return 0;
}
} // namespace winapi
