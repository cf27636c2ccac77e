// tests/System/LocaleInfo/FormatStringTest.cpp
#include <System/LocaleInfo/FormatString.h>
#include <System/LocaleInfo/LocaleInfo.h>

#include <windows.h>

#include "Ostra/String/StringSupport.h"

#include <limits>

namespace
{
// The text of a string, the same in both kinds; "0:" in front of it where the result is 0.
template <typename T>
std::string Format(T number, unsigned locale, unsigned digits, unsigned grouping)
{
    std::string texts[2];
    for (const bool wide : {false, true}) {
        const auto out = Make(wide, "before");
        if (!CT_FormatString::sb_FormatNumber(out.get(), number, locale, digits, grouping))
            texts[wide] = "0:";
        texts[wide] += Ascii(*out);
    }
    EXPECT_EQ(texts[0], texts[1]);
    return texts[0];
}

// Puts the thread's locale back.
class ThreadLocale
{
public:
    explicit ThreadLocale(unsigned locale) { EXPECT_TRUE(SetThreadLocale(locale)); }
    ~ThreadLocale() { SetThreadLocale(before); }

private:
    LCID before = GetThreadLocale();
};

constexpr unsigned ENGLISH = 0x0409;
constexpr unsigned GERMAN = 0x0407;
} // namespace

TEST(FormatString, ANumberHasTheSeparatorsOfTheLocale)
{
    EXPECT_EQ(Format(1234567U, ENGLISH, 0, 3), "1,234,567");
    EXPECT_EQ(Format(1234567U, GERMAN, 0, 3), "1.234.567");
    EXPECT_EQ(Format(1234567U, ENGLISH, 2, 3), "1,234,567.00");
    EXPECT_EQ(Format(1234567U, GERMAN, 2, 3), "1.234.567,00");
}

TEST(FormatString, TheGroupingIsTheCallers)
{
    EXPECT_EQ(Format(1234567U, ENGLISH, 0, 0), "1234567");
    EXPECT_EQ(Format(1234567U, ENGLISH, 0, 32), "12,34,567");
    EXPECT_EQ(Format(1234567U, ENGLISH, 0, 30), "1234,567");
    EXPECT_EQ(Format(1234567U, ENGLISH, 0, 1), "1,2,3,4,5,6,7");
}

TEST(FormatString, AnIntegerHasNoSign)
{
    EXPECT_EQ(Format(0U, ENGLISH, 0, 3), "0");
    EXPECT_EQ(Format(4294967295U, ENGLISH, 0, 3), "4,294,967,295");
}

TEST(FormatString, AFloatIsRoundedHalfAwayFromZeroOnItsSixDecimals)
{
    EXPECT_EQ(Format(1234.5F, ENGLISH, 2, 3), "1,234.50");
    EXPECT_EQ(Format(0.125F, ENGLISH, 2, 3), "0.13");
    EXPECT_EQ(Format(2.5F, ENGLISH, 0, 3), "3");
    EXPECT_EQ(Format(-2.5F, ENGLISH, 0, 3), "-3");
    EXPECT_EQ(Format(0.1F, ENGLISH, 9, 3), "0.100000000");
    EXPECT_EQ(Format(0.0000004F, ENGLISH, 7, 3), "0.0000000");
    EXPECT_EQ(Format(16777216.0F, GERMAN, 1, 3), "16.777.216,0");
}

TEST(FormatString, ANegativeNumberHasTheLocalesOrder)
{
    EXPECT_EQ(Format(-1234.5F, ENGLISH, 2, 3), "-1,234.50");
    const char* const orders[] = {"(1.5)", "-1.5", "- 1.5", "1.5-", "1.5 -"};
    unsigned seen = 0;
    for (const unsigned locale : {0x0401, 0x0409, 0x040C, 0x0411, 0x0412, 0x041E, 0x0429, 0x0439}) {
        SCOPED_TRACE(locale);
        char order[8] = {}, decimal[8] = {};
        ASSERT_TRUE(GetLocaleInfoA(locale, LOCALE_INEGNUMBER, order, sizeof(order)));
        ASSERT_TRUE(GetLocaleInfoA(locale, LOCALE_SDECIMAL, decimal, sizeof(decimal)));
        std::string expected = orders[order[0] - '0'];
        expected.replace(expected.find('.'), 1, decimal);
        CT_CString out(1252);
        EXPECT_EQ(CT_FormatString::sb_FormatNumber(&out, -1.5F, locale, 1, 3), 1);
        EXPECT_EQ(Text(out), expected);
        ++seen;
    }
    EXPECT_EQ(seen, 8U);
}

