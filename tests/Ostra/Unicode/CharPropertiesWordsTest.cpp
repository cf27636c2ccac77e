// tests/Ostra/Unicode/CharPropertiesWordsTest.cpp: the three words of information and the queries
// that read them.
#include "Ostra/Unicode/CharSupport.h"
#include "Support/Private.h"

#include <Ostra/Unicode/CharProperties.h>

#include <fstream>

using P = CT_CharProperties;

OSTRA_PRIVATE(AnyWord, Unit (*)(P::et_PropertyClass, Unit), &P::sn2_GetCharacterInfo);

static unsigned CharacterWord(unsigned unit)
{
    return P::sn2_GetCharacterInformation(static_cast<Unit>(unit));
}

static unsigned LayoutWord(unsigned unit)
{
    return P::sn2_GetLayoutInformation(static_cast<Unit>(unit));
}

static unsigned TextWord(unsigned unit)
{
    return P::sn2_GetTextProcessingInformation(static_cast<Unit>(unit));
}

// ---- The words --------------------------------------------------------------------------------

TEST(CharProperties, WordsTellingValues)
{
    static const struct
    {
        unsigned unit, character, layout, text;
    } VALUES[] = {
        {0x0009, 0x68, 9, 0x8},     {0x0020, 0x48, 10, 0x48},   {0x0030, 0x84, 3, 0x40},
        {0x0041, 0x181, 1, 0x8040}, {0x0061, 0x182, 1, 0x8040}, {0x0100, 0x101, 1, 0x8003},
        {0x0101, 0x102, 1, 0x8003}, {0x0300, 0x10, 1, 0x3},     {0x0640, 0x10, 2, 0x601},
        {0x2028, 0x10, 8, 0x8},     {0x3000, 0x48, 10, 0x88},   {0x3041, 0x100, 1, 0x8020},
        {0x30A1, 0x100, 1, 0x8090}, {0x4E00, 0x100, 1, 0x8100}, {0xAC00, 0x100, 1, 0x8000},
        {0xD800, 0, 0, 0},          {0xE000, 0, 0, 0},          {0xFF21, 0x181, 1, 0x8080},
        {0xFF71, 0x100, 1, 0x8050},
    };
    for (const auto& row : VALUES) {
        SCOPED_TRACE(Name(row.unit));
        EXPECT_EQ(CharacterWord(row.unit), row.character);
        EXPECT_EQ(LayoutWord(row.unit), row.layout);
        EXPECT_EQ(TextWord(row.unit), row.text);
    }
}

// The character word of ASCII is what the system's classification of characters has always been.
TEST(CharProperties, CharacterWordOfAsciiIsTheSystems)
{
    static const struct
    {
        const char* units;
        unsigned word;
    } ROWS[] = {
        {"0000..0008 000E..001F 007F", 0x20},
        {"0009", 0x68},
        {"000A..000D", 0x28},
        {"0020", 0x48},
        {"0021..002F 003A..0040 005B..0060 007B..007E", 0x10},
        {"0030..0039", 0x84},
        {"0041..0046", 0x181},
        {"0047..005A", 0x101},
        {"0061..0066", 0x182},
        {"0067..007A", 0x102},
    };
    for (const auto& row : ROWS)
        for (Unit unit : Expand(row.units))
            EXPECT_EQ(CharacterWord(unit), row.word) << Name(unit);
}

TEST(CharProperties, WordsAreNothingFromTheLastRowOn)
{
    for (unsigned unit = 0xFFEF; unit < UNITS; ++unit) {
        EXPECT_EQ(CharacterWord(unit), 0u) << Name(unit);
        EXPECT_EQ(LayoutWord(unit), 0u) << Name(unit);
        EXPECT_EQ(TextWord(unit), 0u) << Name(unit);
    }
}

