// winapi/CodePages.h: the conversion tables of the code pages. Internal.
#pragma once

#include "CodePageTable.h"

struct UConverter;

namespace winapi
{
// A value of the tables that stands for no value.
constexpr WCHAR NO_VALUE = 0xFFFF;

// The tables of one page. Pages of one byte a character have no pairs.
struct CodePage
{
    const CodePageFacts* facts;
    bool isLead[256];
    WCHAR fromByte
        [256]; // the unit of each byte; the page's undefined unit for lead bytes and where it has none
    WCHAR fromUnit
        [0x10000];    // the byte or, above 255, the pair of each unit; NO_VALUE where there is none
    WCHAR fromPair[]; // pages of two bytes: the unit of each pair, 65536 of them; else none

    bool HasPairs() const { return facts->leads[0].first <= facts->leads[0].last; }
};

// The facts of a page; null for an unknown one.
const CodePageFacts* FindFacts(UINT page);

// The tables of a page, built at its first use and kept; null, with the last error set, for an
// unknown page (87) and when the memory for them can't be had (8).
const CodePage* FindCodePage(UINT page);

// Fills in what a rule gives for pairs; the tables hold no value yet. The tables of the base page
// stand ready.
void ApplyJohabRule(CodePage& page, const CodePage& korean);
bool ApplyEucJpRule(CodePage& page, const CodePage& japanese);

// A converter of ICU that stops where it has no answer.
class Converter
{
public:
    explicit Converter(const char* name);
    ~Converter();
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool IsOpen() const { return handle != nullptr; }

    // The one unit that the bytes give, NO_VALUE where they give none or more.
    WCHAR ToUnit(const char* bytes, int count);
    // The bytes of a unit; their number, 0 where it has none or more than fit.
    int FromUnit(WCHAR unit, char (&bytes)[4]);

private:
    UConverter* handle;
};
} // namespace winapi
