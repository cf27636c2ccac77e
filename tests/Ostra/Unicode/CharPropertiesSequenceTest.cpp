// tests/Ostra/Unicode/CharPropertiesSequenceTest.cpp: the test of a run of characters, and numeric
// values.
#include "Ostra/String/StringSupport.h"
#include "Ostra/Unicode/CharSupport.h"

#include <Ostra/Unicode/CharProperties.h>

#include <cstring>

using P = CT_CharProperties;

// ---- Sequences ----------------------------------------------------------------------------------

// What the test was handed, and the characters that it refuses.
static std::u16string s_Asked;
static std::u16string s_Refused;
static int s_Yes;

static int Ask(Unit unit)
{
    s_Asked += static_cast<char16_t>(unit);
    return s_Refused.find(static_cast<char16_t>(unit)) == std::u16string::npos ? s_Yes : 0;
}

struct SequenceCase
{
    const char* name;
    std::u16string text; // by its length, zeros included
    unsigned start;
    unsigned count;
    int result;
    std::u16string asked;
};

using namespace std::string_literals;

// The letter x is refused.
static const SequenceCase SEQUENCES[] = {
    {"all", u"abc", 0, 3, 1, u"abc"},
    {"no more than count", u"abc", 0, 2, 1, u"ab"},
    {"count ends before a refusal", u"abx", 0, 2, 1, u"ab"},
    {"from a start", u"abc", 1, 1, 1, u"b"},
    {"behind a refusal", u"xbc", 1, 2, 1, u"bc"},
    {"last character", u"abc", 2, 1, 1, u"c"},
    {"refused first", u"xbc", 0, 3, 0, u"x"},
    {"refused within", u"axc", 0, 3, 0, u"ax"},
    {"refused last", u"abx", 0, 3, 0, u"abx"},
    {"count of none", u"abc", 0, 0, 0, u""},
    {"count of none at the end", u"abc", 3, 0, 0, u""},
    {"start at the end", u"abc", 3, 1, 0, u""},
    {"start beyond the end", u"abc", 4, 1, 0, u""},
    {"start far beyond the end", u"abc", 0xFFFFFFFF, 0xFFFFFFFF, 0, u""},
    {"count beyond the end", u"abc", 1, 3, 1, u"bc"},
    {"count beyond the end and a refusal", u"abx", 1, 5, 0, u"bx"},
    {"greatest count", u"abc", 0, 0xFFFFFFFF, 1, u"abc"},
    {"start and count overflow to 0", u"abc", 1, 0xFFFFFFFF, 1, u"bc"},
    {"start and count overflow to 1", u"abc", 2, 0xFFFFFFFF, 1, u"c"},
    {"start and count overflow before a refusal", u"abx", 1, 0xFFFFFFFF, 0, u"bx"},
    {"empty text", u"", 0, 1, 0, u""},
    {"text ends at its first zero", u"ab\0x"s, 0, 4, 1, u"ab"},
    {"start at the first zero", u"ab\0c"s, 2, 1, 0, u""},
    {"start behind the first zero", u"ab\0c"s, 3, 1, 0, u""},
    {"text begins with a zero", u"\0bc"s, 0, 3, 0, u""},
    {"text begins with a zero, start behind it", u"\0bc"s, 1, 1, 0, u""},
    {"surrogates and all else", u"\xD800\xDC00\xFFFF", 0, 3, 1, u"\xD800\xDC00\xFFFF"},
};

static void CheckSequence(const SequenceCase& row, int result)
{
    EXPECT_EQ(result, row.result);
    EXPECT_EQ(s_Asked, row.asked);
    s_Asked.clear();
}

TEST(CharProperties, SequenceGoesToTheTestUntilOneIsRefused)
{
    s_Asked.clear();
    s_Refused = u"x";
    for (int yes : {1, 8, -1, 0x8000, static_cast<int>(0x80000000)}) {
        s_Yes = yes;
        for (const SequenceCase& row : SEQUENCES) {
            SCOPED_TRACE(testing::Message() << row.name << ", yes is " << yes);
            CheckSequence(row, P::sb_IsSequenceOf(U(row.text.c_str()), Ask, row.start, row.count));
            const CT_UString text(U(row.text.c_str()), static_cast<unsigned>(row.text.size()));
            EXPECT_EQ(text.vn_GetLength(), row.text.size());
            CheckSequence(row, P::sb_IsSequenceOf(&text, Ask, row.start, row.count));
        }
    }
}

TEST(CharProperties, SequenceOfNoTextIsNone)
{
    const unsigned short* none = nullptr;
    s_Asked.clear();
    EXPECT_EQ(P::sb_IsSequenceOf(none, Ask, 0, 1), 0);
    EXPECT_EQ(P::sb_IsSequenceOf(none, Ask, 0, 0), 0);
    const CT_UString empty;
    EXPECT_EQ(DataOf(empty), nullptr);
    EXPECT_EQ(P::sb_IsSequenceOf(&empty, Ask, 0, 1), 0);
    const CT_UString* no_string = nullptr;
    EXPECT_EQ(P::sb_IsSequenceOf(no_string, Ask, 0, 1), 0);
    const CT_UString room(10u);
    EXPECT_EQ(P::sb_IsSequenceOf(&room, Ask, 0, 1), 0);
    EXPECT_EQ(s_Asked, u"");
}

