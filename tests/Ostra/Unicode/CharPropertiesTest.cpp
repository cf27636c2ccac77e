// tests/Ostra/Unicode/CharPropertiesTest.cpp: category, block and names.
#include "Ostra/Unicode/CharSupport.h"
#include "Support/Failure.h"

#include <Ostra/Unicode/CharProperties.h>

#include <algorithm>
#include <climits>
#include <iterator>
#include <type_traits>

using P = CT_CharProperties;

static unsigned Property(unsigned unit)
{
    return P::seo_GetUnicodeProperty(static_cast<Unit>(unit));
}

static unsigned Block(unsigned unit)
{
    return P::seo_GetUnicodeBlock(static_cast<Unit>(unit));
}

static std::string BlockName(int value)
{
    return Narrow(Wide(P::sqcuz_UnicodeBlockName(static_cast<P::et_UnicodeBlock>(value))));
}

static std::string PropertyName(int value)
{
    return Narrow(Wide(P::sqcuz_UnicodePropertyName(static_cast<P::et_UnicodeProperty>(value))));
}

// Values that neither enumeration names.
static const int STRANGERS[] = {-1, 71, 100, 255, 256, 65535, 65536 + 1, INT_MAX, INT_MIN};

// ---- General category -----------------------------------------------------------------------

#define PROPERTY(value, name)                                                                      \
    {                                                                                              \
        value, P::name, #name                                                                      \
    }

static const struct
{
    int value;
    P::et_UnicodeProperty enumerator;
    const char* name;
} PROPERTIES[] = {
    PROPERTY(0, MarkNonSpacing),     PROPERTY(1, MarkSpacingCombining),
    PROPERTY(2, MarkEnclosing),      PROPERTY(3, NumberDecimalDigit),
    PROPERTY(4, NumberLetter),       PROPERTY(5, NumberOther),
    PROPERTY(6, SeparatorSpace),     PROPERTY(7, SeparatorLine),
    PROPERTY(8, SeparatorParagraph), PROPERTY(9, OtherControl),
    PROPERTY(10, OtherFormat),       PROPERTY(11, OtherSurrogate),
    PROPERTY(12, OtherPrivateUse),   PROPERTY(13, OtherNotAssigned),
    PROPERTY(14, LetterUppercase),   PROPERTY(15, LetterLowercase),
    PROPERTY(16, LetterTitlecase),   PROPERTY(17, LetterModifier),
    PROPERTY(18, LetterOther),       PROPERTY(19, PunctuationConnector),
    PROPERTY(20, PunctuationDash),   PROPERTY(21, PunctuationOpen),
    PROPERTY(22, PunctuationClose),  PROPERTY(23, PunctuationOther),
    PROPERTY(24, SymbolMath),        PROPERTY(25, SymbolCurrency),
    PROPERTY(26, SymbolModifier),    PROPERTY(27, SymbolOther),
};

TEST(CharProperties, CategoriesHaveTheirValuesAndNames)
{
    int next = 0;
    for (const auto& row : PROPERTIES) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.value, next++);
        EXPECT_EQ(static_cast<int>(row.enumerator), row.value);
        EXPECT_EQ(PropertyName(row.value), row.name);
    }
    EXPECT_EQ(next, 28);
}

TEST(CharProperties, CategoryWithoutANameIsUnknown)
{
    EXPECT_EQ(PropertyName(28), "Unknown");
    EXPECT_EQ(PropertyName(29), "Unknown");
    for (int value : STRANGERS)
        EXPECT_EQ(PropertyName(value), "Unknown") << value;
}

TEST(CharProperties, EnumerationsTakeAnyNumber)
{
    EXPECT_EQ(static_cast<int>(static_cast<P::et_UnicodeProperty>(INT_MIN)), INT_MIN);
    EXPECT_EQ(static_cast<int>(static_cast<P::et_UnicodeBlock>(INT_MAX)), INT_MAX);
    EXPECT_EQ(static_cast<int>(static_cast<P::et_LayoutProperty>(-1)), -1);
    EXPECT_EQ(static_cast<int>(static_cast<P::et_PropertyClass>(-1)), -1);
}

// The rows run over positions that nothing is assigned to; the last character of a row and the
// first one behind it stand beside it.
TEST(CharProperties, CategoryRowsRunOverUnassignedPositions)
{
    static const struct
    {
        const char* units;
        unsigned value;
    } ROWS[] = {
        {"0000..001F 007F..009F", 9},
        {"0217..02A8", 15},
        {"0388..038F", 14},
        {"05F3..061F", 23},
        {"2500..2767", 27},
        {"FB00..FB17", 15},
        {"FFED..FFFD", 27},
        {"D800..DFFF", 11},
        {"E000..F8FF", 12},
        {"AC00..D7A3 4E00..9FA5", 18},
        {"0234", 15},
        {"FFF0", 27},
        {"20AC 3400 9FA6 D7A4", 28},
        {"FFFE FFFF", 28},
    };
    for (const auto& row : ROWS)
        for (Unit unit : Expand(row.units))
            EXPECT_EQ(Property(unit), row.value) << Name(unit);
}

