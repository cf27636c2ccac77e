// tests/Ostra/Unicode/CharMappingsTest.cpp: the mappings of single characters, each asked of all
// units.
#include "Ostra/Unicode/CharSupport.h"

#include <Ostra/Unicode/CharMappings.h>

#include <type_traits>

using M = CT_CharMappings;

static unsigned Changed(Unit (*map)(Unit))
{
    return Count([map](Unit u) { return map(u) != u; });
}

// ---- Case -----------------------------------------------------------------------------------

TEST(CharMappings, CasePairsTellingValues)
{
    static const struct
    {
        Unit lower, upper;
    } PAIRS[] = {
        {0x0061, 0x0041}, {0xFF5A, 0xFF3A}, {0x00FF, 0x0178}, {0x0561, 0x0531}, {0x10D0, 0x10A0},
        {0x2170, 0x2160}, {0x24D0, 0x24B6}, {0xFF41, 0xFF21}, {0x01C6, 0x01C4}, {0x00E9, 0x00C9},
    };
    for (const auto& pair : PAIRS) {
        SCOPED_TRACE(Name(pair.lower));
        EXPECT_EQ(M::su_ToUpper(pair.lower), pair.upper);
        EXPECT_EQ(M::su_ToLower(pair.upper), pair.lower);
        EXPECT_EQ(M::su_ToUpper(pair.upper), pair.upper);
        EXPECT_EQ(M::su_ToLower(pair.lower), pair.lower);
    }
}

TEST(CharMappings, OneWayCaseMappingsHaveNoRow)
{
    for (Unit unit : Expand("00B5 00DF 0130 0131 017F 01C5 03C2")) {
        EXPECT_EQ(M::su_ToUpper(unit), unit) << Name(unit);
        EXPECT_EQ(M::su_ToLower(unit), unit) << Name(unit);
    }
}

TEST(CharMappings, CaseTablesAreInversesOfEachOther)
{
    EXPECT_EQ(
        Differences(
            [](Unit u) { return M::su_ToUpper(u) == u || M::su_ToLower(M::su_ToUpper(u)) == u; },
            [](Unit) { return 1; }),
        "");
    EXPECT_EQ(
        Differences(
            [](Unit u) { return M::su_ToLower(u) == u || M::su_ToUpper(M::su_ToLower(u)) == u; },
            [](Unit) { return 1; }),
        "");
    EXPECT_EQ(Changed(M::su_ToUpper), 673u);
    EXPECT_EQ(Changed(M::su_ToLower), 673u);
}

TEST(CharMappings, CaseRowsBeginAndEndWithTheLatinAlphabets)
{
    const UnitSet outside("0000..0040 005B..0060 007B..00BF FF5B..FFFF");
    EXPECT_EQ(Count([&](Unit u) { return outside(u) && M::su_ToUpper(u) != u; }), 0u);
    EXPECT_EQ(Count([&](Unit u) { return outside(u) && M::su_ToLower(u) != u; }), 0u);
}

// ---- Digits ---------------------------------------------------------------------------------

static const MappingRun DIGITS[] = {
    {"00B2..00B3", "0032..0033"}, {"00B9", "0031"},
    {"0660..0669", "0030..0039"}, {"06F0..06F9", "0030..0039"},
    {"0966..096F", "0030..0039"}, {"09E6..09EF", "0030..0039"},
    {"0A66..0A6F", "0030..0039"}, {"0AE6..0AEF", "0030..0039"},
    {"0B66..0B6F", "0030..0039"}, {"0BE7..0BEF", "0031..0039"},
    {"0C66..0C6F", "0030..0039"}, {"0CE6..0CEF", "0030..0039"},
    {"0D66..0D6F", "0030..0039"}, {"0E50..0E59", "0030..0039"},
    {"0ED0..0ED9", "0030..0039"}, {"2070", "0030"},
    {"2074..2079", "0034..0039"}, {"2080..2089", "0030..0039"},
    {"2460..2468", "0031..0039"}, {"2474..247C", "0031..0039"},
    {"2488..2490", "0031..0039"}, {"24EA", "0030"},
    {"2776..277E", "0031..0039"}, {"2780..2788", "0031..0039"},
    {"278A..2792", "0031..0039"},
};

TEST(CharMappings, DigitsFoldByTheirRuns)
{
    const UnitMap digits(DIGITS);
    EXPECT_EQ(digits.Count(), 204u);
    EXPECT_EQ(Differences(M::su_FoldDigit, digits), "");
}

TEST(CharMappings, TibetanAndFullwidthDigitsAreLeftToOthers)
{
    EXPECT_EQ(M::su_FoldDigit(0x0660), 0x30);
    EXPECT_EQ(M::su_FoldDigit(0x0F20), 0x0F20);
    EXPECT_EQ(M::su_FoldDigit(0xFF10), 0xFF10);
    EXPECT_EQ(M::su_FoldDigit(0x0BE6), 0x0BE6);
    EXPECT_EQ(M::su_FoldCZone(0xFF10), 0x30);
}

