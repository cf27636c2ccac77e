// winapi/Text/CodePageTables.h: the conversion tables of the code pages. Internal.
#pragma once

#include "Text/CodePageFacts.h"

namespace winapi
{
// How the tables of a page are read. Made for each call; it has nothing of its own.
class CodePage
{
public:
    explicit CodePage(const CodePageFacts& facts)
        : undefined(facts.undefinedUnit),
          firstRow(facts.leads[0].first * (256 / PAIR_ROW)),
          bytes(codePageUnits + facts.bytes),
          pairRows(codePagePairRows + (facts.HasPairs() ? facts.rows : 0)),
          blocks(codePageByteBlocks + (facts.HasPairs() ? 0 : facts.rows))
    {}

    // The unit of a byte, the page's undefined one where it has none; NO_VALUE for a lead byte.
    WCHAR FromByte(BYTE byte) const { return bytes[byte]; }
    // The unit of a pair with a lead byte, the page's undefined one where it has none.
    WCHAR FromPair(unsigned pair) const { return RowOfPair(pair)[pair % PAIR_ROW]; }
    // Those of the row of a pair, from its first pair on.
    const WCHAR* RowOfPair(unsigned pair) const
    {
        return codePageUnits + pairRows[pair / PAIR_ROW - firstRow] * PAIR_ROW;
    }
    // Whether no pair of a row has a unit, of which the first one of all, with zero bytes, is.
    bool IsEmptyRow(unsigned pair) const
    {
        return pairRows[pair / PAIR_ROW - firstRow] == pairRows[0];
    }
    // The unit of a byte or, above 255, a pair.
    WCHAR FromCode(unsigned code) const
    {
        return code < 0x100 ? FromByte(static_cast<BYTE>(code)) : FromPair(code);
    }
    // In a page without pairs: the byte of a unit; NO_VALUE where there is none.
    WCHAR ToByte(WCHAR unit) const
    {
        constexpr unsigned BLOCK = BYTE_BLOCK * BYTE_ROW;
        const unsigned block = blocks[unit / BLOCK] * BYTE_BLOCK;
        const unsigned row = codePageByteRows[block + unit % BLOCK / BYTE_ROW] * BYTE_ROW;
        const BYTE byte = codePageBytes[row + unit % BYTE_ROW];
        return byte || !unit ? byte : NO_VALUE;
    }

    const WCHAR undefined;

private:
    const unsigned firstRow;
    const WCHAR* const bytes;
    const WORD* const pairRows;
    const BYTE* const blocks;
};

// The codes of the units in a page of pairs, built of its other tables at the first use.
class CodePageReverse
{
public:
    // The tables of a page if they were built before.
    static const CodePageReverse* FindBuilt(const CodePageFacts& facts);
    // Builds them if need be and keeps them; null, with the last error set, when the memory can't
    // be had (ERROR_NOT_ENOUGH_MEMORY, 8).
    static const CodePageReverse* Find(const CodePageFacts& facts);

    // The byte or, above 255, the pair; NO_VALUE where there is none.
    WCHAR ToCode(WCHAR unit) const { return static_cast<WCHAR>(~inverted[unit]); }

private:
    static const CodePageReverse* Build(const CodePageFacts& facts);
    void FillLowest(const CodePageFacts& facts);
    void FillRow(const WCHAR* units, unsigned first);
    void FillDifferences(const CodePageFacts& facts);
    void Set(WCHAR unit, unsigned code) { inverted[unit] = static_cast<WCHAR>(~code); }

    // So memory that nothing was written to, and that the system may not even have given yet, says
    // that there is none.
    WCHAR inverted[0x10000];
};

// The facts of a page; null for an unknown one.
const CodePageFacts* FindFacts(UINT page);
} // namespace winapi
