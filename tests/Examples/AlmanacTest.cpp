// tests/Examples/AlmanacTest.cpp: the months, readings and lists of almanac.
#include <Almanac.h>
#include <Width.h>

#include <System/LocaleInfo/LocaleInfo.h>
#include <System/OS/OS.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "Result.h"

namespace
{
Result RunAlmanac(const std::vector<std::string>& arguments)
{
    return ResultOf([&](std::ostream& output, std::ostream& errors) {
        return almanac::Run(arguments, output, errors);
    });
}

std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

std::vector<std::string> Table(const std::vector<std::string>& arguments)
{
    const Result result = RunAlmanac(arguments);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    return Lines(result.output);
}

// Why a text is no date.
std::string Reason(const std::vector<std::string>& arguments)
{
    const Result result = RunAlmanac(arguments);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output.find("read as"), std::string::npos);
    return result.errors;
}

const char RLI[] = "\u2067";
const char PDI[] = "\u2069";
} // namespace

TEST(Almanac, AMonthStandsInThreeCalendars)
{
    const std::vector<std::string> table = Table({"2024-03", "--latin", "--locale", "en-US"});
    ASSERT_EQ(table.size(), 32u);
    EXPECT_EQ(table[0], "March 2024     Hebrew            Hijri");
    EXPECT_EQ(table[1], " 1 Friday      21 Adar I 5784    20 Shaban 1445");
    EXPECT_EQ(table[10], "10 Sunday      30 Adar I 5784    29 Shaban 1445");
    EXPECT_EQ(table[11], "11 Monday       1 Adar II 5784    1 Ramadan 1445");
    EXPECT_EQ(table[31], "31 Sunday      21 Adar II 5784   21 Ramadan 1445");
}

TEST(Almanac, DatesAreThoseOfTheOtherCalendars)
{
    const struct
    {
        const char* month;
        unsigned day;
        const char* end;
    } cases[] = {
        {"1998-01", 1, "3 Tevet 5758     2 Ramadan 1418"},
        {"1997-10", 2, " 1 Tishri 5758   29 Jumada I 1418"},
        {"2023-03", 23, " 1 Nisan 5783    1 Ramadan 1444"},
        {"0622-07", 19, " 1 Muharram 1"},
    };
    for (const auto& row : cases) {
        const std::string line = Table({row.month, "--latin", "--locale", "en"})[row.day];
        EXPECT_NE(line.find(row.end), std::string::npos) << line;
    }
}

TEST(Almanac, NamesFromRightToLeftStandWithinMarks)
{
    const std::vector<std::string> table = Table({"2024-03", "--locale", "en-US"});
    const std::string adar = std::string(RLI) + "\u05D0\u05D3\u05E8 \u05D1" + PDI;
    const std::string ramadan = std::string(RLI) + "\u0631\u0645\u0636\u0627\u0646" + PDI;
    EXPECT_EQ(table[11], "11 Monday       1 " + adar + " 5784    1 " + ramadan + " 1445");
    EXPECT_EQ(almanac::WidthOf(table[11]), 44u);
}

TEST(Almanac, WideNamesTakeTwoColumns)
{
    const std::vector<std::string> table = Table({"2026-10", "--latin", "--locale", "ja"});
    EXPECT_EQ(table[0], "10\u6708 2026   Hebrew            Hijri");
    EXPECT_EQ(table[1], " 1 \u6728\u66DC\u65E5   20 Tishri 5787    18 Rabi II 1448");
}

TEST(Almanac, WidthsCountWhatIsSeen)
{
    EXPECT_EQ(almanac::WidthOf(""), 0u);
    EXPECT_EQ(almanac::WidthOf("abc"), 3u);
    EXPECT_EQ(almanac::WidthOf("a\u0301\u05D0\u05B0"), 2u);
    EXPECT_EQ(almanac::WidthOf("\u6728\uFF21\uD55C\uFF76"), 7u);
    EXPECT_EQ(almanac::WidthOf("\U0001F600"), 2u);
    EXPECT_EQ(almanac::WidthOf(std::string("\u200E") + RLI + "a" + PDI), 1u);
    EXPECT_EQ(almanac::WidthOf("broken \xFF"), 8u);
}

TEST(Almanac, ADayBeforeTheHijriCalendarHasNoDateThere)
{
    const std::vector<std::string> table = Table({"1-1", "--latin", "--locale", "en"});
    EXPECT_EQ(table[0], "January 1      Hebrew           Hijri");
    EXPECT_EQ(table[1], " 1 Monday      18 Tevet 3761    -");
    EXPECT_EQ(Table({"9999-12"}).size(), 32u);
}

TEST(Almanac, MonthsHaveTheirDays)
{
    EXPECT_EQ(Table({"1900-02"}).size(), 29u);
    EXPECT_EQ(Table({"2000-02"}).size(), 30u);
    EXPECT_EQ(Table({"2026-04"}).size(), 31u);
}

TEST(Almanac, APageHasATextForEachDate)
{
    const Result page = RunAlmanac({"2024-03", "--svg", "--latin", "--locale", "en"});
    EXPECT_EQ(page.status, 0);
    EXPECT_EQ(page.output.find("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg "), 0u);
    for (const char* text :
         {">March 2024<", ">Monday<", ">1 Adar II 5784<", ">1 Ramadan 1445<", "</svg>"})
        EXPECT_NE(page.output.find(text), std::string::npos) << text;
}

