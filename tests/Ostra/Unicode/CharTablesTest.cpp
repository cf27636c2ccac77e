// tests/Ostra/Unicode/CharTablesTest.cpp: the tables answer as a search over their rows would.
#include <Ostra/String/UString.h>
#include <Ostra/Unicode/CharMappings.h>
#include <Ostra/Unicode/CharProperties.h>
#include <Ostra/Unicode/CharRows.h>

#include "Support/Private.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>

OSTRA_PRIVATE(MapString, void (*)(CT_UString*, unsigned short (*)(unsigned short)),
              &CT_CharMappings::sv_MapString);

namespace
{
using Properties = CT_CharProperties;
using Mappings = CT_CharMappings;
using Rows = CT_CharRows;
using Unit = unsigned short;

int Compare(Unit u, const st_CharRange& row)
{
    return u < row.u_First ? -1 : u > row.u_Last;
}

int Compare(Unit u, const st_CharNumber& row)
{
    return int(u) - row.u_Character;
}

int Compare(Unit u, const st_CharMapping& row)
{
    return int(u) - row.u_Source;
}

int Compare(Unit u, const st_CharDecomposition& row)
{
    return int(u) - row.u_Source;
}

// The search that the rows are ordered for. Its middle of an even number is the last row of the
// first half, which decides what a row out of order hides.
template <class Row, size_t N>
const Row* Find(const Row (&rows)[N], Unit u)
{
    const Row* low = rows;
    for (size_t count = N; count;) {
        const size_t half = count / 2;
        const size_t middle = count % 2 ? half : half - 1;
        const int order = Compare(u, low[middle]);
        if (!order)
            return low + middle;
        if (order > 0)
            low += middle + 1;
        count = order < 0 ? middle : half;
    }
    return nullptr;
}

template <size_t N>
unsigned Value(const st_CharRange (&rows)[N], Unit u, unsigned none)
{
    const st_CharRange* row = Find(rows, u);
    return row ? row->u_Value : none;
}

template <size_t N>
unsigned Word(const Unit (&direct)[256], const st_CharRange (&rows)[N], Unit u)
{
    return u < 256 ? direct[u] : Value(rows, u, 0);
}

template <size_t N>
Unit Target(const st_CharMapping (&rows)[N], Unit u)
{
    const st_CharMapping* row = Find(rows, u);
    return row ? row->u_Target : u;
}

// Checks each unit; stops at the first one that fails.
template <class Check>
void ForEachUnit(Check check)
{
    for (unsigned u = 0; u < 65536 && !testing::Test::HasFailure(); ++u) {
        SCOPED_TRACE(u);
        check(static_cast<Unit>(u));
    }
}

template <size_t N>
void ExpectSameMapping(const st_CharMapping (&rows)[N], Unit (*map)(Unit))
{
    ForEachUnit([&](Unit u) { EXPECT_EQ(map(u), Target(rows, u)); });
}

CT_UString Text(const std::u16string& units)
{
    return CT_UString(reinterpret_cast<const Unit*>(units.data()),
                      static_cast<unsigned>(units.size()));
}

std::u16string Units(const CT_UString& text)
{
    return {text.qcuz_Get(), text.qcuz_Get() + text.vn_GetLength()};
}

// All units but 0, lone high surrogates at different distances among them.
std::u16string AllUnits()
{
    std::u16string units;
    for (unsigned u = 1; u < 65536; ++u) {
        units += static_cast<char16_t>(u);
        if (u % 7 == 0)
            units += u'a';
        if (u % 11 == 0)
            units += u"\xD801\x0061\x0062";
    }
    return units;
}

// The class with functions of its own, which the mappings have to call.
class Counting : public CT_UString
{
public:
    unsigned short vu_GetAt(unsigned n_Offset) const override
    {
        ++reads;
        return CT_UString::vu_GetAt(n_Offset);
    }
    void vv_SetAt(unsigned short u_New, unsigned n_Offset) override
    {
        ++writes;
        CT_UString::vv_SetAt(u_New, n_Offset);
    }
    mutable unsigned reads = 0;
    unsigned writes = 0;
};

const struct
{
    const char* name;
    void (*string)(CT_UString*);
    Unit (*unit)(Unit);
} MAPPINGS[] = {
    {"ToUpper", Mappings::sv_ToUpper, Mappings::su_ToUpper},
    {"ToLower", Mappings::sv_ToLower, Mappings::su_ToLower},
    {"ToBase", Mappings::sv_ToBase, Mappings::su_ToBase},
    {"FoldDigit", Mappings::sv_FoldDigit, Mappings::su_FoldDigit},
    {"FoldCZone", Mappings::sv_FoldCZone, Mappings::su_FoldCZone},
    {"HiraganaToKatakana", Mappings::sv_HiraganaToKatakana, Mappings::su_HiraganaToKatakana},
    {"KatakanaToHiragana", Mappings::sv_KatakanaToHiragana, Mappings::su_KatakanaToHiragana},
};
} // namespace