// ---- Kana -----------------------------------------------------------------------------------

// What both kana tables have.
static const MappingRun WIDENED[] = {
    {"0020", "3000"},
    {"0021..005B 005D..007E", "FF01..FF3B FF3D..FF5E"},
    {"00A2 00A3 00A5 00A6 00AC 00AF 20A9", "FFE0 FFE1 FFE5 FFE4 FFE2 FFE3 FFE6"},
    {"FF61..FF65", "3002 300C 300D 3001 30FB"},
    {"FF70", "30FC"},
    {"FF9E FF9F", "309B 309C"},
    {"FFA0", "3164"},
    {"FFA1..FFBE", "3131..314E"},
    {"FFC2..FFC7 FFCA..FFCF FFD2..FFD7 FFDA..FFDC", "314F..3163"},
};

// The halfwidth katakana and their full forms.
static const char HALFWIDTH[] = "FF66 FF67..FF6F FF71..FF9D";
static const char FULL[] =
    "30F2 30A1 30A3 30A5 30A7 30A9 30E3 30E5 30E7 30C3 "
    "30A2 30A4 30A6 30A8 30AA 30AB 30AD 30AF 30B1 30B3 30B5 30B7 30B9 30BB 30BD 30BF 30C1 30C4 "
    "30C6 30C8 30CA 30CB 30CC 30CD 30CE 30CF 30D2 30D5 30D8 30DB 30DE 30DF 30E0 30E1 30E2 30E4 "
    "30E6 30E8 30E9 30EA 30EB 30EC 30ED 30EF 30F3";

static UnitMap KatakanaTable()
{
    UnitMap table(WIDENED);
    const std::vector<Unit> half = Expand(HALFWIDTH), full = Expand(FULL);
    EXPECT_EQ(half.size(), full.size());
    for (std::size_t n = 0; n < half.size(); ++n)
        table.Add(half[n], full[n]);
    for (Unit unit : Expand("3041..3094 309D 309E"))
        table.Add(unit, static_cast<Unit>(unit + 0x60));
    return table;
}

static UnitMap HiraganaTable()
{
    UnitMap table(WIDENED);
    const std::vector<Unit> half = Expand(HALFWIDTH), full = Expand(FULL);
    for (std::size_t n = 0; n < half.size(); ++n)
        table.Add(half[n], static_cast<Unit>(full[n] - 0x60));
    for (Unit unit : Expand("30A1..30F4 30FD 30FE"))
        table.Add(unit, static_cast<Unit>(unit - 0x60));
    return table;
}

TEST(CharMappings, KanaTablesHoldTheirRowsAndNoOthers)
{
    const UnitMap katakana = KatakanaTable(), hiragana = HiraganaTable();
    EXPECT_EQ(katakana.Count(), 302u);
    EXPECT_EQ(hiragana.Count(), 302u);
    EXPECT_EQ(Differences(M::su_HiraganaToKatakana, katakana), "");
    EXPECT_EQ(Differences(M::su_KatakanaToHiragana, hiragana), "");
}

TEST(CharMappings, KanaTellingValues)
{
    EXPECT_EQ(M::su_HiraganaToKatakana(0x3042), 0x30A2);
    EXPECT_EQ(M::su_KatakanaToHiragana(0x30A2), 0x3042);
    EXPECT_EQ(M::su_HiraganaToKatakana(0x30A2), 0x30A2);
    EXPECT_EQ(M::su_KatakanaToHiragana(0x3042), 0x3042);
    EXPECT_EQ(M::su_HiraganaToKatakana(u'A'), 0xFF21);
    EXPECT_EQ(M::su_KatakanaToHiragana(u'A'), 0xFF21);
    EXPECT_EQ(M::su_HiraganaToKatakana(0x5C), 0x5C);
    EXPECT_EQ(M::su_KatakanaToHiragana(0x5C), 0x5C);
    EXPECT_EQ(M::su_HiraganaToKatakana(0xFF76), 0x30AB);
    EXPECT_EQ(M::su_KatakanaToHiragana(0xFF76), 0x304B);
    EXPECT_EQ(M::su_KatakanaToHiragana(0xFF70), 0x30FC);
    EXPECT_EQ(M::su_KatakanaToHiragana(0x30F5), 0x30F5);
}

// ---- Compatibility zone ---------------------------------------------------------------------

