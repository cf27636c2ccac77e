// winapi/Text/CodePageTables.h: the conversion tables of the code pages. Internal.
#pragma once

#include "Text/CodePageFacts.h"
#include "Text/Converter.h"

namespace winapi
{
inline bool HasPairs(const CodePageFacts& facts)
{
    return facts.leads[0].first <= facts.leads[0].last;
}

// Bytes of the upper half whose units follow one another too, in both directions.
struct ByteRun
{
    BYTE first;
    BYTE length; // 0 for none
    WCHAR unit;  // that of the first

    bool HasByte(BYTE byte) const { return static_cast<BYTE>(byte - first) < length; }
    bool HasUnit(WCHAR wide) const { return static_cast<WCHAR>(wide - unit) < length; }
};

// The tables of one page. Pages of one byte a character have no pairs.
struct CodePage
{
    const CodePageFacts* facts;
    bool hasAscii; // the bytes below 80 are the units of the same numbers, in both directions
    ByteRun run;
    bool isLead[256];
    WCHAR fromByte
        [256]; // the unit of each byte; the page's undefined unit for lead bytes and where it has none
    const WCHAR* unitRows[256]; // of 256 units each
    const WCHAR* pairRows[256]; // of 256 pairs each
    WCHAR rows[];               // rows that are alike stand here once

    bool HasPairs() const { return winapi::HasPairs(*facts); }
    // The byte or, above 255, the pair; NO_VALUE where there is none.
    WCHAR FromUnit(WCHAR unit) const { return unitRows[unit >> 8][unit & 0xFF]; }
    // The page's undefined unit where there is none.
    WCHAR FromPair(unsigned pair) const { return pairRows[pair >> 8][pair & 0xFF]; }
};

// The tables while they are made: in one piece, with NO_VALUE wherever there is none.
struct CodePageDraft
{
    const CodePageFacts* facts;
    bool isLead[256];
    WCHAR fromByte[256];
    WCHAR fromUnit[0x10000];
    WCHAR fromPair[0x10000];
};

// The facts of a page; null for an unknown one.
const CodePageFacts* FindFacts(UINT page);

// The tables of a page if they were built before.
const CodePage* FindBuilt(UINT page);

// The tables of a page, built at its first use and kept; null, with the last error set, for an
// unknown page (ERROR_INVALID_PARAMETER, 87), when the memory for them can't be had
// (ERROR_NOT_ENOUGH_MEMORY, 8) and without the library of the converters (ERROR_MOD_NOT_FOUND,
// 126).
const CodePage* FindCodePage(UINT page);

// Fills in what a rule gives for pairs; the tables hold no value yet. The tables of the base page
// stand ready.
void ApplyJohabRule(CodePageDraft& page, const CodePage& korean);
// Result: 0 or the code of the failure.
DWORD ApplyEucJpRule(CodePageDraft& page, const CodePage& japanese);
} // namespace winapi