TEST(Almanac, ABadMonthHasAReason)
{
    EXPECT_EQ(Reason({"2026-13"}), "almanac: the month is 13, and has to be from 1 to 12\n");
    EXPECT_EQ(Reason({"2026-0"}), "almanac: the month is 0, and has to be from 1 to 12\n");
    EXPECT_EQ(Reason({"0-1"}), "almanac: the year is 0, and has to be from 1 to 9999\n");
    EXPECT_EQ(Reason({"10000-1"}), "almanac: the year is 10000, and has to be from 1 to 9999\n");
    for (const char* text :
         {"2026", "-5", "2026-", "-", "March", "2026-03-01", "99999999999-1", "\u0662-1"})
        EXPECT_EQ(Reason({text}),
                  std::string("almanac: \"") + text + "\" is no year and month, as in 2026-03\n");
}

TEST(Almanac, ALocaleIsAnIdOrCodes)
{
    for (const char* locale : {"de-DE", "DE_de", "de", "0x0407", "0X407", "1031"})
        EXPECT_EQ(Table({"2026-03", "--locale", locale})[2].substr(0, 9), " 2 Montag") << locale;
    for (const char* locale : {"xx", "de-XX", "0", "1024", "0x", "0xFFFFFFFFF", "german"})
        EXPECT_EQ(Reason({"2026-03", "--locale", locale}),
                  std::string("almanac: there is no locale \"") + locale + "\"\n");
}

TEST(Almanac, AReadingTellsItsFields)
{
    EXPECT_EQ(Table({"read", "17:08:09 5/3/26", "--picture", "HH:mm:ss d/M/yy", "--locale", "en"}),
              (std::vector<std::string>{"picture HH:mm:ss d/M/yy", "HH    17  17", "mm    08  8",
                                        "ss    09  9", "d     5   5", "M     3   3", "yy    26  26",
                                        "read as 2026-03-05 17:08:09"}));
}

TEST(Almanac, AReadingFindsNamesAndEras)
{
    const std::vector<std::string> march =
        Table({"read", "5. M\u00E4rz 2026", "--picture", "d. MMMM yyyy", "--locale", "de"});
    EXPECT_EQ(march[2], "MMMM  M\u00E4rz  3");
    EXPECT_EQ(march[4], "read as 2026-03-05 00:00:00");
    const std::vector<std::string> genitive =
        Table({"read", "5 \u043C\u0430\u0440\u0442\u0430 2026", "--picture", "d MMMM yyyy",
               "--locale", "ru"});
    EXPECT_EQ(genitive[2], "MMMM  \u043C\u0430\u0440\u0442\u0430  3");
    EXPECT_EQ(genitive[4], "read as 2026-03-05 00:00:00");
    const std::vector<std::string> era =
        Table({"read",
               "\u5E73\u6210"
               "8\u5E74"
               "3\u6708"
               "5\u65E5",
               "--picture", "ggy\u5E74M\u6708d\u65E5", "--locale", "ja"});
    EXPECT_EQ(era[1], "gg    \u5E73\u6210  3");
    EXPECT_EQ(era[5], "read as 1996-03-05 00:00:00");
}

TEST(Almanac, QuotedTextStandsBetweenFields)
{
    const std::vector<std::string> lines =
        Table({"read", "it's 7 o'clock", "--picture", "'it''s' H 'o''clock'", "--locale", "en"});
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1], "H     7  7");
}

TEST(Almanac, WhatIsNoDateHasAReason)
{
    const std::string picture = "d.M.yyyy";
    const struct
    {
        const char* text;
        const char* picture;
        const char* reason;
    } cases[] = {
        {"31.2.2026", "d.M.yyyy", "the month has no day 31"},
        {"5.13.2026", "d.M.yyyy", "there is no thirteenth month"},
        {"32.1.2026", "d.M.yyyy", "the day is 32, and has to be from 1 to 31"},
        {"0.1.2026", "d.M.yyyy", "the day is 0, and has to be from 1 to 31"},
        {"x", "d.M.yyyy", "no number where the day should be"},
        {"", "d.M.yyyy", "no number where the day should be"},
        {"12:30", "hh:mm", "the hour is 12, and has to be from 0 to 11"},
        {"Foo", "MMMM", "no name where the month should be"},
        {"noon", "tt", "no name where the part of the day should be"},
        {"1.2.1950", "d.M.yyyy", "years are read from 1970 to 2037"},
        {"\U0001F600", "d", "no number where the day should be"},
    };
    for (const auto& row : cases)
        EXPECT_EQ(Reason({"read", row.text, "--picture", row.picture, "--locale", "en"}),
                  std::string("almanac: ") + row.reason + "\n");
}

TEST(Almanac, ListsHaveEachValueOnce)
{
    const Result result = RunAlmanac({"locales"});
    if (!CT_OS::sb_GetIsWindowsNT()) {
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.errors, "almanac: the system has no list of its locales\n");
        return;
    }
    EXPECT_EQ(result.status, 0);
    const std::vector<std::string> lines = Lines(result.output);
    unsigned titles = 0;
    std::vector<std::string> seen;
    for (const std::string& line : lines) {
        titles += line[0] != ' ';
        if (line[0] != ' ')
            seen.clear();
        EXPECT_EQ(std::count(seen.begin(), seen.end(), line), 0) << line;
        seen.push_back(line);
    }
    EXPECT_EQ(titles, 4u);
    for (const char* line : {"  German", "  United States", "   1252    0", "    932  128"})
        EXPECT_EQ(std::count(lines.begin(), lines.end(), line), 1) << line;
}

TEST(Almanac, ArgumentsThatAreNotUtf8AreRefused)
{
    EXPECT_EQ(Reason({"read", "\xFF"}), "almanac: an argument is not UTF-8\n");
}
