// tests/Faults/LocaleServicesTest.cpp: what the classes of locales ask of the system, and what they
// make of a refusal.
#ifndef _WIN32
#include <System/LocaleInfo/FormatString.h>
#include <System/LocaleInfo/LocaleInfo.h>
#include <System/Time/Time.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "Ostra/String/StringSupport.h"

namespace
{
// A question about a fact.
struct Question
{
    LCID locale;
    LCTYPE type;
    int room;

    bool operator==(const Question&) const = default;
};

void PrintTo(const Question& question, std::ostream* out)
{
    *out << std::hex << question.locale << " " << std::dec << question.type << " " << question.room;
}

// A number to be written.
struct Number
{
    LCID locale;
    DWORD flags;
    std::string text;
    unsigned digits, leading_zero, grouping;
    std::string decimal, thousand;
    unsigned order;
    int room;

    bool operator==(const Number&) const = default;
};

void PrintTo(const Number& number, std::ostream* out)
{
    *out << std::hex << number.locale << " " << number.flags << " " << number.text << std::dec
         << " digits " << number.digits << " zero " << number.leading_zero << " grouping "
         << number.grouping << " " << number.decimal << " " << number.thousand << " order "
         << number.order << " room " << number.room;
}

std::vector<Question> questions;
std::vector<Number> numbers;
unsigned refused_type; // the kind that isn't answered; 0 for none
bool refuses_numbers;

class LocaleServices : public testing::Test
{
protected:
    LocaleServices() { Begin(); }
    ~LocaleServices() override { Begin(); }

    static void Begin()
    {
        questions.clear();
        numbers.clear();
        refused_type = 0;
        refuses_numbers = false;
    }
};

std::string Format(float number, unsigned locale)
{
    CT_CString out("before", ALL, 1252);
    const int done = CT_FormatString::sb_FormatNumber(&out, number, locale, 2, 3);
    return (done ? "" : "0:") + Text(out);
}
} // namespace

// The linker leads the library's calls of these services here.
int WrappedGetLocaleInfoA(LCID, LCTYPE, LPSTR, int) asm("__wrap_" OSTRA_GET_LOCALE_INFO_A);
int RealGetLocaleInfoA(LCID, LCTYPE, LPSTR, int) asm("__real_" OSTRA_GET_LOCALE_INFO_A);
int WrappedGetNumberFormatA(LCID, DWORD, LPCSTR, const NUMBERFMTA*, LPSTR,
                            int) asm("__wrap_" OSTRA_GET_NUMBER_FORMAT_A);
int RealGetNumberFormatA(LCID, DWORD, LPCSTR, const NUMBERFMTA*, LPSTR,
                         int) asm("__real_" OSTRA_GET_NUMBER_FORMAT_A);

int WrappedGetLocaleInfoA(LCID locale, LCTYPE type, LPSTR out, int room)
{
    questions.push_back({locale, type, room});
    return type == refused_type ? 0 : RealGetLocaleInfoA(locale, type, out, room);
}

int WrappedGetNumberFormatA(LCID locale, DWORD flags, LPCSTR text, const NUMBERFMTA* format,
                            LPSTR out, int room)
{
    numbers.push_back({locale, flags, text, format->NumDigits, format->LeadingZero,
                       format->Grouping, format->lpDecimalSep, format->lpThousandSep,
                       format->NegativeOrder, room});
    return refuses_numbers ? 0 : RealGetNumberFormatA(locale, flags, text, format, out, room);
}

TEST_F(LocaleServices, AFactIsAskedForWithTheRoomOfItsForm)
{
    CT_UString text;
    unsigned number = 0;
    char bytes[5];
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(0x0407, CT_LocaleInfo::lt_DayName1, &text), 1);
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(0x0407, CT_LocaleInfo::lt_Calendar, &number), 1);
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(0x0407, CT_LocaleInfo::lt_Calendar, bytes, 5), 1);
    EXPECT_EQ(questions,
              (std::vector<Question>{
                  {0x0407, 42, 128}, {0x0407, 4100, 8}, {0x0407, 4105, 64}, {0x0407, 4105, 5}}));
}

TEST_F(LocaleServices, NothingIsAskedAboutWhatCannotBeAnswered)
{
    CT_UString text;
    unsigned number = 0;
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(0x0400, CT_LocaleInfo::lt_DayName1, &text), 0);
    EXPECT_EQ(CT_LocaleInfo::sb_GetLocaleInfo(0x0407, CT_LocaleInfo::lt_ShortDate, &number), 0);
    EXPECT_EQ(questions, std::vector<Question>());
}

