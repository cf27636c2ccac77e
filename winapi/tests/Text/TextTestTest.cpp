// winapi/tests/Text/TextTestTest.cpp
#include "../Support/Calls.h"

#include <fstream>
#include <sstream>
#include <vector>

namespace
{
constexpr INT ALL_TESTS = 0xFFFF;
constexpr INT AGAINST = IS_TEXT_UNICODE_REVERSE_MASK | IS_TEXT_UNICODE_NOT_UNICODE_MASK;

struct Answer
{
    std::vector<BYTE> bytes;
    BOOL result;
    INT flags;
};

std::vector<Answer> MeasuredAnswers()
{
    std::vector<Answer> answers;
    std::ifstream file(std::string(WINAPI_TEST_DATA) + "/istextunicode.tsv");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#'))
            continue;
        std::istringstream fields(line);
        std::size_t size;
        Answer answer;
        std::string bytes;
        fields >> std::dec >> size >> answer.result >> std::hex >> answer.flags >> bytes;
        for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
            answer.bytes.push_back(static_cast<BYTE>(std::stoi(bytes.substr(i, 2), nullptr, 16)));
        EXPECT_EQ(size, answer.bytes.size());
        answers.push_back(answer);
    }
    return answers;
}

BOOL Ask(const Answer& answer, INT* tests)
{
    return IsTextUnicode(answer.bytes.data(), static_cast<INT>(answer.bytes.size()), tests);
}

bool Speaks(INT flags)
{
    return flags && !(flags & AGAINST);
}
} // namespace

TEST(TextTest, GivesTheMeasuredAnswers)
{
    const auto answers = MeasuredAnswers();
    EXPECT_EQ(193U, answers.size());
    for (const Answer& answer : answers) {
        SCOPED_TRACE(testing::PrintToString(answer.bytes));
        EXPECT_EQ(answer.result, Ask(answer, nullptr));
        INT tests = ALL_TESTS;
        EXPECT_EQ(answer.result, Ask(answer, &tests));
        EXPECT_EQ(answer.flags, tests);
    }
}

TEST(TextTest, MakesTheTestsThatAreAskedFor)
{
    for (const Answer& answer : MeasuredAnswers()) {
        SCOPED_TRACE(testing::PrintToString(answer.bytes));
        for (INT bit = 1; bit < ALL_TESTS; bit <<= 1) {
            INT tests = bit;
            EXPECT_EQ(Speaks(answer.flags & bit), Ask(answer, &tests) != 0) << bit;
            EXPECT_EQ(answer.flags & bit, tests);
        }
        INT none = 0;
        EXPECT_FALSE(Ask(answer, &none));
        EXPECT_EQ(0, none);
    }
}

TEST(TextTest, TakesBytesAtAnyAddress)
{
    for (const Answer& answer : MeasuredAnswers()) {
        std::vector<BYTE> moved(1);
        moved.insert(moved.end(), answer.bytes.begin(), answer.bytes.end());
        const INT size = static_cast<INT>(answer.bytes.size());
        INT tests = ALL_TESTS;
        EXPECT_EQ(answer.result, IsTextUnicode(moved.data() + 1, size, &tests));
        EXPECT_EQ(answer.flags, tests);
    }
}

TEST(TextTest, LeavesTheLastErrorAlone)
{
    SetLastError(77);
    EXPECT_FALSE(IsTextUnicode("", 0, nullptr));
    EXPECT_FALSE(IsTextUnicode("a", 1, nullptr));
    EXPECT_TRUE(IsTextUnicode("a\0b", 4, nullptr));
    EXPECT_EQ(77U, GetLastError());
}

TEST(TextTest, LessThanAUnitIsNoText)
{
    INT tests = ALL_TESTS;
    EXPECT_FALSE(IsTextUnicode("a", 1, &tests));
    EXPECT_EQ(0, tests);
    EXPECT_FALSE(IsTextUnicode(nullptr, 0, nullptr));
#ifndef _WIN32
    // The platform takes a negative count for a large one.
    EXPECT_FALSE(IsTextUnicode("ab", -1, nullptr));
#endif
}

TEST(TextTest, KnowsTextOfManyScripts)
{
    // Few of these have a unit with a zero byte but the blank.
    for (const char16_t* text : {u"plain", u"\u0441\u043B\u043E\u0432\u043E \u0438",
                                 u"\u05E9\u05DC\u05D5\u05DD \u05D5", u"\u65E5\u672C\u3000\u8A9E"}) {
        const WideString units = Wide(text);
        EXPECT_TRUE(IsTextUnicode(units.data(), static_cast<INT>(units.size() * 2), nullptr));
    }
    // Turned, it speaks against itself.
    EXPECT_FALSE(IsTextUnicode("\0a\0 ", 4, nullptr));
    EXPECT_FALSE(IsTextUnicode("some ASCII", 10, nullptr));
}