TEST(CharTables, PropertyIsThatOfTheRows)
{
    ForEachUnit([](Unit u) {
        EXPECT_EQ(unsigned(Properties::seo_GetUnicodeProperty(u)), Value(Rows::PROPERTY, u, 28));
    });
}

TEST(CharTables, BlockIsThatOfTheRows)
{
    ForEachUnit([](Unit u) {
        EXPECT_EQ(unsigned(Properties::seo_GetUnicodeBlock(u)), Value(Rows::BLOCK, u, 0));
    });
}

TEST(CharTables, TheRowOfSpecials1StandsOutOfOrderAndIsNeverFound)
{
    const auto* row = std::find_if(std::begin(Rows::BLOCK), std::end(Rows::BLOCK),
                                   [](const st_CharRange& r) { return r.u_Value == 68; });
    ASSERT_EQ(row, std::end(Rows::BLOCK) - 2);
    EXPECT_EQ(row[-1].u_Value, 67);
    EXPECT_EQ(row[1].u_Value, 69);
    EXPECT_EQ(row->u_First, 0xFEFF);
    EXPECT_EQ(Value(Rows::BLOCK, 0xFEFF, 0), 66u);
}

TEST(CharTables, WordsAreThoseOfTheRows)
{
    ForEachUnit([](Unit u) {
        EXPECT_EQ(Properties::sn2_GetCharacterInformation(u),
                  Word(Rows::CHARACTER_DIRECT, Rows::CHARACTER, u));
        EXPECT_EQ(Properties::sn2_GetLayoutInformation(u),
                  Word(Rows::LAYOUT_DIRECT, Rows::LAYOUT, u));
        EXPECT_EQ(Properties::sn2_GetTextProcessingInformation(u),
                  Word(Rows::TEXT_PROCESSING_DIRECT, Rows::TEXT_PROCESSING, u));
    });
}

TEST(CharTables, NumericValueIsThatOfTheRows)
{
    ForEachUnit([](Unit u) {
        const st_CharNumber* row = Find(Rows::NUMERIC, u);
        short numerator = 99;
        short denominator = 99;
        Properties::sv_NumericValue(u, numerator, denominator);
        EXPECT_EQ(numerator, row ? row->i_Numerator : 0);
        EXPECT_EQ(denominator, row ? row->i_Denominator : 0);
    });
}

TEST(CharTables, MappingsAreThoseOfTheRows)
{
    ExpectSameMapping(Rows::UPPER, Mappings::su_ToUpper);
    ExpectSameMapping(Rows::LOWER, Mappings::su_ToLower);
    ExpectSameMapping(Rows::DIGIT, Mappings::su_FoldDigit);
    ExpectSameMapping(Rows::CZONE, Mappings::su_FoldCZone);
    ExpectSameMapping(Rows::KATAKANA, Mappings::su_HiraganaToKatakana);
    ExpectSameMapping(Rows::HIRAGANA, Mappings::su_KatakanaToHiragana);
}

TEST(CharTables, DecompositionIsThatOfTheRows)
{
    const CT_UString before = Text(u"before");
    ForEachUnit([&](Unit u) {
        const st_CharDecomposition* row = Find(Rows::DECOMPOSITION, u);
        const std::u16string sequence =
            row ? reinterpret_cast<const char16_t*>(row->au_Sequence) : u"before";
        CT_UString result(&before);
        EXPECT_EQ(Mappings::sn_Decompose(u, &result), row ? sequence.size() : 1);
        EXPECT_EQ(Units(result), sequence);
        EXPECT_EQ(Mappings::sn_Decompose(u, nullptr), row ? sequence.size() : 1);
        EXPECT_EQ(Mappings::su_ToBase(u), row ? row->au_Sequence[0] : u);
    });
}

TEST(CharTables, ATextMapsAsItsUnitsDoOneByOne)
{
    for (const auto& mapping : MAPPINGS) {
        SCOPED_TRACE(mapping.name);
        CT_UString mapped = Text(AllUnits());
        CT_UString expected = Text(AllUnits());
        const CT_UString holder(&expected);
        mapping.string(&mapped);
        Private(MapString())(&expected, mapping.unit);
        EXPECT_EQ(Units(mapped), Units(expected));
        EXPECT_NE(Units(mapped), AllUnits());
        EXPECT_EQ(Units(holder), AllUnits());
    }
}

TEST(CharTables, ATextWithItsOwnFunctionsMapsThroughThem)
{
    for (const auto& mapping : MAPPINGS) {
        SCOPED_TRACE(mapping.name);
        const CT_UString source = Text(AllUnits());
        CT_UString expected = Text(AllUnits());
        Counting mapped;
        mapped.v_Set(&source);
        mapping.string(&mapped);
        mapping.string(&expected);
        EXPECT_EQ(Units(mapped), Units(expected));
        EXPECT_GT(mapped.reads, 60000u);
        EXPECT_GT(mapped.writes, 200u);
        EXPECT_EQ(Units(source), AllUnits());
    }
}
