// winapi/Text/CodePageFacts.h: facts about the code pages and what differs from ICU's converters.
// Internal.
#pragma once

#include "winapi/Base/Types.h"

namespace winapi
{
// What a page's table is made of before its patches.
enum class CodePageRule : unsigned char
{
    ICU,   // an ICU converter
    JOHAB, // Hangul by its letters, the rest from page 949
    EUCJP, // shifted rows of page 932, the third set from an ICU converter
    NONE   // nothing
};

struct LeadRange
{
    BYTE first;
    BYTE last;
};

struct CodePageFacts
{
    UINT page;
    BYTE defaultByte;
    WCHAR undefinedUnit;
    LeadRange leads[3]; // empty ones have the first behind the last
    CodePageRule rule;
    const char* converter;
    unsigned
        patchStart; // place in codePagePatches: rows from bytes to units, then from units to bytes
    unsigned patchRowsTo;
    unsigned patchRowsFrom;
};

// Ascending by page.
extern const CodePageFacts codePages[];
extern const unsigned codePageCount;

// The encoding is told by tools/tables/make_codepages.py.
extern const unsigned char codePagePatches[];
} // namespace winapi