TEST(CharProperties, CategoriesAreThoseBeforeInitialAndFinalPunctuation)
{
    EXPECT_EQ(Property(0x00AB), 21u);
    EXPECT_EQ(Property(0x00BB), 22u);
}

TEST(CharProperties, NoCharacterIsNotAssignedOrBeyondUnknown)
{
    EXPECT_EQ(Count([](Unit u) { return Property(u) == 13 || Property(u) > 28; }), 0u);
}

// ---- Queries by category ----------------------------------------------------------------------

static bool OneOf(unsigned value, std::initializer_list<unsigned> values)
{
    return std::find(values.begin(), values.end(), value) != values.end();
}

TEST(CharProperties, QueriesByCategoryHoldForTheirCategories)
{
    static const struct
    {
        const char* name;
        Query query;
        std::initializer_list<unsigned> values;
    } QUERIES[] = {
        {"Upper", P::sb_IsUpper, {14}},
        {"Lower", P::sb_IsLower, {15}},
        {"Digit", P::sb_IsDigit, {3}},
        {"Numeric", P::sb_IsNumeric, {3, 4, 5}},
        {"Punct", P::sb_IsPunct, {19, 20, 21, 22, 23}},
        {"Cntrl", P::sb_IsCntrl, {9}},
        {"Alpha", P::sb_IsAlpha, {14, 15, 16, 17, 18}},
        {"Print", P::sb_IsPrint, {0,  1,  2,  3,  4,  5,  6,  7,  8,  10, 11, 12, 13, 14,
                                  15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28}},
        {"Graph", P::sb_IsGraph, {0,  1,  2,  3,  4,  5,  11, 12, 14, 15, 16,
                                  17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27}},
        {"AlDig", P::sb_IsAlDig, {3, 14, 15, 16, 17, 18}},
        {"AlNum", P::sb_IsAlNum, {3, 4, 5, 14, 15, 16, 17, 18}},
    };
    for (const auto& row : QUERIES)
        EXPECT_EQ(Differences(row.query, [&](Unit u) { return OneOf(Property(u), row.values); }),
                  "")
            << row.name;
}

TEST(CharProperties, UnknownCharacterPrintsWithoutAGraph)
{
    EXPECT_EQ(Property(0x20AC), 28u);
    EXPECT_EQ(P::sb_IsPrint(0x20AC), 1);
    EXPECT_EQ(P::sb_IsGraph(0x20AC), 0);
}

TEST(CharProperties, QueriesByCategoryTellingValues)
{
    EXPECT_EQ(P::sb_IsUpper(u'A'), 1);
    EXPECT_EQ(P::sb_IsUpper(0x01C5), 0);
    EXPECT_EQ(P::sb_IsAlpha(0x01C5), 1);
    EXPECT_EQ(P::sb_IsLower(0x00DF), 1);
    EXPECT_EQ(P::sb_IsDigit(0x0F20), 1);
    EXPECT_EQ(P::sb_IsDigit(0x00BD), 0);
    EXPECT_EQ(P::sb_IsNumeric(0x00BD), 1);
    EXPECT_EQ(P::sb_IsNumeric(0x2160), 1);
    EXPECT_EQ(P::sb_IsAlDig(0x2160), 0);
    EXPECT_EQ(P::sb_IsAlNum(0x2160), 1);
    EXPECT_EQ(P::sb_IsCntrl(0), 1);
    EXPECT_EQ(P::sb_IsGraph(u' '), 0);
    EXPECT_EQ(P::sb_IsGraph(0x200E), 0);
    EXPECT_EQ(P::sb_IsGraph(0xD800), 1);
    EXPECT_EQ(P::sb_IsPunct(u'_'), 1);
    EXPECT_EQ(P::sb_IsPunct(u'+'), 0);
}

// ---- Blocks -----------------------------------------------------------------------------------

#define BLOCK(value, name, first, last)                                                            \
    {                                                                                              \
        value, P::name, #name, first, last                                                         \
    }
#define GAP(first, last) BLOCK(70, Unassigned, first, last)

