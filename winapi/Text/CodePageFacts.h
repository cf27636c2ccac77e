// winapi/Text/CodePageFacts.h: facts about the code pages, and their tables. Internal.
//
// All of it is constant and holds no addresses: it lies in the library's file, mapped once for all
// processes, and is ready at the first use of a page. tools/tables/make_codepages.py tells the
// layout of the tables.
#pragma once

#include "winapi/Base/Types.h"

namespace winapi
{
// What stands for no value.
constexpr WCHAR NO_VALUE = 0xFFFF;

struct LeadRange
{
    BYTE first;
    BYTE last;
};

// Bytes of the upper half whose units follow one another too, in both directions.
struct ByteRun
{
    BYTE first;
    BYTE length; // 0 for none
    WCHAR unit;  // that of the first

    bool HasByte(BYTE byte) const { return static_cast<BYTE>(byte - first) < length; }
    bool HasUnit(WCHAR wide) const { return static_cast<WCHAR>(wide - unit) < length; }
};

struct CodePageFacts
{
    UINT page;
    BYTE defaultByte;
    WCHAR undefinedUnit;
    WCHAR undefinedCode; // that of the undefined unit
    LeadRange leads[3];  // empty ones have the first behind the last
    bool hasAscii;       // the bytes below 80 are the units of the same numbers, in both directions
    ByteRun run;
    unsigned bytes;       // place of the page's 256 bytes in codePageUnits
    unsigned rows;        // place in codePagePairRows; in codePageByteBlocks without pairs
    unsigned differences; // place in codePageDifferences
    unsigned differenceRows;

    bool HasPairs() const { return leads[0].first <= leads[0].last; }
};

// Ascending by page.
extern const CodePageFacts codePages[];
extern const unsigned codePageCount;

constexpr unsigned PAIR_ROW = 32;   // pairs
constexpr unsigned BYTE_ROW = 64;   // units
constexpr unsigned BYTE_BLOCK = 16; // rows

extern const WCHAR codePageUnits[];
extern const WORD codePagePairRows[];
extern const BYTE codePageBytes[];
extern const WORD codePageByteRows[];
extern const BYTE codePageByteBlocks[];
extern const BYTE codePageDifferences[];
} // namespace winapi
