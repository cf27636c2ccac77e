// tests/Examples/LexiconPartsTest.cpp: the pieces that the commands are made of.
#include <Progress.h>
#include <Storage.h>
#include <Common/Utf8.h>
#include <Ostra/Frame/Text.h>

#include <gtest/gtest.h>

#include <sstream>

namespace
{
using namespace std::chrono_literals;
using lexicon::Progress;

Progress::Clock::time_point now;

Progress::Clock::time_point Now()
{
    return now;
}

std::u16string Wide(const std::string& text)
{
    CT_UString wide;
    common::ToWide(text, &wide);
    return {wide.qcuz_Get(), wide.qcuz_Get() + wide.vn_GetLength()};
}

std::string Narrow(const std::u16string& text)
{
    return common::ToUtf8(qcuz_Text(text.c_str()), static_cast<unsigned>(text.size()));
}
} // namespace

TEST(Utf8, OnlyWellFormedTextPasses)
{
    const struct
    {
        const char* text;
        bool good;
    } cases[] = {
        {"", true},
        {"plain", true},
        {"\x7F", true},
        {"\x80", false},
        {"\xBF", false},
        {"\xC0\x80", false},
        {"\xC1\xBF", false},
        {"\xC2\x80", true},
        {"\xC2", false},
        {"\xC2\x7F", false},
        {"\xC2\xC0", false},
        {"\xDF\xBF", true},
        {"\xE0\x9F\xBF", false},
        {"\xE0\xA0\x80", true},
        {"\xE0\xA0", false},
        {"\xE0\xA0\x7F", false},
        {"\xED\x9F\xBF", true},
        {"\xED\xA0\x80", false},
        {"\xED\xBF\xBF", false},
        {"\xEE\x80\x80", true},
        {"\xEF\xBF\xBF", true},
        {"\xF0\x8F\xBF\xBF", false},
        {"\xF0\x90\x80\x80", true},
        {"\xF0\x90\x80", false},
        {"\xF0\x90\x80\xC0", false},
        {"\xF4\x8F\xBF\xBF", true},
        {"\xF4\x90\x80\x80", false},
        {"\xF5\x80\x80\x80", false},
        {"\xF8\x88\x80\x80\x80", false},
        {"\xFE", false},
        {"\xFF", false},
        {"good \xE2\x82\xAC then \xE2\x82", false},
    };
    for (const auto& row : cases)
        EXPECT_EQ(common::IsUtf8(row.text), row.good) << testing::PrintToString(row.text);
}

TEST(Utf8, TextGoesToUnitsAndBack)
{
    const struct
    {
        const char* narrow;
        const char16_t* wide;
    } cases[] = {
        {"", u""},
        {"plain", u"plain"},
        {"\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF", u"\x7F\x80\x7FF\x800\xFFFF"},
        {"\xF0\x90\x80\x80", u"\xD800\xDC00"},
        {"\xF4\x8F\xBF\xBF", u"\xDBFF\xDFFF"},
        {"a\xF0\x9F\x98\x80\xF0\x9D\x84\x9E\xC3\xA4", u"a\xD83D\xDE00\xD834\xDD1E\xE4"},
    };
    for (const auto& row : cases) {
        EXPECT_TRUE(Wide(row.narrow) == row.wide) << row.narrow;
        EXPECT_EQ(Narrow(row.wide), row.narrow);
    }
}

TEST(Utf8, ALoneSurrogateComesOutAsTheReplacementCharacter)
{
    EXPECT_EQ(Narrow(u"a\xD800"), "a\xEF\xBF\xBD");
    EXPECT_EQ(Narrow(u"\xDC00z"), "\xEF\xBF\xBDz");
    EXPECT_EQ(Narrow(u"\xD800\xD800\xDC00"), "\xEF\xBF\xBD\xF0\x90\x80\x80");
}

TEST(Storage, TheChecksumIsTheKnownOne)
{
    const CT_Buffer digits("123456789", 9, 32);
    EXPECT_EQ(lexicon::Checksum(&digits), 0xCBF43926u);
    const CT_Buffer nothing;
    EXPECT_EQ(lexicon::Checksum(&nothing), 0u);
}

TEST(Progress, NothingIsWrittenOfShortWork)
{
    std::ostringstream stream;
    now = {};
    {
        Progress progress(&stream, "work", Now);
        now += 499ms;
        progress.Show(1, 2);
    }
    EXPECT_EQ(stream.str(), "");
}

TEST(Progress, TheBarIsDrawnTenTimesASecondAndTakenAway)
{
    std::ostringstream stream;
    now = {};
    {
        Progress progress(&stream, "work", Now);
        now += 500ms;
        progress.Show(1, 4);
        now += 99ms;
        progress.Show(2, 4);
        now += 1ms;
        progress.Show(3, 4);
    }
    const std::string quarter = "\rwork [" + std::string(10, '#') + std::string(30, '.') + "] 25 %";
    const std::string most = "\rwork [" + std::string(30, '#') + std::string(10, '.') + "] 75 %";
    EXPECT_EQ(stream.str(), quarter + most + "\r" + std::string(most.size() - 1, ' ') + "\r");
}

TEST(Progress, WithoutATerminalThereIsNone)
{
    now = {};
    Progress progress(nullptr, "work", Now);
    now += 10s;
    progress.Show(1, 1);
}

TEST(Progress, WorkWithoutASizeIsDone)
{
    std::ostringstream stream;
    now = {};
    Progress progress(&stream, "work", Now);
    now += 1s;
    progress.Show(0, 0);
    EXPECT_NE(stream.str().find("] 100 %"), std::string::npos);
}