// The rows in their order.
static const struct BlockRow
{
    unsigned value;
    P::et_UnicodeBlock enumerator;
    const char* name;
    unsigned first;
    unsigned last;
} BLOCKS[] = {
    BLOCK(1, BasicLatin, 0x0000, 0x007F),
    BLOCK(2, Latin1Supplement, 0x0080, 0x00FF),
    BLOCK(3, LatinExtendedA, 0x0100, 0x017F),
    BLOCK(4, LatinExtendedB, 0x0180, 0x024F),
    BLOCK(5, IPAExtensions, 0x0250, 0x02AF),
    BLOCK(6, SpacingModifierLetters, 0x02B0, 0x02FF),
    BLOCK(7, CombiningDiacriticalMarks, 0x0300, 0x036F),
    BLOCK(8, Greek, 0x0370, 0x03FF),
    BLOCK(9, Cyrillic, 0x0400, 0x04FF),
    GAP(0x0500, 0x052F),
    BLOCK(10, Armenian, 0x0530, 0x058F),
    BLOCK(11, Hebrew, 0x0590, 0x05FF),
    BLOCK(12, Arabic, 0x0600, 0x06FF),
    GAP(0x0700, 0x08FF),
    BLOCK(13, Devanagari, 0x0900, 0x097F),
    BLOCK(14, Bengali, 0x0980, 0x09FF),
    BLOCK(15, Gurmukhi, 0x0A00, 0x0A7F),
    BLOCK(16, Gujarati, 0x0A80, 0x0AFF),
    BLOCK(17, Oriya, 0x0B00, 0x0B7F),
    BLOCK(18, Tamil, 0x0B80, 0x0BFF),
    BLOCK(19, Telugu, 0x0C00, 0x0C7F),
    BLOCK(20, Kannada, 0x0C80, 0x0CFF),
    BLOCK(21, Malayalam, 0x0D00, 0x0D7F),
    GAP(0x0D80, 0x0DFF),
    BLOCK(22, Thai, 0x0E00, 0x0E7F),
    BLOCK(23, Lao, 0x0E80, 0x0EFF),
    BLOCK(24, Tibetan, 0x0F00, 0x0FBF),
    GAP(0x0FC0, 0x109F),
    BLOCK(25, Georgian, 0x10A0, 0x10FF),
    BLOCK(26, HangulJamo, 0x1100, 0x11FF),
    GAP(0x1200, 0x1DFF),
    BLOCK(27, LatinExtendedAdditional, 0x1E00, 0x1EFF),
    BLOCK(28, GreekExtended, 0x1F00, 0x1FFF),
    BLOCK(29, GeneralPunctuation, 0x2000, 0x206F),
    BLOCK(30, SuperscriptsAndSubscripts, 0x2070, 0x209F),
    BLOCK(31, CurrencySymbols, 0x20A0, 0x20CF),
    BLOCK(32, CombiningMarksForSymbols, 0x20D0, 0x20FF),
    BLOCK(33, LetterlikeSymbols, 0x2100, 0x214F),
    BLOCK(34, NumberForms, 0x2150, 0x218F),
    BLOCK(35, Arrows, 0x2190, 0x21FF),
    BLOCK(36, MathematicalOperators, 0x2200, 0x22FF),
    BLOCK(37, MiscellaneousTechnical, 0x2300, 0x23FF),
    BLOCK(38, ControlPictures, 0x2400, 0x243F),
    BLOCK(39, OpticalCharacterRecognition, 0x2440, 0x245F),
    BLOCK(40, EnclosedAlphanumerics, 0x2460, 0x24FF),
    BLOCK(41, BoxDrawing, 0x2500, 0x257F),
    BLOCK(42, BlockElements, 0x2580, 0x259F),
    BLOCK(43, GeometricShapes, 0x25A0, 0x25FF),
    BLOCK(44, MiscellaneousSymbols, 0x2600, 0x26FF),
    BLOCK(45, Dingbats, 0x2700, 0x27BF),
    GAP(0x27C0, 0x2FFF),
    BLOCK(46, CJKSymbolsAndPunctuation, 0x3000, 0x303F),
    BLOCK(47, Hiragana, 0x3040, 0x309F),
    BLOCK(48, Katakana, 0x30A0, 0x30FF),
    BLOCK(49, Bopomofo, 0x3100, 0x312F),
    BLOCK(50, HangulCompatibilityJamo, 0x3130, 0x318F),
    BLOCK(51, Kanbun, 0x3190, 0x319F),
    GAP(0x31A0, 0x31FF),
    BLOCK(52, EnclosedCJKLettersAndMonths, 0x3200, 0x32FF),
    BLOCK(53, CJKCompatibility, 0x3300, 0x33FF),
    GAP(0x3400, 0x4DFF),
    BLOCK(54, CJKUnifiedIdeographs, 0x4E00, 0x9FFF),
    GAP(0xA000, 0xABFF),
    BLOCK(55, HangulSyllables, 0xAC00, 0xD7A3),
    GAP(0xD7A4, 0xD7FF),
    BLOCK(56, HighSurrogates, 0xD800, 0xDB7F),
    BLOCK(57, HighPrivateUseSurrogates, 0xDB80, 0xDBFF),
    BLOCK(58, LowSurrogates, 0xDC00, 0xDFFF),
    BLOCK(59, PrivateUse, 0xE000, 0xF8FF),
    BLOCK(60, CJKCompatibilityIdeographs, 0xF900, 0xFAFF),
    BLOCK(61, AlphabeticPresentationForms, 0xFB00, 0xFB4F),
    BLOCK(62, ArabicPresentationFormsA, 0xFB50, 0xFDFF),
    GAP(0xFE00, 0xFE1F),
    BLOCK(63, CombiningHalfMarks, 0xFE20, 0xFE2F),
    BLOCK(64, CJKCompatibilityForms, 0xFE30, 0xFE4F),
    BLOCK(65, SmallFormVariants, 0xFE50, 0xFE6F),
    BLOCK(66, ArabicPresentationFormsB, 0xFE70, 0xFEFF),
    BLOCK(67, HalfwidthAndFullwidthForms, 0xFF00, 0xFFEF),
    BLOCK(68, Specials1, 0xFEFF, 0xFEFF),
    BLOCK(69, Specials2, 0xFFF0, 0xFFFF),
};

