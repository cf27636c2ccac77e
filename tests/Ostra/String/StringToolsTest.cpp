// tests/Ostra/String/StringToolsTest.cpp: sets, replacement, fixed-point numbers.
#include <Ostra/String/StringTools.h>

#include "Ostra/String/StringSupport.h"
#include "Support/Directory.h"
#include "Support/Private.h"

#include <algorithm>
#include <random>

OSTRA_PRIVATE(CheckOffset, void (*)(const CT_UString*, unsigned, int, unsigned*),
              &CT_StringTools::sv_CheckOffset);

namespace
{
unsigned FindAny(const char16_t* set, const char16_t* text, unsigned from, int step)
{
    const CT_UString s(U(text));
    return CT_StringTools::sn_FindAny(U(set), &s, from, step);
}

unsigned FindNot(const char16_t* set, const char16_t* text, unsigned from, int step)
{
    const CT_UString s(U(text));
    return CT_StringTools::sn_FindNot(U(set), &s, from, step);
}

std::string Number(bool wide, int number, unsigned width, char thousands, char decimal,
                   unsigned decimals)
{
    const auto s = Make(wide, "before");
    CT_StringTools::sv_FormatNumber(s.get(), static_cast<unsigned>(number), width, thousands,
                                    decimal, decimals);
    return Ascii(*s);
}

// The number from its last character to its first, as long as the field is wide; then turned
// round. A sign counts as a character of the number wherever it comes to stand.
std::string Model(int number, unsigned width, char thousands, char decimal, unsigned decimals)
{
    std::string digits = std::to_string(number), reversed;
    std::reverse(digits.begin(), digits.end());
    std::size_t used = 0;
    if (decimals) {
        used = std::min<std::size_t>(digits.size(), decimals);
        reversed = digits.substr(0, used) + std::string(decimals - used, '0') + decimal;
        if (used == digits.size())
            reversed += '0';
    }
    for (std::size_t n = used; n < digits.size(); ++n) {
        if (thousands && n > used && (n - used) % 3 == 0 && digits[n] != '-')
            reversed += thousands;
        reversed += digits[n];
    }
    const std::size_t field = width == ALL ? 16 : width;
    reversed.resize(std::min(reversed.size(), field));
    if (width != ALL)
        reversed.append(field - reversed.size(), ' ');
    std::reverse(reversed.begin(), reversed.end());
    return reversed;
}
} // namespace

// ---- Search ---------------------------------------------------------------------------------

TEST(StringTools, FindAnyStopsAtTheFirstUnitOfTheSet)
{
    const struct
    {
        const char16_t* set;
        const char16_t* text;
        unsigned from;
        int step;
        unsigned result;
    } rows[] = {{u"xy", u"abxcy", 0, 1, 2},        {u"xy", u"abxcy", 2, 1, 2},
                {u"xy", u"abxcy", 3, 1, 4},        {u"z", u"abxcy", 0, 1, NONE},
                {u"xy", u"abxcy", 5, 1, NONE}, // the end
                {u"xy", u"abxcy", 4, -1, 4},       {u"xy", u"abxcy", 3, -1, 2},
                {u"xy", u"abxcy", 1, -1, NONE},    {u"a", u"abxcy", 4, -1, 0},
                {u"xy", u"abxcy", NONE, -1, NONE}, // the end of the walk back
                {u"", u"abc", 0, 1, NONE},         {u"", u"abc", 2, -1, NONE},
                {u"a", u"", 0, 1, NONE},           {u"a", u"", 0, -1, NONE},
                {u"\u0416", u"a\u0416", 0, 1, 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        EXPECT_EQ(FindAny(row.set, row.text, row.from, row.step), row.result);
    }
}

TEST(StringTools, FindNotStopsAtTheFirstUnitOutsideTheSet)
{
    const struct
    {
        const char16_t* set;
        const char16_t* text;
        unsigned from;
        int step;
        unsigned result;
    } rows[] = {{u" \t", u"  \tab", 0, 1, 3},  {u" ", u"   ", 0, 1, NONE},
                {u" ", u"ab  ", 3, -1, 1},     {u" ", u"ab  ", 1, -1, 1},
                {u" ", u"   ", 2, -1, NONE},   {u" ", u"x  ", 2, -1, 0},
                {u" ", u"ab", 2, 1, NONE},     {u"", u"ab", 0, 1, 0},
                {u" ", u"ab", NONE, -1, NONE}, {u" ", u"", 0, 1, NONE}};
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        EXPECT_EQ(FindNot(row.set, row.text, row.from, row.step), row.result);
    }
}