TEST(FormatString, ALocaleOf0IsTheThreads)
{
    {
        const ThreadLocale german(GERMAN);
        EXPECT_EQ(Format(1234567U, 0, 1, 3), "1.234.567,0");
        EXPECT_EQ(Format(-0.5F, 0, 1, 3), "-0,5");
    }
    const ThreadLocale english(ENGLISH);
    EXPECT_EQ(Format(1234567U, 0, 1, 3), "1,234,567.0");
    EXPECT_EQ(Format(-0.5F, 0, 1, 3), "-0.5");
}

TEST(FormatString, ALocaleThatIsNotSupportedLeavesTheString)
{
    for (const unsigned locale : {0x400U, 0x800U, 0x080DU, 0xFC09U}) {
        EXPECT_EQ(Format(5U, locale, 0, 3), "0:before") << locale;
        EXPECT_EQ(Format(5.0F, locale, 0, 3), "0:before") << locale;
    }
    const auto out = Make(true, "before");
    const auto holder = Share(*out);
    EXPECT_EQ(CT_FormatString::sb_FormatNumber(out.get(), 5U, 0x400, 0, 3), 0);
    EXPECT_EQ(DataOf(*out), DataOf(*holder));
}

// A repair would leave the string, or tell the failure.
TEST(FormatString, WhatIsNoNumberGivesAnEmptyText)
{
    using Limits = std::numeric_limits<float>;
    EXPECT_EQ(Format(Limits::infinity(), ENGLISH, 2, 3), "");
    EXPECT_EQ(Format(-Limits::infinity(), ENGLISH, 2, 3), "");
    EXPECT_EQ(Format(Limits::quiet_NaN(), ENGLISH, 2, 3), "");
}

TEST(FormatString, ATextOf64BytesWithItsTerminatorIsTheLongest)
{
    const float most = std::numeric_limits<float>::max();
    EXPECT_EQ(Format(most, ENGLISH, 0, 0), "340282346638528859811704183484516925440");
    EXPECT_EQ(Format(most, ENGLISH, 2, 3),
              "340,282,346,638,528,859,811,704,183,484,516,925,440.00");
    EXPECT_EQ(Format(0U, ENGLISH, 61, 3), "0." + std::string(61, '0'));
}

TEST(FormatString, ALongerTextIsEmpty)
{
    EXPECT_EQ(Format(0U, ENGLISH, 62, 3), "");
    EXPECT_EQ(Format(std::numeric_limits<float>::max(), ENGLISH, 2, 1), "");
    EXPECT_EQ(Format(1.5F, ENGLISH, 1000, 3), "");
    EXPECT_EQ(Format(1.5F, ENGLISH, 0xFFFFFFFF, 3), "");
}

TEST(FormatString, TheStringKeepsItsCodePage)
{
    CT_CString out("before", ALL, 1253);
    EXPECT_EQ(CT_FormatString::sb_FormatNumber(&out, 1234U, ENGLISH, 0, 3), 1);
    EXPECT_EQ(Text(out), "1,234");
    EXPECT_EQ(out.n_GetCodePage(), 1253U);
}

// A repair would convert them from the locale's page.
TEST(FormatString, SeparatorsAreBytesOfTheLocaleInAnyString)
{
    if (!CT_LocaleInfo::sn_GetDefaultANSICodePage(GetUserDefaultLCID()))
        GTEST_SKIP() << "the user's locale has no code page that the byte could pass";
    char thousand[8] = {};
    ASSERT_EQ(GetLocaleInfoA(0x0419, LOCALE_STHOUSAND, thousand, sizeof(thousand)), 2);
    EXPECT_EQ(thousand[0], '\xA0');
    CT_CString out("before", ALL, 437); // where the byte is another character
    EXPECT_EQ(CT_FormatString::sb_FormatNumber(&out, 1234U, 0x0419, 0, 3), 1);
    EXPECT_EQ(Text(out), "1\xA0"
                         "234");
}
