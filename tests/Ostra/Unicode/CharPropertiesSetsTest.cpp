// tests/Ostra/Unicode/CharPropertiesSetsTest.cpp: the queries by sets of characters, each asked of
// all units.
#include "Ostra/Unicode/CharSupport.h"

#include <Ostra/Unicode/CharProperties.h>

using P = CT_CharProperties;
using namespace std::string_literals;

static const UnitSet APOSTROPHE("0027 02BC 055A FF07");
static const UnitSet COLON("003A 02D0 02D1 061B FE55 FF1A");
static const UnitSet COMMA("002C 055D 060C 201A 3001 FE50 FE51 FF0C FF64");
static const UnitSet DOT("002E 00B7 0589 06D4 3002 FE52 FF0E FF61");
static const UnitSet EXCLAMATION("0021 00A1 055C 203C 2762 2763 FE57 FF01");
static const UnitSet HYPHEN("002D 00AD 2010 2011 FE63 FF0D");
static const UnitSet QUESTION("003F 00BF 037E 055E 061F FE56 FF1F");
static const UnitSet SEMICOLON("003B 061B FE54 FF1B");
static const UnitSet BRACE("007B 007D FE37 FE38 FE5B FE5C FF5B FF5D");
static const UnitSet TABULATOR("0009 000B");
static const UnitSet PARAGRAPH("10FB 2029");
static const UnitSet OPENING_BRACKET("005B 007B 2045 2329 3008 300A 300C 300E 3010 3014 3016 3018 "
                                     "301A FE37 FE39 FE3B FE3D FE3F FE41 FE43 FE5B FE5D FF3B FF5B "
                                     "FF62");
static const UnitSet CLOSING_BRACKET("005D 007D 2046 232A 3009 300B 300D 300F 3011 3015 3017 3019 "
                                     "301B FE38 FE3A FE3C FE3E FE40 FE42 FE44 FE5C FE5E FF3D FF5D "
                                     "FF63");
static const UnitSet QUOTE("0022 00AB 00BB 2018 2019 201A 201B 201C 201D 201E 201F 2039 203A 275B "
                           "275C 275D 275E 301D 301E 301F FF02");
static const UnitSet SINGLE_QUOTE("0027 2018 2019 201A 201B 2039 203A 275B 275C 301D 301E 301F");
static const UnitSet OPENING_QUOTE("00AB 2018 201C 2039");
static const UnitSet CLOSING_QUOTE("00BB 2019 201D 203A");
static const UnitSet PERCENT("0025 066A FE6A FF05");
// a e i o u A E I U O, the vowels of the kana, and the zero.
static const UnitSet VOWEL("0000 0061 0065 0069 006F 0075 0041 0045 0049 0055 004F 3041..304A "
                           "30A1..30AA");

static const struct
{
    const char* name;
    Query query;
    const UnitSet& set;
    unsigned count;
} QUERIES[] = {
    {"Apostrophe", P::sb_IsApostrophe, APOSTROPHE, 4},
    {"Colon", P::sb_IsColon, COLON, 6},
    {"Comma", P::sb_IsComma, COMMA, 9},
    {"Dot", P::sb_IsDot, DOT, 8},
    {"Exclamation", P::sb_IsExclamation, EXCLAMATION, 8},
    {"Hyphen", P::sb_IsHyphen, HYPHEN, 6},
    {"Question", P::sb_IsQuestion, QUESTION, 7},
    {"Semicolon", P::sb_IsSemicolon, SEMICOLON, 4},
    {"Brace", P::sb_IsBrace, BRACE, 8},
    {"Tabulator", P::sb_IsTabulator, TABULATOR, 2},
    {"Paragraph", P::sb_IsParagraph, PARAGRAPH, 2},
    {"OpeningBracket", P::sb_IsOpeningBracket, OPENING_BRACKET, 25},
    {"ClosingBracket", P::sb_IsClosingBracket, CLOSING_BRACKET, 25},
    {"Quote", P::sb_IsQuote, QUOTE, 21},
    {"SingleQuote", P::sb_IsSingleQuote, SINGLE_QUOTE, 12},
    {"OpeningQuote", P::sb_IsOpeningQuote, OPENING_QUOTE, 4},
    {"ClosingQuote", P::sb_IsClosingQuote, CLOSING_QUOTE, 4},
    {"Percent", P::sb_IsPercent, PERCENT, 4},
    {"Vowel", P::sb_IsVowel, VOWEL, 31},
};

TEST(CharProperties, SetsHoldTheirCharactersAndNoOthers)
{
    for (const auto& row : QUERIES) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Differences(row.query, row.set), "");
        EXPECT_EQ(row.set.Count(), row.count);
    }
}

TEST(CharProperties, ZeroIsAVowelAndNothingElse)
{
    for (const auto& row : QUERIES)
        EXPECT_EQ(row.query(0), row.name == "Vowel"s ? 1 : 0) << row.name;
    for (Query query : {P::sb_IsBracket, P::sb_IsDoubleQuote, P::sb_IsSurrounder, P::sb_IsStop})
        EXPECT_EQ(query(0), 0);
}

TEST(CharProperties, ComposedQueriesAreMadeOfTheSets)
{
    const auto bracket = [](Unit u) {
        return OPENING_BRACKET(u) || CLOSING_BRACKET(u);
    };
    EXPECT_EQ(Differences(P::sb_IsBracket, bracket), "");
    EXPECT_EQ(Differences(P::sb_IsDoubleQuote, [](Unit u) { return QUOTE(u) && !SINGLE_QUOTE(u); }),
              "");
    EXPECT_EQ(Differences(P::sb_IsSurrounder,
                          [&](Unit u) { return bracket(u) || QUOTE(u) || APOSTROPHE(u); }),
              "");
    EXPECT_EQ(Differences(P::sb_IsStop,
                          [](Unit u) {
                              return COLON(u) || DOT(u) || EXCLAMATION(u) || QUESTION(u) ||
                                     SEMICOLON(u);
                          }),
              "");
}

TEST(CharProperties, ApostropheIsASingleQuoteAndNoQuote)
{
    EXPECT_EQ(P::sb_IsSingleQuote(0x27), 1);
    EXPECT_EQ(P::sb_IsQuote(0x27), 0);
    EXPECT_EQ(P::sb_IsDoubleQuote(0x27), 0);
    EXPECT_EQ(P::sb_IsSurrounder(0x27), 1);
    EXPECT_EQ(P::sb_IsDoubleQuote(0x22), 1);
}

TEST(CharProperties, SomeCharactersAreInTwoSets)
{
    EXPECT_EQ(P::sb_IsColon(0x061B), 1);
    EXPECT_EQ(P::sb_IsSemicolon(0x061B), 1);
    EXPECT_EQ(P::sb_IsDot(0x00B7), 1);
    EXPECT_EQ(P::sb_IsComma(0x201A), 1);
    EXPECT_EQ(P::sb_IsQuote(0x201A), 1);
}

TEST(CharProperties, CommaIsNoStop)
{
    EXPECT_EQ(P::sb_IsStop(u','), 0);
    EXPECT_EQ(P::sb_IsStop(u';'), 1);
}