// The rows of a word, read from its source: 256 single rows, then ranges in order, of which the last
// has the value 0. A unit without a row has the value 0.
static std::vector<unsigned> WordsOf(const std::string& source, unsigned ranges)
{
    std::vector<unsigned> words(UNITS);
    std::ifstream file(OSTRA_UNICODE_DATA "/" + source);
    std::string line, first, last, value;
    std::getline(file, line); // the heading
    unsigned rows = 0, next = 0, word = 1;
    for (; file >> first >> last >> value; ++rows) {
        const unsigned from = std::stoul(first, nullptr, 16), to = std::stoul(last, nullptr, 16);
        EXPECT_TRUE(rows < 256 ? from == rows && to == rows : next <= from && from <= to) << first;
        next = to + 1;
        word = std::stoul(value, nullptr, 0);
        for (unsigned unit = from; unit <= to; ++unit)
            words[unit] = word;
    }
    EXPECT_EQ(rows, 256 + ranges);
    EXPECT_EQ(first + ".." + last, "FFEF..FFFF");
    EXPECT_EQ(word, 0u);
    return words;
}

TEST(CharProperties, WordsAreThoseOfTheirRows)
{
    static const struct
    {
        const char* source;
        unsigned ranges;
        unsigned (*word)(unsigned);
    } WORDS[] = {
        {"ctype1.tsv", 1311, CharacterWord},
        {"ctype2.tsv", 630, LayoutWord},
        {"ctype3.tsv", 877, TextWord},
    };
    for (const auto& row : WORDS) {
        SCOPED_TRACE(row.source);
        const std::vector<unsigned> words = WordsOf(row.source, row.ranges);
        EXPECT_EQ(Differences(row.word, [&](Unit u) { return words[u]; }), "");
    }
}

TEST(CharProperties, WordsHaveNoBitsBesideTheirOwn)
{
    EXPECT_EQ(Count([](Unit u) { return CharacterWord(u) & ~0x01FFu; }), 0u);
    EXPECT_EQ(Count([](Unit u) { return TextWord(u) & ~0x87FFu; }), 0u);
    EXPECT_EQ(Count([](Unit u) { return LayoutWord(u) > 11; }), 0u);
}

TEST(CharProperties, LayoutComesAsAnEnumerationToo)
{
    EXPECT_EQ(Differences(P::seo_GetLayoutInformation, LayoutWord), "");
}

TEST(CharProperties, ClassSelectsTheWord)
{
    const auto word = [](int n) {
        return [n](Unit u) {
            return Private(AnyWord())(static_cast<P::et_PropertyClass>(n), u);
        };
    };
    EXPECT_EQ(Differences(word(0), CharacterWord), "");
    EXPECT_EQ(Differences(word(1), LayoutWord), "");
    EXPECT_EQ(Differences(word(2), TextWord), "");
    for (int stranger : {-1, 3, 4, 256, 65536, 0x7FFFFFFF})
        EXPECT_EQ(Differences(word(stranger), [](Unit) { return 0; }), "") << stranger;
}

// ---- Queries by the character word ------------------------------------------------------------

TEST(CharProperties, SpaceAndHexadecimalDigitAnswerTheirMask)
{
    EXPECT_EQ(P::sb_IsSpace(0x20), 8);
    EXPECT_EQ(P::sb_IsXDigit(u'f'), 0x80);
    EXPECT_EQ(P::sb_IsXDigit(u'g'), 0);
    EXPECT_EQ(Differences(P::sb_IsSpace, [](Unit u) { return CharacterWord(u) & 0x08; }), "");
    EXPECT_EQ(Differences(P::sb_IsXDigit, [](Unit u) { return CharacterWord(u) & 0x80; }), "");
}

TEST(CharProperties, LineFeedAndSpaceAreBlankWhateverTheirWord)
{
    EXPECT_EQ(CharacterWord(0x0A) & 0x40, 0u);
    EXPECT_EQ(P::sb_IsBlank(0x0A), 1);
    EXPECT_EQ(P::sb_IsBlank(0x20), 1);
    EXPECT_EQ(P::sb_IsBlank(0x09), 1);
    EXPECT_EQ(P::sb_IsBlank(0x0D), 0);
    EXPECT_EQ(P::sb_IsBlank(0x3000), 1);
    EXPECT_EQ(Differences(P::sb_IsBlank,
                          [](Unit u) { return u == 0x0A || u == 0x20 || CharacterWord(u) & 0x40; }),
              "");
}

