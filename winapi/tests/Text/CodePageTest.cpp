// winapi/tests/Text/CodePageTest.cpp: conversion between code pages and UTF-16, by its rules.
#include "../Support/Calls.h"
#include "../Support/Reference.h"

#include <algorithm>
#include <cstring>

namespace
{
constexpr UINT WEST = 1252;
constexpr UINT JAPAN = 932;
constexpr UINT CHINA = 936;
constexpr DWORD CHECKED = MB_ERR_INVALID_CHARS;
constexpr DWORD EXACT = 0x400;
constexpr WCHAR MARK = 0x7777;

// A conversion's result, last error and what it left in a buffer full of marks.
struct Units
{
    int result;
    DWORD error;
    WideString text;
    bool operator==(const Units&) const = default;
};

struct Bytes
{
    int result;
    DWORD error;
    std::string text;
    BOOL used;
    bool operator==(const Bytes&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Units& units)
{
    return out << units.result << " error " << units.error << " "
               << testing::PrintToString(units.text);
}

std::ostream& operator<<(std::ostream& out, const Bytes& bytes)
{
    return out << bytes.result << " error " << bytes.error << " used " << bytes.used << " "
               << testing::PrintToString(bytes.text);
}

Units ToUnits(UINT page, DWORD flags, const std::string& bytes, int room = 40)
{
    WCHAR buffer[40];
    std::fill(std::begin(buffer), std::end(buffer), MARK);
    SetLastError(0);
    const int result = MultiByteToWideChar(page, flags, bytes.data(),
                                           static_cast<int>(bytes.size()), buffer, room);
    return {result, GetLastError(), WideString(buffer, std::find(buffer, buffer + 40, MARK))};
}

Bytes ToBytes(UINT page, DWORD flags, const std::u16string& text, const char* other = nullptr,
              int room = 40)
{
    char buffer[40];
    std::memset(buffer, '~', sizeof buffer);
    BOOL used = 77;
    const WideString units = Wide(text);
    SetLastError(0);
    const int result =
        WideCharToMultiByte(page, flags, units.data(), static_cast<int>(units.size()), buffer, room,
                            other, page < CP_UTF7 ? &used : nullptr);
    return {result, GetLastError(), std::string(buffer, std::find(buffer, buffer + 40, '~')), used};
}

Units Converted(const std::u16string& text)
{
    return {static_cast<int>(text.size()), 0, Wide(text)};
}

Bytes Coded(const std::string& text, BOOL used = FALSE)
{
    return {static_cast<int>(text.size()), 0, text, used};
}

// UTF-7 and UTF-8 have no flag.
Bytes CodedUtf(const std::string& text)
{
    return Coded(text, 77);
}
} // namespace

TEST(CodePage, BytesOfOnePageGiveUnits)
{
    EXPECT_EQ(Converted(u"A\u20AC\u0081\u00E9\u00FF"), ToUnits(WEST, 0, "A\x80\x81\xE9\xFF"));
    EXPECT_EQ(Converted(u"\u0416\u0451"), ToUnits(1251, MB_PRECOMPOSED, "\xC6\xB8"));
    EXPECT_EQ(Converted(u"\u0398\u00C7"), ToUnits(437, 0, "\xE9\x80"));
    EXPECT_EQ(Converted(u"a\u00A0"), ToUnits(37, 0, "\x81\x41"));
    EXPECT_EQ(Converted(std::u16string(u"a\0b", 3)), ToUnits(WEST, 0, std::string("a\0b", 3)));
}

TEST(CodePage, PairsOfBytesGiveUnits)
{
    EXPECT_EQ(Converted(u"A\u3042\u6F22\uFF71"), ToUnits(JAPAN, 0, "A\x82\xA0\x8A\xBF\xB1"));
    EXPECT_EQ(Converted(u"\u4E02\u20AC"), ToUnits(CHINA, 0, "\x81\x40\x80"));
    EXPECT_EQ(Converted(u"\uAC00"), ToUnits(949, 0, "\xB0\xA1"));
    EXPECT_EQ(Converted(u"\u4E00"), ToUnits(950, 0, "\xA4\x40"));
    EXPECT_EQ(Converted(u"\u0080\uF8F0\uF8F3\uF8F1"), ToUnits(JAPAN, 0, "\x80\xA0\xFF\xFD"));
}

TEST(CodePage, PagesWithoutAConverterFollowTheirRules)
{
    EXPECT_EQ(Converted(u"\uAC00\uAFB8\u1100"), ToUnits(1361, 0, "\x88\x61\x8E\x81\x88\x41"));
    EXPECT_EQ(Converted(u"\u3042\uFF61"), ToUnits(20932, 0, "\xA4\xA2\x8E\xA1"));
    EXPECT_EQ(Converted(u"A\u00C4\u00A0"), ToUnits(10004, 0, "A\x80\x81"));
}

TEST(CodePage, LeadByteAtTheEndGivesTheUndefinedUnit)
{
    EXPECT_EQ(Converted(u"a\u30FB"), ToUnits(JAPAN, 0, "a\x81"));
    EXPECT_EQ(Converted(u"a?"), ToUnits(CHINA, 0, "a\x81"));
}

TEST(CodePage, LeadByteBeforeAZeroStandsAlone)
{
    EXPECT_EQ(Converted(std::u16string(u"\u30FB\0A", 3)),
              ToUnits(JAPAN, 0, std::string("\x81\0A", 3)));
    EXPECT_EQ(Converted(std::u16string(u"?\0A", 3)), ToUnits(950, 0, std::string("\x81\0A", 3)));
}

TEST(CodePage, UndefinedPairIsOneCharacter)
{
    EXPECT_EQ(Converted(u"\u30FBA"), ToUnits(JAPAN, 0, "\x81\x01\x41"));
    EXPECT_EQ(Converted(u"?A"), ToUnits(CHINA, 0, "\x81\xFF\x41"));
}

TEST(CodePage, StrictConversionRefusesWhatThePageLacks)
{
    const Units refused{0, ERROR_NO_UNICODE_TRANSLATION, {}};
    for (const char* text : {"\x81",
                             "a\x81\x01"
                             "b",
                             "A\xFF\xFF"})
        EXPECT_EQ(refused, ToUnits(CHINA, CHECKED, text)) << testing::PrintToString(text);
    EXPECT_EQ(refused, ToUnits(JAPAN, CHECKED, "\x81"));
    EXPECT_EQ(refused, ToUnits(JAPAN, CHECKED, std::string("\x81\0", 2)));
    EXPECT_EQ(refused, ToUnits(1361, CHECKED, "\xFF\xFE\x84"));
    EXPECT_EQ(refused, ToUnits(JAPAN, CHECKED | MB_PRECOMPOSED, "\x81\x01"));
}

TEST(CodePage, StrictConversionTakesWhatThePageHas)
{
    EXPECT_EQ(Converted(u"\u0081?"), ToUnits(WEST, CHECKED, "\x81?"));
    EXPECT_EQ(Converted(u"\u30FB?"), ToUnits(JAPAN, CHECKED, "\x81\x45?"));
    EXPECT_EQ(Converted(u"\uE000"), ToUnits(JAPAN, CHECKED, "\xF0\x40"));
}

TEST(CodePage, UnitsGiveBytes)
{
    EXPECT_EQ(Coded("A\x80\xE9\x81"), ToBytes(WEST, 0, u"A\u20AC\u00E9\u0081"));
    EXPECT_EQ(Coded("A\x82\xA0\xB1"), ToBytes(JAPAN, 0, u"A\u3042\uFF71"));
    EXPECT_EQ(Coded(std::string("a\0b", 3)), ToBytes(WEST, 0, std::u16string(u"a\0b", 3)));
    EXPECT_EQ(Coded("\x88\x61"), ToBytes(1361, 0, u"\uAC00"));
    EXPECT_EQ(Coded("\x8E\xA1\xA4\xA2"), ToBytes(20932, 0, u"\uFF61\u3042"));
}

TEST(CodePage, BestFitsLeaveTheFlagAlone)
{
    EXPECT_EQ(Coded("AA"), ToBytes(WEST, 0, u"\u0100\uFF21"));
    EXPECT_EQ(Coded("AA"), ToBytes(WEST, 0, u"\u0100\uFF21", "*"));
    EXPECT_EQ(Coded("\x0F"), ToBytes(437, 0, u"\u00A4"));
}

TEST(CodePage, BestFitsCanBeRefused)
{
    EXPECT_EQ(Coded("*\x80", TRUE), ToBytes(WEST, EXACT, u"\u0100\u20AC", "*"));
    EXPECT_EQ(Coded("\x81\x48?", TRUE), ToBytes(JAPAN, EXACT, u"\uFF1F\u00E9"));
}

TEST(CodePage, UnitsThatThePageLacksGiveTheDefault)
{
    EXPECT_EQ(Coded("?z", TRUE), ToBytes(WEST, 0, u"\u4E00z"));
    EXPECT_EQ(Coded("*z", TRUE), ToBytes(WEST, 0, u"\u4E00z", "*"));
    EXPECT_EQ(Coded("\x6F", TRUE), ToBytes(37, 0, u"\u4E00"));
    EXPECT_EQ(Coded("?", TRUE), ToBytes(JAPAN, 0, u"\u0E01"));
    EXPECT_EQ(Coded(std::string(1, '\0'), TRUE), ToBytes(WEST, 0, u"\u4E00", ""));
}

TEST(CodePage, DefaultMayHaveTwoBytesOnPagesOfPairs)
{
    EXPECT_EQ(Coded("\x82\xA0z", TRUE), ToBytes(JAPAN, 0, u"\u0E01z", "\x82\xA0"));
    EXPECT_EQ(Coded("abz", TRUE), ToBytes(JAPAN, 0, u"\u0E01z", "ab"));
    EXPECT_EQ(Coded("*z", TRUE), ToBytes(JAPAN, 0, u"\u0E01z", "*"));
    EXPECT_EQ(Coded("az", TRUE), ToBytes(WEST, 0, u"\u4E00z", "ab"));
}

TEST(CodePage, FullWidthQuestionMarkCountsAsDefault)
{
    EXPECT_EQ(Coded("?", TRUE), ToBytes(WEST, 0, u"\uFF1F"));
    EXPECT_EQ(Coded("*?", TRUE), ToBytes(WEST, 0, u"\uFF1F?", "*"));
    EXPECT_EQ(Coded("*", TRUE), ToBytes(20127, 0, u"\uFF1F", "*"));
    EXPECT_EQ(Coded("\x81\x48"), ToBytes(JAPAN, 0, u"\uFF1F", "*"));
    EXPECT_EQ(Coded("?"), ToBytes(WEST, 0, u"?", "*"));
}

TEST(CodePage, SurrogatePairIsTwoUnits)
{
    EXPECT_EQ(Coded("??", TRUE), ToBytes(JAPAN, 0, u"\U0001F600"));
    EXPECT_EQ(Coded("**", TRUE), ToBytes(WEST, 0, u"\U0001F600", "*"));
}

TEST(CodePage, CountOfMinusOneTakesTheTerminator)
{
    WCHAR units[8];
    char bytes[8];
    EXPECT_EQ(4, MultiByteToWideChar(WEST, 0, "abc", -1, units, 8));
    EXPECT_EQ(0, units[3]);
    EXPECT_EQ(4,
              WideCharToMultiByte(WEST, 0, Wide(u"abc").c_str(), -1, bytes, 8, nullptr, nullptr));
    EXPECT_EQ(0, bytes[3]);
    EXPECT_EQ(1, MultiByteToWideChar(JAPAN, 0, "", -1, units, 8));
    EXPECT_EQ(3,
              WideCharToMultiByte(CP_UTF8, 0, Wide(u"ab").c_str(), -1, bytes, 8, nullptr, nullptr));
}

TEST(CodePage, NoRoomCounts)
{
    RunRows({
        CALL(MultiByteToWideChar(WEST, 0, "abc", 3, nullptr, 0), 3, 0),
        CALL(MultiByteToWideChar(JAPAN, 0, "A\x82\xA0\x81", 4, nullptr, 0), 3, 0),
        CALL(MultiByteToWideChar(CP_UTF8, 0, "\xC3\xA9\xF0\x9F\x98\x80", 6, nullptr, 0), 3, 0),
        CALL(MultiByteToWideChar(CP_UTF7, 0, "a+AGE-b", 7, nullptr, 0), 3, 0),
        CALL(
            WideCharToMultiByte(WEST, 0, Wide(u"a\u00E9").c_str(), 2, nullptr, 0, nullptr, nullptr),
            2, 0),
        CALL(WideCharToMultiByte(JAPAN, 0, Wide(u"a\u3042").c_str(), 2, nullptr, 0, nullptr,
                                 nullptr),
             3, 0),
        CALL(WideCharToMultiByte(CP_UTF8, 0, Wide(u"\u20AC").c_str(), 1, nullptr, 0, nullptr,
                                 nullptr),
             3, 0),
        CALL(WideCharToMultiByte(CP_UTF7, 0, Wide(u"a\u00E9z").c_str(), 3, nullptr, 0, nullptr,
                                 nullptr),
             7, 0),
    });
}

TEST(CodePage, WhatFitsIsWrittenWhenTheRoomIsTooSmall)
{
    EXPECT_EQ((Units{0, ERROR_INSUFFICIENT_BUFFER, Wide(u"ab")}), ToUnits(WEST, 0, "abc", 2));
    EXPECT_EQ((Units{0, ERROR_INSUFFICIENT_BUFFER, Wide(u"A\u3042")}),
              ToUnits(JAPAN, 0, "A\x82\xA0\x82\xA0", 2));
    EXPECT_EQ((Bytes{0, ERROR_INSUFFICIENT_BUFFER, "ab", FALSE}),
              ToBytes(WEST, 0, u"abc", nullptr, 2));
    EXPECT_EQ((Bytes{0, ERROR_INSUFFICIENT_BUFFER, "a", FALSE}),
              ToBytes(JAPAN, 0, u"a\u3042", nullptr, 2));
    EXPECT_EQ((Bytes{0, ERROR_INSUFFICIENT_BUFFER, "", FALSE}),
              ToBytes(JAPAN, 0, u"\u3042", nullptr, 1));
    EXPECT_EQ((Bytes{0, ERROR_INSUFFICIENT_BUFFER, "z", 77}),
              ToBytes(CP_UTF8, 0, u"z\u20AC", nullptr, 3));
    EXPECT_EQ((Bytes{0, ERROR_INSUFFICIENT_BUFFER, "a+AO", 77}),
              ToBytes(CP_UTF7, 0, u"a\u00E9z", nullptr, 4));
    EXPECT_EQ((Units{0, ERROR_INSUFFICIENT_BUFFER, Wide(u"ab")}), ToUnits(CP_UTF7, 0, "abcd", 2));
}

TEST(CodePage, WrongArgumentsAreRefused)
{
    WCHAR units[8];
    char bytes[8];
    const WideString text = Wide(u"abc");
    RunRows({
        CALL(MultiByteToWideChar(WEST, 0, "abc", 0, units, 8), 0, ERROR_INVALID_PARAMETER),
        CALL(MultiByteToWideChar(WEST, 0, nullptr, 3, units, 8), 0, ERROR_INVALID_PARAMETER),
        CALL(MultiByteToWideChar(WEST, 0, "abc", 3, nullptr, 8), 0, ERROR_INVALID_PARAMETER),
        CALL(MultiByteToWideChar(WEST, 0, "abc", 3, units, -1), 0, ERROR_INVALID_PARAMETER),
        CALL(MultiByteToWideChar(12345, 0, "abc", 3, units, 8), 0, ERROR_INVALID_PARAMETER),
        CALL(MultiByteToWideChar(12345, 0x10, "abc", 3, units, 8), 0, ERROR_INVALID_PARAMETER),
        CALL(WideCharToMultiByte(WEST, 0, text.c_str(), 0, bytes, 8, nullptr, nullptr), 0,
             ERROR_INVALID_PARAMETER),
        CALL(WideCharToMultiByte(WEST, 0, nullptr, 3, bytes, 8, nullptr, nullptr), 0,
             ERROR_INVALID_PARAMETER),
        CALL(WideCharToMultiByte(WEST, 0, text.c_str(), 3, nullptr, 8, nullptr, nullptr), 0,
             ERROR_INVALID_PARAMETER),
        CALL(WideCharToMultiByte(12345, 0, text.c_str(), 3, bytes, 8, nullptr, nullptr), 0,
             ERROR_INVALID_PARAMETER),
        CALL(WideCharToMultiByte(CP_UTF7, 0, text.c_str(), 3, bytes, 8, "*", nullptr), 0,
             ERROR_INVALID_PARAMETER),
    });
}

TEST(CodePage, UnknownFlagsAreRefused)
{
    for (DWORD flags = 0x10; flags; flags <<= 1) {
        EXPECT_EQ((Units{0, ERROR_INVALID_FLAGS, {}}), ToUnits(WEST, flags, "abc")) << flags;
        EXPECT_EQ((Units{0, ERROR_INVALID_FLAGS, {}}), ToUnits(CP_UTF8, flags, "abc")) << flags;
    }
    for (DWORD flags : {1, 2, 4, 8, 0x100, 0x800, 0x10000}) {
        EXPECT_EQ((Bytes{0, ERROR_INVALID_FLAGS, {}, 77}), ToBytes(WEST, flags, u"abc")) << flags;
        EXPECT_EQ((Bytes{0, ERROR_INVALID_FLAGS, {}, 77}), ToBytes(CP_UTF8, flags, u"abc"))
            << flags;
    }
    for (DWORD flags : {1, 8})
        EXPECT_EQ((Units{0, ERROR_INVALID_FLAGS, {}}), ToUnits(CP_UTF7, flags, "a")) << flags;
    EXPECT_EQ((Bytes{0, ERROR_INVALID_FLAGS, {}, 77}), ToBytes(CP_UTF7, 1, u"a"));
}

#ifndef _WIN32
TEST(CodePage, FlagsThatAreNotSuppliedAreRefused)
{
    EXPECT_EQ((Units{0, ERROR_INVALID_FLAGS, {}}), ToUnits(WEST, MB_COMPOSITE, "\xE9"));
    EXPECT_EQ((Units{0, ERROR_INVALID_FLAGS, {}}), ToUnits(437, MB_USEGLYPHCHARS, "\x01"));
    EXPECT_EQ((Bytes{0, ERROR_INVALID_FLAGS, {}, 77}),
              ToBytes(WEST, WC_COMPOSITECHECK, u"e\u0301"));
}
#endif

TEST(CodePage, SuccessLeavesTheLastErrorAlone)
{
    WCHAR unit;
    SetLastError(77);
    EXPECT_EQ(1, MultiByteToWideChar(1250, 0, "a", 1, &unit, 1));
    EXPECT_EQ(77u, GetLastError());
}

TEST(CodePage, Utf8OfBothDirections)
{
    const std::u16string text = u"A\u00E9\u20AC\uFFFF\U0001F600\U0010FFFF";
    const std::string coded = "A\xC3\xA9\xE2\x82\xAC\xEF\xBF\xBF\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF";
    EXPECT_EQ(Converted(text), ToUnits(CP_UTF8, 0, coded));
    EXPECT_EQ(Converted(text), ToUnits(CP_UTF8, MB_PRECOMPOSED | CHECKED, coded));
    EXPECT_EQ(CodedUtf(coded), ToBytes(CP_UTF8, 0, text));
}

TEST(CodePage, IllFormedUtf8GivesReplacements)
{
    const struct
    {
        const char* bytes;
        const char16_t* units;
    } rows[] = {
        {"\xE9", u"\uFFFD"},
        {"\xE2\x82", u"\uFFFD"},
        {"\xE2\x82"
         "A",
         u"\uFFFDA"},
        {"\xF0\x9F\x98", u"\uFFFD"},
        {"\xF0\x9F\x98"
         "A",
         u"\uFFFDA"},
        {"\xC0\x80", u"\uFFFD\uFFFD"},
        {"\xED\xA0\x80", u"\uFFFD\uFFFD"},
        {"\xE0\x80\x80", u"\uFFFD\uFFFD"},
        {"\xF0\x80\x80\x80", u"\uFFFD\uFFFD\uFFFD"},
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD"},
        {"\xF5\x80\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\x80\xBF\xFE\xFF", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\xE2\x28\xA1", u"\uFFFD(\uFFFD"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.bytes));
        EXPECT_EQ(Converted(row.units), ToUnits(CP_UTF8, 0, row.bytes));
        const Units strict = ToUnits(CP_UTF8, CHECKED, row.bytes);
        EXPECT_EQ(0, strict.result);
        EXPECT_EQ(DWORD(ERROR_NO_UNICODE_TRANSLATION), strict.error);
    }
}

TEST(CodePage, WhatStandsBehindACutCharacterIsKept)
{
    // The reference run gives up where a lead byte announces more bytes than there are.
    EXPECT_PUBLISHED(Converted(u"\uFFFD+"), ToUnits(CP_UTF8, 0, "\xEF+"));
    EXPECT_PUBLISHED(Converted(u"\uFFFD\uFFFD"), ToUnits(CP_UTF8, 0, "\xF0\xF4"));
}

TEST(CodePage, LoneSurrogatesGiveReplacementsInUtf8)
{
    EXPECT_EQ(CodedUtf("\xEF\xBF\xBD"), ToBytes(CP_UTF8, 0, u"\xD83D"));
    EXPECT_EQ(CodedUtf("\xEF\xBF\xBDz"), ToBytes(CP_UTF8, 0, u"\xDE00z"));
    EXPECT_EQ(CodedUtf("\xEF\xBF\xBD\xEF\xBF\xBDz"), ToBytes(CP_UTF8, 0, u"\xD83D\xD83Dz"));
    EXPECT_EQ(DWORD(ERROR_NO_UNICODE_TRANSLATION), ToBytes(CP_UTF8, 0x80, u"\xD83Dz").error);
}

TEST(CodePage, HalfASurrogatePairDoesNotFit)
{
    EXPECT_PUBLISHED((Units{0, ERROR_INSUFFICIENT_BUFFER, Wide(u"a")}),
                     ToUnits(CP_UTF8, 0, "a\xF0\x9F\x98\x80", 2));
}

TEST(CodePage, Utf8ClearsTheFlag)
{
    char bytes[8];
    BOOL used = 77;
    EXPECT_EQ(1, WideCharToMultiByte(CP_UTF8, 0, Wide(u"z").c_str(), 1, bytes, 8, nullptr, &used));
    EXPECT_EQ(FALSE, used);
}

TEST(CodePage, Utf7OfBothDirections)
{
    const struct
    {
        const char* bytes;
        const char16_t* units;
    } rows[] = {
        {"a+AOk-z", u"a\u00E9z"},    {"a+AOk-", u"a\u00E9"},
        {"+2D3eAA-", u"\U0001F600"}, {"+AH4AXA-+--", u"~\\+-"},
        {"+AOk--", u"\u00E9-"},      {"'(),-./:? 09azAZ\t\r\n", u"'(),-./:? 09azAZ\t\r\n"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Converted(row.units), ToUnits(CP_UTF7, 0, row.bytes)) << row.bytes;
        EXPECT_EQ(CodedUtf(row.bytes), ToBytes(CP_UTF7, 0, row.units)) << row.bytes;
    }
}

TEST(CodePage, Utf7TakesWhatItWouldNotGive)
{
    EXPECT_EQ(Converted(u"\u00E9\u0080"), ToUnits(CP_UTF7, 0, "\xE9\x80"));
    EXPECT_EQ(Converted(u"ab"), ToUnits(CP_UTF7, 0, "+AGEAYg"));
    EXPECT_EQ(Converted(u"a!"), ToUnits(CP_UTF7, 0, "+AGE!"));
    EXPECT_EQ(Converted(u"\u00E9z"), ToUnits(CP_UTF7, 0, "+AG\xE9z"));
    EXPECT_EQ(Converted(u""), ToUnits(CP_UTF7, 0, "+"));
}

TEST(CodePage, Utf7HidesAllButPlainLetters)
{
    const std::u16string marks = u"\"#&*;<=>@[]^_`{|}$%!~\\";
    for (char16_t mark : marks) {
        const Bytes bytes = ToBytes(CP_UTF7, 0, std::u16string(1, mark));
        EXPECT_EQ('+', bytes.text.front()) << int(mark);
        EXPECT_EQ(Converted(std::u16string(1, mark)), ToUnits(CP_UTF7, 0, bytes.text));
    }
}

TEST(CodePage, WordsArePagesForConversionAlone)
{
    for (UINT page : {CP_ACP, CP_OEMCP, CP_MACCP, CP_THREAD_ACP}) {
        EXPECT_FALSE(IsValidCodePage(page)) << page;
        EXPECT_EQ(Converted(u"A"), ToUnits(page, 0, "A")) << page;
        EXPECT_EQ(Coded("A"), ToBytes(page, 0, u"A")) << page;
    }
    EXPECT_TRUE(IsValidCodePage(GetACP()));
    EXPECT_TRUE(IsValidCodePage(GetOEMCP()));
    EXPECT_EQ(ToUnits(GetACP(), 0, "\xE9\x80"), ToUnits(CP_ACP, 0, "\xE9\x80"));
    EXPECT_EQ(ToUnits(GetOEMCP(), 0, "\xE9\x80"), ToUnits(CP_OEMCP, 0, "\xE9\x80"));
}

TEST(CodePage, ValidPages)
{
    for (UINT page : {37u, 437u, 932u, 949u, 1252u, 1361u, 10000u, 20932u, 28605u, 65000u, 65001u})
        EXPECT_TRUE(IsValidCodePage(page)) << page;
    for (UINT page : {4u, 38u, 12345u, 65002u, 0xFFFFFFFFu})
        EXPECT_FALSE(IsValidCodePage(page)) << page;
}

TEST(CodePage, LeadBytes)
{
    RunRows({
        CALL(IsDBCSLeadByteEx(JAPAN, 0x81), 1, 0),
        CALL(IsDBCSLeadByteEx(JAPAN, 0x9F), 1, 0),
        CALL(IsDBCSLeadByteEx(JAPAN, 0xA0), 0, 0),
        CALL(IsDBCSLeadByteEx(JAPAN, 0xE0), 1, 0),
        CALL(IsDBCSLeadByteEx(JAPAN, 0xFC), 1, 0),
        CALL(IsDBCSLeadByteEx(JAPAN, 0xFD), 0, 0),
        CALL(IsDBCSLeadByteEx(JAPAN, 0x41), 0, 0),
        CALL(IsDBCSLeadByteEx(1361, 0xD4), 0, 0),
        CALL(IsDBCSLeadByteEx(20932, 0x8E), 1, 0),
        CALL(IsDBCSLeadByteEx(WEST, 0x81), 0, 0),
        CALL(IsDBCSLeadByteEx(CP_UTF8, 0xC3), 0, 0),
        CALL(IsDBCSLeadByteEx(CP_UTF7, 0xC3), 0, 0),
        CALL(IsDBCSLeadByteEx(12345, 0x81), 0, ERROR_INVALID_PARAMETER),
        CALL(IsDBCSLeadByteEx(CP_ACP, 0x41), 0, 0),
        CALL(IsDBCSLeadByte(0x41), 0, 0),
    });
}