// The search that the order of the rows is made for: the middle of an even number of rows is the
// last of the first half.
static unsigned SearchBlocks(unsigned unit)
{
    const BlockRow* first = BLOCKS;
    for (std::size_t n = std::size(BLOCKS); n;) {
        const std::size_t half = n / 2, middle = n % 2 ? half : half - 1;
        if (unit < first[middle].first)
            n = middle;
        else if (unit <= first[middle].last)
            return first[middle].value;
        else {
            first += middle + 1;
            n -= middle + 1;
        }
    }
    return 0;
}

TEST(CharProperties, BlocksHaveTheirValuesAndNames)
{
    unsigned seen = 0;
    for (const BlockRow& row : BLOCKS) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.value, row.value == 70 ? 70 : ++seen);
        EXPECT_EQ(static_cast<unsigned>(row.enumerator), row.value);
        EXPECT_EQ(BlockName(static_cast<int>(row.value)), row.name);
    }
    EXPECT_EQ(seen, 69u);
    EXPECT_EQ(std::size(BLOCKS), 80u);
}

TEST(CharProperties, BlockWithoutANameIsUnknown)
{
    EXPECT_EQ(BlockName(0), "Unknown");
    EXPECT_EQ(BlockName(70), "Unassigned");
    for (int value : STRANGERS)
        EXPECT_EQ(BlockName(value), "Unknown") << value;
}

TEST(CharProperties, BlockIsWhatTheSearchOverTheRowsFinds)
{
    EXPECT_EQ(Differences(Block, SearchBlocks), "");
}

TEST(CharProperties, BlockOfEveryRowButTheShadowedOne)
{
    unsigned covered = 0;
    for (const BlockRow& row : BLOCKS) {
        if (row.value == 68)
            continue;
        for (unsigned unit = row.first; unit <= row.last; ++unit, ++covered)
            ASSERT_EQ(Block(unit), row.value) << Name(unit);
    }
    EXPECT_EQ(covered, UNITS);
}

TEST(CharProperties, ByteOrderMarkIsAnArabicPresentationForm)
{
    EXPECT_EQ(P::seo_GetUnicodeBlock(0xFEFF), P::ArabicPresentationFormsB);
    EXPECT_EQ(Count([](Unit u) { return Block(u) == 68; }), 0u);
    EXPECT_EQ(Count([](Unit u) { return Block(u) == 0; }), 0u);
}

// ---- Names ------------------------------------------------------------------------------------

TEST(CharProperties, NoCharacterHasAName)
{
    EXPECT_EQ(Count([](Unit u) { return P::sqcuz_GetCharacterName(u) != nullptr; }), 0u);
}

TEST(CharProperties, NamesAreTextsOfTheLibrary)
{
    for (int value = -1; value <= 71; ++value) {
        const auto block = static_cast<P::et_UnicodeBlock>(value);
        EXPECT_EQ(P::sqcuz_UnicodeBlockName(block), P::sqcuz_UnicodeBlockName(block));
        const auto property = static_cast<P::et_UnicodeProperty>(value);
        EXPECT_EQ(P::sqcuz_UnicodePropertyName(property), P::sqcuz_UnicodePropertyName(property));
    }
}

TEST(CharProperties, AssignmentIsTrivial)
{
    EXPECT_TRUE(std::is_trivially_copy_assignable_v<P>);
    EXPECT_TRUE(std::is_empty_v<P>);
}