// The walk back may begin at the terminator, which is in no set.
TEST(StringTools, WalkBackFromTheEndBeginsWithTheTerminator)
{
    EXPECT_EQ(FindAny(u"b", u"ab", 2, -1), 1u);
    EXPECT_EQ(FindNot(u"ab", u"ab", 2, -1), 2u);
    EXPECT_EQ(FindNot(u"ab", u"", 0, -1), 0u);
}

TEST(StringTools, LengthCountsTerminatorsWithinTheText)
{
    const CT_UString s(U(u"a\0b"), 3);
    EXPECT_EQ(CT_StringTools::sn_FindAny(U(u"b"), &s, 0, 1), 2u);
    EXPECT_EQ(CT_StringTools::sn_FindNot(U(u"ab"), &s, 0, 1), 1u);
}

TEST(StringTools, NoWalkFromBehindTheTextOrWithAnotherStep)
{
    for (int step : {0, 2, -2, 100}) {
        EXPECT_EQ(FindAny(u"a", u"aaa", 0, step), NONE);
        EXPECT_EQ(FindNot(u"a", u"bbb", 2, step), NONE);
    }
    for (int step : {1, -1}) {
        EXPECT_EQ(FindAny(u"a", u"aaa", 4, step), NONE);
        EXPECT_EQ(FindNot(u"a", u"bbb", 0x7FFFFFFF, step), NONE);
    }
}

TEST(StringTools, EndOfAWalkFollowsTheStep)
{
    const CT_UString s(U(u"abc"));
    const auto check = Private(CheckOffset());
    unsigned end = 77;
    check(&s, 0, 2, &end);
    EXPECT_EQ(end, 77u);
    check(&s, 0, 1, &end);
    EXPECT_EQ(end, 3u);
    check(&s, 2, -1, &end);
    EXPECT_EQ(end, NONE);
}

// ---- Replacement ----------------------------------------------------------------------------

TEST(StringTools, ReplacesOneOccurrence)
{
    for (unsigned kinds = 0; kinds < 8; ++kinds) {
        SCOPED_TRACE(kinds);
        const auto s = Make(kinds & 1, "one two two"), find = Make(kinds & 2, "two");
        const auto with = Make(kinds & 4, "a dozen"), nothing = Make(kinds & 4, "");
        const auto sharer = Share(*s);
        EXPECT_EQ(CT_StringTools::sn_Replace(s.get(), find.get(), with.get()), 4u);
        EXPECT_EQ(Ascii(*s), "one a dozen two");
        EXPECT_EQ(CT_StringTools::sn_Replace(s.get(), find.get(), nothing.get()), 12u);
        EXPECT_EQ(Ascii(*s), "one a dozen ");
        EXPECT_EQ(Ascii(*sharer), "one two two");
    }
}

// Kept: position 0 passes for a text without the occurrence.
TEST(StringTools, ReplacesNothingAtTheStart)
{
    OnBoth([](bool wide) {
        const auto s = Make(wide, "two two"), find = Make(wide, "two"), with = Make(wide, "x");
        const void* data = DataOf(*s);
        EXPECT_EQ(CT_StringTools::sn_Replace(s.get(), find.get(), with.get()), 0u);
        EXPECT_EQ(Ascii(*s), "two two");
        EXPECT_EQ(DataOf(*s), data);
        // An empty text is found at the start.
        const auto empty = Make(wide, "");
        EXPECT_EQ(CT_StringTools::sn_Replace(s.get(), empty.get(), with.get()), 0u);
        EXPECT_EQ(Ascii(*s), "two two");
    });
}

