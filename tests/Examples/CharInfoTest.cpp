// tests/Examples/CharInfoTest.cpp: the table of charinfo.
#include <CharInfo.h>

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace
{
struct Result
{
    int status;
    std::string output;
    std::string errors;
};

Result RunCharInfo(const std::vector<std::string>& arguments)
{
    std::ostringstream output;
    std::ostringstream errors;
    const int status = charinfo::Run(arguments, output, errors);
    return {status, output.str(), errors.str()};
}

std::vector<std::string> Table(const std::string& text)
{
    const Result result = RunCharInfo({text});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    std::vector<std::string> lines;
    std::istringstream stream(result.output);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// The words of the line of a text of one unit, from the unit's code on.
std::string Facts(const std::string& text)
{
    const std::vector<std::string> table = Table(text);
    if (table.size() != 2)
        return "not one line";
    std::istringstream words(table[1].substr(table[1].find("U+")));
    std::string facts;
    for (std::string word; words >> word;)
        facts += (facts.empty() ? "" : " ") + word;
    return facts;
}
} // namespace

TEST(CharInfo, TheTableIsAligned)
{
    const std::vector<std::string> expected = {
        "Char  Unit    Category         Block             Word  Layout  Text  Number  Upper     "
        "Lower "
        "    Base",
        "a     U+0061  LetterLowercase  BasicLatin        0182  L       8040  -       U+0041 A  -  "
        "  "
        "     -",
        "\u00C9     U+00C9  LetterUppercase  Latin1Supplement  0101  L       8003  -       -       "
        "  "
        "U+00E9 \u00E9  U+0045 E",
        "\u00BD     U+00BD  NumberOther      Latin1Supplement  0010  ON      0000  1/2     -       "
        "  "
        "-         -",
    };
    EXPECT_EQ(Table("a\u00C9\u00BD"), expected);
}

TEST(CharInfo, ALineTellsWhatTheCharacterIs)
{
    const struct
    {
        const char* text;
        const char* facts;
    } cases[] = {
        {"\t", "U+0009 OtherControl BasicLatin 0068 S 0008 - - - -"},
        {" ", "U+0020 SeparatorSpace BasicLatin 0048 WS 0048 - - - -"},
        {"7", "U+0037 NumberDecimalDigit BasicLatin 0084 EN 0040 7 - - -"},
        {"\u00FF",
         "U+00FF LetterLowercase Latin1Supplement 0102 L 8003 - U+0178 \u0178 - U+0079 y"},
        {"\u0301", "U+0301 MarkNonSpacing CombiningDiacriticalMarks 0010 L 0003 - - - -"},
        {"\u05D0", "U+05D0 LetterOther Hebrew 0100 R 8000 - - - -"},
        {"\u09F8", "U+09F8 NumberOther Bengali 0010 L 0008 -1 - - -"},
        {"\u20AC", "U+20AC Unknown CurrencySymbols 0000 - 0000 - - - -"},
        {"\u30AC", "U+30AC LetterOther Katakana 0100 L 8090 - - - U+30AB \u30AB"},
        {"\uFEFF", "U+FEFF OtherFormat ArabicPresentationFormsB 0048 ON 0008 - - - -"},
    };
    for (const auto& row : cases)
        EXPECT_EQ(Facts(row.text), row.facts);
}

TEST(CharInfo, WideCharactersTakeTwoColumnsAndMarksStandOnACircle)
{
    const std::vector<std::string> table = Table("\u6F22\uFF76\u0301\uD55C");
    ASSERT_EQ(table.size(), 5u);
    EXPECT_EQ(table[1].find("\u6F22    U+6F22"), 0u);
    EXPECT_EQ(table[2].find("\uFF76     U+FF76"), 0u);
    EXPECT_EQ(table[3].find("\u25CC\u0301     U+0301"), 0u);
    EXPECT_EQ(table[4].find("\uD55C    U+D55C"), 0u);
}

TEST(CharInfo, WhatCannotBeSeenLeavesItsPlaceEmpty)
{
    for (const char* text : {"\n", "\u2028", "\u200E"})
        EXPECT_EQ(Table(text)[1].find("      U+"), 0u) << Table(text)[1];
}

TEST(CharInfo, ACharacterBeyondTheUnitsHasALineForEachOfItsTwo)
{
    const std::vector<std::string> table = Table("\U00010428");
    ASSERT_EQ(table.size(), 3u);
    EXPECT_NE(table[1].find("U+D801  OtherSurrogate  HighSurrogates"), std::string::npos);
    EXPECT_NE(table[2].find("U+DC28  OtherSurrogate  LowSurrogates"), std::string::npos);
}

TEST(CharInfo, AnEmptyTextHasNothingButTheHeadings)
{
    EXPECT_EQ(RunCharInfo({""}).output, "Char  Unit  Category  Block  Word  Layout  Text  Number  "
                                        "Upper  Lower  Base\n");
}

TEST(CharInfo, IllFormedTextIsRefused)
{
    for (const char* text : {"a\xFF", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
        const Result result = RunCharInfo({text});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "charinfo: the text is not UTF-8\n");
    }
}

TEST(CharInfo, AWrongUseShowsTheRightOne)
{
    for (const auto& arguments : {std::vector<std::string>{}, std::vector<std::string>{"a", "b"}}) {
        const Result result = RunCharInfo(arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "usage: charinfo TEXT\nTry charinfo --help.\n");
    }
}

TEST(CharInfo, OutputThatFailsIsAnError)
{
    std::ostringstream output;
    std::ostringstream errors;
    output.setstate(std::ios::badbit);
    EXPECT_EQ(charinfo::Run({"a"}, output, errors), 1);
    EXPECT_EQ(errors.str(), "charinfo: cannot write the output\n");
}
