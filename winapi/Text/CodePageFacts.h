// winapi/Text/CodePageFacts.h: facts about the code pages and what differs from ICU's converters.
// Internal.
#pragma once

#include "winapi/Base/Types.h"

namespace winapi
{
// What a page's table is made of before its patches.
enum class CodePageRule : unsigned char
{
    icu,   // an ICU converter
    johab, // Hangul by its letters, the rest from page 949
    eucjp, // shifted rows of page 932, the third set from an ICU converter
    none   // nothing
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
        patchStart; // place in code_page_patches: rows from bytes to units, then from units to bytes
    unsigned patchRowsTo;
    unsigned patchRowsFrom;
};

// Ascending by page.
extern const CodePageFacts code_pages[];
extern const unsigned code_page_count;

// The encoding is told by tools/tables/make_codepages.py.
extern const unsigned char code_page_patches[];
} // namespace winapi