static const MappingRun COMPATIBILITY_ZONE[] = {
    {"FE30 FE31 FE32", "2025 2014 2013"},
    {"FE33 FE34", "005F"},
    {"FE35 FE36", "0028 0029"},
    {"FE37 FE38", "007B 007D"},
    {"FE39 FE3A", "3014 3015"},
    {"FE3B FE3C", "3010 3011"},
    {"FE3D FE3E", "300A 300B"},
    {"FE3F FE40", "3008 3009"},
    {"FE41..FE44", "300C..300F"},
    {"FE49..FE4C", "203E"},
    {"FE4D..FE4F", "005F"},
    {"FE50 FE51 FE52", "002C 3001 002E"},
    {"FE54..FE58", "003B 003A 003F 0021 2014"},
    {"FE59 FE5A", "0028 0029"},
    {"FE5B FE5C", "007B 007D"},
    {"FE5D FE5E", "3014 3015"},
    {"FE5F FE60", "0023 0026"},
    {"FE61 FE62", "002A 002B"},
    {"FE63..FE66", "002D 003C 003E 003D"},
    {"FE69 FE6A FE6B", "0024 0025 0040"},
    {"FE70 FE71", "064B"},
    {"FE72", "064C"},
    {"FE74", "064D"},
    {"FE76 FE77", "064E"},
    {"FE78 FE79", "064F"},
    {"FE7A FE7B", "0650"},
    {"FE7C FE7D", "0651"},
    {"FE7E FE7F", "0652"},
    {"FE80", "0621"},
    {"FE81 FE82", "0622"},
    {"FE83 FE84", "0623"},
    {"FE85 FE86", "0624"},
    {"FE87 FE88", "0625"},
    {"FE89..FE8C", "0626"},
    {"FE8D FE8E", "0627"},
    {"FE8F..FE92", "0628"},
    {"FE93 FE94", "0629"},
    {"FE95..FE98", "062A"},
    {"FE99..FE9C", "062B"},
    {"FE9D..FEA0", "062C"},
    {"FEA1..FEA4", "062D"},
    {"FEA5..FEA8", "062E"},
    {"FEA9 FEAA", "062F"},
    {"FEAB FEAC", "0630"},
    {"FEAD FEAE", "0631"},
    {"FEAF FEB0", "0632"},
    {"FEB1..FEB4", "0633"},
    {"FEB5..FEB8", "0634"},
    {"FEB9..FEBC", "0635"},
    {"FEBD..FEC0", "0636"},
    {"FEC1..FEC4", "0637"},
    {"FEC5..FEC8", "0638"},
    {"FEC9..FECC", "0639"},
    {"FECD..FED0", "063A"},
    {"FED1..FED4", "0641"},
    {"FED5..FED8", "0642"},
    {"FED9..FEDC", "0643"},
    {"FEDD..FEE0", "0644"},
    {"FEE1..FEE4", "0645"},
    {"FEE5..FEE8", "0646"},
    {"FEE9..FEEC", "0647"},
    {"FEED FEEE", "0648"},
    {"FEEF FEF0", "0649"},
    {"FEF1..FEF4", "064A"},
    {"FF01..FF3B", "0021..005B"},
    {"FF3D..FF5E", "005D..007E"},
    {"FFE0..FFE6", "00A2 00A3 00AC 00AF 00A6 00A5 20A9"},
    {"FFE8..FFEE", "2502 2190 2191 2192 2193 25A0 25CB"},
};

TEST(CharMappings, CompatibilityZoneFoldsByItsRuns)
{
    UnitMap zone(COMPATIBILITY_ZONE);
    const UnitMap katakana = KatakanaTable();
    for (unsigned unit = 0xFF61; unit <= 0xFFDC; ++unit)
        if (katakana.Holds(unit))
            zone.Add(static_cast<Unit>(unit), katakana(unit));
    EXPECT_EQ(zone.Count(), 406u);
    EXPECT_EQ(Differences(M::su_FoldCZone, zone), "");
}

TEST(CharMappings, LigaturesAndTheFullwidthBackslashStay)
{
    for (Unit unit : Expand("FEF5..FEFC FF3C FE68"))
        EXPECT_EQ(M::su_FoldCZone(unit), unit) << Name(unit);
}

// ---- All ------------------------------------------------------------------------------------

TEST(CharMappings, TablesHaveTheirNumberOfRows)
{
    EXPECT_EQ(Changed(M::su_FoldDigit), 204u);
    EXPECT_EQ(Changed(M::su_FoldCZone), 406u);
    EXPECT_EQ(Changed(M::su_HiraganaToKatakana), 302u);
    EXPECT_EQ(Changed(M::su_KatakanaToHiragana), 302u);
    EXPECT_EQ(Changed(M::su_ToBase), 601u);
}

TEST(CharMappings, SurrogatesZeroAndPrivateUseMapToThemselves)
{
    const UnitSet fixed("0000 D800..F8FF FFFE FFFF");
    for (const auto map : {M::su_ToUpper, M::su_ToLower, M::su_ToBase, M::su_FoldDigit,
                           M::su_FoldCZone, M::su_HiraganaToKatakana, M::su_KatakanaToHiragana})
        EXPECT_EQ(Count([&](Unit u) { return fixed(u) && map(u) != u; }), 0u);
}

TEST(CharMappings, AssignmentIsTrivial)
{
    EXPECT_TRUE(std::is_trivially_copy_assignable_v<M>);
    EXPECT_TRUE(std::is_empty_v<M>);
}