TEST(StringTools, ReplacementOfWhatDoesntOccurLeavesTheStringAlone)
{
    OnBoth([](bool wide) {
        const auto s = Make(wide, "one two"), find = Make(wide, "four"), with = Make(wide, "!");
        const auto sharer = Share(*s);
        EXPECT_EQ(CT_StringTools::sn_Replace(s.get(), find.get(), with.get()), NONE);
        EXPECT_EQ(Ascii(*s), "one two");
        EXPECT_EQ(UsesOf(*s), 2u);
    });
}

TEST(StringTools, ReplacesByTheStringItself)
{
    OnBoth([](bool wide) {
        const auto s = Make(wide, "a-b"), find = Make(wide, "-");
        EXPECT_EQ(CT_StringTools::sn_Replace(s.get(), find.get(), s.get()), 1u);
        EXPECT_EQ(Ascii(*s), "aabb");
        const auto t = Make(wide, "a-b");
        EXPECT_EQ(CT_StringTools::sn_Replace(t.get(), find.get(), find.get()), 1u);
        EXPECT_EQ(Ascii(*t), "a-b");
    });
}

// What is cut out is as long as the text looked for is in its own encoding.
TEST(StringTools, LengthOfTheTextLookedForIsItsOwn)
{
    CT_CString bytes("x\xC3\xA9z", ALL, UTF8);
    const CT_UString find(U(u"\u00E9")), with(U(u"-"));
    EXPECT_EQ(CT_StringTools::sn_Replace(&bytes, &find, &with), 1u);
    EXPECT_EQ(Text(bytes), "x-\xA9z");
    CT_UString units(U(u"x\u00E9zz"));
    const CT_CString utf8("\xC3\xA9", ALL, UTF8);
    EXPECT_EQ(CT_StringTools::sn_Replace(&units, &utf8, &with), 1u);
    EXPECT_EQ(Text(units), u"x-z");
}

// ---- Numbers --------------------------------------------------------------------------------

TEST(StringTools, FormatsNumbers)
{
    const struct
    {
        int number;
        unsigned width;
        char thousands, decimal;
        unsigned decimals;
        const char* result;
    } rows[] = {{123456, ALL, ',', '.', 2, "1,234.56"},
                {5, ALL, ',', '.', 2, "0.05"},
                {0, ALL, ',', '.', 0, "0"},
                {0, ALL, ',', '.', 2, "0.00"},
                {56, ALL, ',', '.', 2, "0.56"},
                {156, ALL, ',', '.', 2, "1.56"},
                {123456, 8, ',', '.', 2, "1,234.56"},
                {12345, 8, ',', '.', 2, "  123.45"},
                {7, 3, ',', '.', 0, "  7"},
                {1234567, ALL, 0, '.', 0, "1234567"},
                {1234567, ALL, '.', ',', 3, "1.234,567"},
                {-123, ALL, ',', '.', 0, "-123"},
                {-1234, ALL, ',', '.', 0, "-1,234"},
                {-123456, ALL, ',', '.', 0, "-123,456"},
                {-123456, ALL, ',', '.', 2, "-1,234.56"},
                {0x7FFFFFFF, ALL, ',', '.', 0, "2,147,483,647"},
                {-0x7FFFFFFF - 1, ALL, ',', '.', 2, "-21,474,836.48"},
                // Cut on the left.
                {1234567, 5, ',', '.', 0, "4,567"},
                {1234567, 4, ',', '.', 0, ",567"},
                {123456, 2, ',', '.', 2, "56"},
                {123456, 3, ',', '.', 2, ".56"},
                {123456, 1, ',', '.', 4, "6"},
                {5, 3, ',', '.', 2, ".05"},
                {5, 2, ',', '.', 2, "05"},
                {5, 0, ',', '.', 2, ""},
                {5, ALL, ',', '.', 20, "0000000000000005"},
                {5, ALL, ',', '.', 14, "0.00000000000005"},
                {5, ALL, ',', '.', 15, ".000000000000005"}};
    OnBoth([&](bool wide) {
        for (const auto& row : rows) {
            SCOPED_TRACE(row.result);
            EXPECT_EQ(Number(wide, row.number, row.width, row.thousands, row.decimal, row.decimals),
                      row.result);
        }
    });
}