TEST(CharProperties, SequenceTakesTheQueriesOfTheClass)
{
    EXPECT_EQ(P::sb_IsSequenceOf(U(u"  \t "), P::sb_IsSpace, 0, 4), 1);
    EXPECT_EQ(P::sb_IsSequenceOf(U(u"12a"), P::sb_IsDigit, 0, 2), 1);
    EXPECT_EQ(P::sb_IsSequenceOf(U(u"12a"), P::sb_IsDigit, 0, 3), 0);
    EXPECT_EQ(P::sb_IsSequenceOf(U(u"ab"), P::sb_IsTPAlpha, 0, -1), 1);
}

// A string is asked for its text, not changed.
TEST(CharProperties, SequenceLeavesTheStringShared)
{
    const CT_UString text(U(u"abc")), other(&text);
    s_Yes = 1;
    EXPECT_EQ(P::sb_IsSequenceOf(&text, Ask, 0, 3), 1);
    EXPECT_EQ(UsesOf(text), 2u);
    s_Asked.clear();
}

// ---- Numeric values ------------------------------------------------------------------------------

// A run raises the numerator by one from character to character.
static const struct
{
    const char* units;
    int numerator;
    int denominator;
} NUMBERS[] = {
    {"0030..0039", 0, 1}, {"00B2..00B3", 2, 1}, {"00B9", 1, 1},       {"00BC", 1, 4},
    {"00BD", 1, 2},       {"00BE", 3, 4},       {"0660..0669", 0, 1}, {"06F0..06F9", 0, 1},
    {"0966..096F", 0, 1}, {"09E6..09EF", 0, 1}, {"09F4..09F7", 1, 1}, {"09F8", -1, 1},
    {"09F9", 16, 1},      {"0A66..0A6F", 0, 1}, {"0AE6..0AEF", 0, 1}, {"0B66..0B6F", 0, 1},
    {"0BE7..0BF0", 1, 1}, {"0BF1", 100, 1},     {"0BF2", 1000, 1},    {"0C66..0C6F", 0, 1},
    {"0CE6..0CEF", 0, 1}, {"0D66..0D6F", 0, 1}, {"0E50..0E59", 0, 1}, {"0ED0..0ED9", 0, 1},
    {"0F20..0F29", 0, 1}, {"2070", 0, 1},       {"2074..2079", 4, 1}, {"2080..2089", 0, 1},
    {"2153..2154", 1, 3}, {"2155..2158", 1, 5}, {"2159", 1, 6},       {"215A", 5, 6},
    {"215B", 1, 8},       {"215C", 3, 8},       {"215D", 5, 8},       {"215E", 7, 8},
    {"215F", 1, 1},       {"2160..216B", 1, 1}, {"216C", 50, 1},      {"216D", 100, 1},
    {"216E", 500, 1},     {"216F", 1000, 1},    {"2170..217B", 1, 1}, {"217C", 50, 1},
    {"217D", 100, 1},     {"217E", 500, 1},     {"217F", 1000, 1},    {"2180", 1000, 1},
    {"2181", 5000, 1},    {"2182", 10000, 1},   {"2460..2473", 1, 1}, {"2474..2487", 1, 1},
    {"2488..249B", 1, 1}, {"24EA", 0, 1},       {"2776..277F", 1, 1}, {"2780..2789", 1, 1},
    {"278A..2793", 1, 1}, {"3007", 0, 1},       {"3021..3029", 1, 1}, {"3280..3289", 1, 1},
    {"FF10..FF19", 0, 1},
};

// Both numbers in one, so that they compare at once.
static long Pack(int numerator, int denominator)
{
    return numerator * 256 + denominator;
}

static long NumericValue(Unit unit)
{
    short numerator = 77, denominator = 78;
    P::sv_NumericValue(unit, numerator, denominator);
    return Pack(numerator, denominator);
}

TEST(CharProperties, NumericValuesAreThoseOfTheRunsAndNoOthers)
{
    std::map<Unit, long> values;
    for (const auto& run : NUMBERS) {
        int numerator = run.numerator;
        for (Unit unit : Expand(run.units))
            EXPECT_TRUE(values.emplace(unit, Pack(numerator++, run.denominator)).second);
    }
    EXPECT_EQ(values.size(), 350u);
    EXPECT_EQ(Differences(NumericValue,
                          [&](Unit u) {
                              const auto row = values.find(u);
                              return row == values.end() ? 0 : row->second;
                          }),
              "");
}

TEST(CharProperties, NumericTellingValues)
{
    EXPECT_EQ(NumericValue(0x09F8), Pack(-1, 1));
    EXPECT_EQ(NumericValue(0x0041), Pack(0, 0));
    EXPECT_EQ(NumericValue(0x00BD), Pack(1, 2));
    EXPECT_EQ(NumericValue(0x2154), Pack(2, 3));
    EXPECT_EQ(NumericValue(0x2182), Pack(10000, 1));
    EXPECT_EQ(NumericValue(0x0030), Pack(0, 1));
}

TEST(CharProperties, NumericCategoryNeedsNoNumericValue)
{
    EXPECT_EQ(P::sb_IsNumeric(0x0F2A), 1);
    EXPECT_EQ(NumericValue(0x0F2A), Pack(0, 0));
}