// ---- Queries by the text processing word --------------------------------------------------------

TEST(CharProperties, TextProcessingQueriesAnswerTheirBit)
{
    static const struct
    {
        const char* name;
        Query query;
        int bit;
        Unit one; // has the bit; 0, which has none, where no character is known to
    } QUERIES[] = {
        {"Nonspacing", P::sb_IsTPNonspacing, 0x0001, 0x0300},
        {"Diacritic", P::sb_IsTPDiacritic, 0x0002, 0x0300},
        {"VowelMark", P::sb_IsTPVowelMark, 0x0004, 0},
        {"Symbol", P::sb_IsTPSymbol, 0x0008, 0x2028},
        {"Katakana", P::sb_IsTPKatakana, 0x0010, 0x30A1},
        {"Hiragana", P::sb_IsTPHiragana, 0x0020, 0x3041},
        {"Halfwidth", P::sb_IsTPHalfwidth, 0x0040, 0xFF71},
        {"Fullwidth", P::sb_IsTPFullwidth, 0x0080, 0xFF21},
        {"Ideograph", P::sb_IsTPIdeograph, 0x0100, 0x4E00},
        {"Kashida", P::sb_IsTPKashida, 0x0200, 0x0640},
        {"Lexical", P::sb_IsTPLexical, 0x0400, 0x0640},
        {"Alpha", P::sb_IsTPAlpha, 0x8000, 0xAC00},
    };
    for (const auto& row : QUERIES) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Differences(row.query, [&](Unit u) { return TextWord(u) & row.bit; }), "");
        EXPECT_EQ(row.query(row.one), row.one ? row.bit : 0);
        EXPECT_GT(Count(row.query), 0u);
    }
}

// ---- Queries by the layout word -----------------------------------------------------------------

TEST(CharProperties, LayoutQueriesHoldForTheirValues)
{
    static const struct
    {
        const char* name;
        Query query;
        unsigned first, last;
    } QUERIES[] = {
        {"NoDirectionality", P::sb_LayoutNoDirectionality, 0, 0},
        {"LeftToRight", P::sb_LayoutLeftToRight, 1, 1},
        {"StrongDirectionality", P::sb_LayoutStrongDirectionality, 1, 1},
        {"RightToLeft", P::sb_LayoutRightToLeft, 2, 2},
        {"EuropeNumber", P::sb_LayoutEuropeNumber, 3, 3},
        {"EuropeSeparator", P::sb_LayoutEuropeSeparator, 4, 4},
        {"EuropeTerminator", P::sb_LayoutEuropeTerminator, 5, 5},
        {"ArabicNumber", P::sb_LayoutArabicNumber, 6, 6},
        {"CommonSeparator", P::sb_LayoutCommonSeparator, 7, 7},
        {"BlockSeparator", P::sb_LayoutBlockSeparator, 8, 8},
        {"SegmentSeparator", P::sb_LayoutSegmentSeparator, 9, 9},
        {"Whitespace", P::sb_LayoutWhitespace, 10, 10},
        {"OtherNeutral", P::sb_LayoutOtherNeutral, 11, 11},
        {"WeakDirectionality", P::sb_LayoutWeakDirectionality, 3, 7},
        {"NeutralDirectionality", P::sb_LayoutNeutralDirectionality, 8, 11},
    };
    for (const auto& row : QUERIES) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Differences(row.query,
                              [&](Unit u) {
                                  const unsigned word = LayoutWord(u);
                                  return row.first <= word && word <= row.last;
                              }),
                  "");
        EXPECT_GT(Count(row.query), 0u);
    }
}

TEST(CharProperties, RightToLeftIsNotStrong)
{
    EXPECT_EQ(P::sb_LayoutRightToLeft(0x05D0), 1);
    EXPECT_EQ(P::sb_LayoutStrongDirectionality(0x05D0), 0);
    EXPECT_EQ(P::sb_LayoutStrongDirectionality(u'A'), 1);
}