// Kept: the sign is taken for a digit.
TEST(StringTools, SignTakesThePlaceOfADecimal)
{
    OnBoth([](bool wide) {
        EXPECT_EQ(Number(wide, -5, ALL, ',', '.', 2), "0.-5");
        EXPECT_EQ(Number(wide, -5, ALL, ',', '.', 3), "0.0-5");
        EXPECT_EQ(Number(wide, -56, ALL, ',', '.', 2), "-.56");
        EXPECT_EQ(Number(wide, -156, ALL, ',', '.', 2), "-1.56");
    });
}

// A decimal character of 0 is written, and ends the text.
TEST(StringTools, DecimalCharacterOfZeroEndsTheText)
{
    OnBoth([](bool wide) {
        EXPECT_EQ(Number(wide, 12345, 8, ',', 0, 2), "  123");
        EXPECT_EQ(Number(wide, 12345, ALL, ',', 0, 2), "123");
    });
}

TEST(StringTools, WideFieldsArePadded)
{
    OnBoth([](bool wide) {
        const std::string text = Number(wide, 12, 5000, ',', '.', 1);
        EXPECT_EQ(text, std::string(4997, ' ') + "1.2");
    });
}

TEST(StringTools, SeparatorsAreBytesOfTheStringsCodePage)
{
    CT_CString bytes("", ALL, 1251);
    CT_StringTools::sv_FormatNumber(&bytes, 1234, ALL, '\xA0', '.', 0);
    EXPECT_EQ(Text(bytes), "1\xA0"
                           "234");
    EXPECT_EQ(bytes.n_GetCodePage(), 1251u);
    CT_UString units;
    const CT_UString expected("1\xA0"
                              "234",
                              ALL, 0);
    CT_StringTools::sv_FormatNumber(&units, 1234, ALL, '\xA0', '.', 0);
    EXPECT_EQ(Text(units), Text(expected));
}

TEST(StringTools, NumberLeavesOtherHoldersOfTheBlock)
{
    OnBoth([](bool wide) {
        const auto s = Make(wide, "before");
        const auto sharer = Share(*s);
        CT_StringTools::sv_FormatNumber(s.get(), 1, ALL, 0, '.', 0);
        EXPECT_EQ(Ascii(*s), "1");
        EXPECT_EQ(Ascii(*sharer), "before");
    });
}

TEST(StringTools, NumbersAgreeWithTheModel)
{
    const int least = -0x7FFFFFFF - 1;
    std::vector<int> numbers = {0, 0x7FFFFFFF, least, least + 1};
    for (int power = 1, n = 0; n < 10; ++n, power *= n < 10 ? 10 : 1)
        for (int number :
             {power, power - 1, power + 1, power * 2 - 1, -power, 1 - power, -power - 1})
            numbers.push_back(number);
    std::vector<unsigned> widths = {ALL};
    for (unsigned width = 0; width <= 24; ++width)
        widths.push_back(width);
    const char separators[][2] = {{',', '.'}, {0, '.'}, {'.', ','}, {' ', ' '}, {'-', '-'}};
    for (int number : numbers)
        for (unsigned width : widths)
            for (unsigned decimals = 0; decimals <= 18; ++decimals)
                for (const auto& [thousands, decimal] : separators)
                    ASSERT_EQ(Number(false, number, width, thousands, decimal, decimals),
                              Model(number, width, thousands, decimal, decimals))
                        << number << " " << width << " " << decimals << " " << thousands << decimal;
}

TEST(StringTools, RandomNumbersAgreeWithTheModelInBothClasses)
{
    const unsigned seed = Seed(2502);
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (unsigned n = 0; n < 5000; ++n) {
        const int number = static_cast<int>(random()) >> random() % 32;
        const unsigned width = random() % 4 ? random() % 30 : ALL;
        const unsigned decimals = random() % 2 ? random() % 4 : random() % 24;
        const char thousands = random() % 3 ? '\'' : 0;
        ASSERT_EQ(Number(random() % 2, number, width, thousands, ',', decimals),
                  Model(number, width, thousands, ',', decimals))
            << number << " " << width << " " << decimals;
    }
}