TEST_F(LocaleServices, AMaskWithoutTheShortDateIsThatOfTheTimeAlone)
{
    CT_UString whole, mask(U(u"before"));
    CT_Time::sv_GetInputMask(&whole);
    ASSERT_FALSE(questions.empty());
    refused_type = questions[0].type;
    CT_Time::sv_GetInputMask(&mask);
    EXPECT_EQ(Text(mask), u"[[,] HH::mm[:ss]]");
    EXPECT_EQ(Text(whole).substr(Text(whole).size() - Text(mask).size()), Text(mask));
    EXPECT_GT(Text(whole).size(), Text(mask).size());
}

TEST_F(LocaleServices, WithoutAnAnswerTheLanguageDecidesAboutTheCodePage)
{
    refused_type = 4100;
    const struct
    {
        unsigned locale;
        unsigned page;
    } cases[] = {
        {0x0404, 950},  {0x0804, 936},  {0x0C04, 950},      {0x1004, 936},  {0x0004, 936},
        {0x0412, 949},  {0x0812, 1361}, {0x0C12, 949},      {0x0411, 932},  {0x0401, 1256},
        {0x0438, 1250}, {0x0415, 1250}, {0x00010407, 1252}, {0x0427, 1257}, {0x0400, 1252},
    };
    for (const auto& row : cases)
        EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultANSICodePage(row.locale), row.page) << row.locale;
    EXPECT_EQ(CT_LocaleInfo::sn_GetDefaultCharset(0x0404), 136U);
}

TEST_F(LocaleServices, ANumberIsWrittenForTheUserByTheFactsOfTheLocale)
{
    EXPECT_EQ(Format(-1234.5F, 0x0407), "-1.234,50");
    EXPECT_EQ(numbers,
              (std::vector<Number>{{0x0400, 0, "-1234.500000", 2, 1, 3, ",", ".", 1, 64}}));
    EXPECT_EQ(questions,
              (std::vector<Question>{
                  {0x0407, 18, 64}, {0x0407, 4112, 64}, {0x0407, 14, 2}, {0x0407, 15, 2}}));
}

TEST_F(LocaleServices, AnIntegerIsWrittenWithoutAPoint)
{
    CT_UString out;
    EXPECT_EQ(CT_FormatString::sb_FormatNumber(&out, 4294967295U, 0x0409, 0, 32), 1);
    EXPECT_EQ(numbers, (std::vector<Number>{{0x0400, 0, "4294967295", 0, 1, 32, ".", ",", 1, 64}}));
}

TEST_F(LocaleServices, TheFactsOfLocale0AreThoseOfTheThreads)
{
    const LCID before = GetThreadLocale();
    ASSERT_TRUE(SetThreadLocale(0x0407));
    EXPECT_EQ(Format(0.5F, 0), "0,50");
    SetThreadLocale(before);
    ASSERT_EQ(questions.size(), 4U);
    EXPECT_EQ(questions[0], (Question{0x0407, 18, 64}));
    ASSERT_EQ(numbers.size(), 1U);
    EXPECT_EQ(numbers[0].locale, 0x0400U);
}

TEST_F(LocaleServices, OnlyARefusalOfTheFirstFactIsToldOfANumber)
{
    refused_type = 18;
    EXPECT_EQ(Format(-1234.5F, 0x0407), "0:before");
    EXPECT_TRUE(numbers.empty());
    refused_type = 4112;
    EXPECT_EQ(Format(-1234.5F, 0x0407), "-1.234,50");
    refused_type = 14;
    EXPECT_EQ(Format(-1234.5F, 0x0407), "-1.234.50");
    refused_type = 15;
    EXPECT_EQ(Format(-1234.5F, 0x0407), "-1234,50");
    refused_type = 0;
    refuses_numbers = true;
    EXPECT_EQ(Format(-1234.5F, 0x0407), "");
}

TEST_F(LocaleServices, MoreDecimalsThanThereIsRoomForAreCut)
{
    CT_UString out;
    EXPECT_EQ(CT_FormatString::sb_FormatNumber(&out, 1U, 0x0409, 0xFFFFFFFF, 3), 1);
    ASSERT_EQ(numbers.size(), 1U);
    EXPECT_EQ(numbers[0].digits, 64U);
    EXPECT_EQ(Text(out), u"");
}
#endif
