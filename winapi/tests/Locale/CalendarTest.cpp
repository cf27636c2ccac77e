// winapi/tests/Locale/CalendarTest.cpp: names of calendars.
#include "../Support/Locales.h"

namespace
{
std::vector<std::string> told;
BOOL answer = 1;

BOOL CALLBACK Take(LPSTR name)
{
    told.emplace_back(name);
    return answer;
}

std::vector<std::string> NamesOf(LCID lcid, CALID calendar, CALTYPE kind = CAL_SCALNAME)
{
    told.clear();
    answer = 1;
    EXPECT_TRUE(EnumCalendarInfoA(Take, lcid, calendar, kind));
    return told;
}

std::vector<CALID> ListOf(const std::string& text)
{
    std::vector<CALID> calendars;
    std::istringstream numbers(text);
    for (std::string number; std::getline(numbers, number, ',');)
        calendars.push_back(static_cast<CALID>(std::stoul(number)));
    return calendars;
}
} // namespace

TEST(Calendar, ALocaleHasTheCalendarsOfItsListAndTheGregorianOne)
{
    for (const Fields& row : ReadTable("locale-facts.tsv")) {
        const std::vector<CALID> list = ListOf(row.back());
        for (CALID calendar = 1; calendar <= 23; ++calendar) {
            const bool has =
                calendar == 1 || std::find(list.begin(), list.end(), calendar) != list.end();
            SetLastError(0);
            EXPECT_EQ(NamesOf(IdOf(row[0]), calendar).size(), has) << row[0] << ' ' << calendar;
            EXPECT_EQ(GetLastError(), has ? 0U : ERROR_INVALID_PARAMETER);
        }
    }
}

TEST(Calendar, TheNameIsInTheLocalesLanguageAndPage)
{
    EXPECT_EQ(NamesOf(0x409, CAL_GREGORIAN), std::vector<std::string>{"Gregorian Calendar"});
    EXPECT_EQ(NamesOf(0x407, CAL_GREGORIAN), std::vector<std::string>{"Gregorianischer Kalender"});
    EXPECT_EQ(NamesOf(0x411, CAL_JAPAN), std::vector<std::string>{"\x98\x61\x97\xEF"});
    EXPECT_EQ(NamesOf(LOCALE_INVARIANT, CAL_GREGORIAN),
              std::vector<std::string>{"Gregorian Calendar"});
}

TEST(Calendar, NamesThatArentIcusAreThoseOfTheTable)
{
    for (const Fields& row : ReadTable("locale-patches.tsv")) {
        if (row[1].substr(0, 3) != "CAL")
            continue;
        const LCID lcid = IdOf(row[0]);
        std::string page = FactA(lcid, LOCALE_IDEFAULTANSICODEPAGE);
        char expected[256];
        WCHAR wide[256];
        const int count = MultiByteToWideChar(CP_UTF8, 0, row[2].c_str(), -1, wide, 256);
        WideCharToMultiByte(page.size() < 3 ? CP_ACP : static_cast<UINT>(std::stoul(page)), 0, wide,
                            count, expected, 256, nullptr, nullptr);
        EXPECT_EQ(NamesOf(lcid, static_cast<CALID>(std::stoul(row[1].substr(3)))),
                  std::vector<std::string>{expected})
            << row[0] << ' ' << row[1];
    }
}

TEST(Calendar, AllCalendarsOfALocaleAreTold)
{
    EXPECT_EQ(NamesOf(0x411, ENUM_ALL_CALENDARS, CAL_ICALINTVALUE),
              (std::vector<std::string>{"1", "3"}));
    EXPECT_EQ(NamesOf(0x411, ENUM_ALL_CALENDARS).size(), 2U);
    told.clear();
    answer = 0;
    EXPECT_TRUE(EnumCalendarInfoA(Take, 0x411, ENUM_ALL_CALENDARS, CAL_SCALNAME));
    EXPECT_EQ(told.size(), 1U);
}

TEST(Calendar, WhatCantBeToldIsRefused)
{
    told.clear();
    RunRows({
        CALL(EnumCalendarInfoA(Take, 0x80D, CAL_GREGORIAN, CAL_SCALNAME), 0,
             ERROR_INVALID_PARAMETER),
        CALL(EnumCalendarInfoA(Take, 0x409, 24, CAL_SCALNAME), 0, ERROR_INVALID_PARAMETER),
        CALL(EnumCalendarInfoA(nullptr, 0x409, CAL_GREGORIAN, CAL_SCALNAME), 0,
             ERROR_INVALID_PARAMETER),
        CALL(EnumCalendarInfoA(Take, 0x409, CAL_HEBREW, CAL_SCALNAME), 1, ERROR_INVALID_PARAMETER),
        CALL(EnumCalendarInfoA(Take, 0x409, 0, CAL_SCALNAME), 1, ERROR_INVALID_PARAMETER),
        CALL(EnumCalendarInfoA(Take, 0x409, CAL_GREGORIAN, 0), 1, ERROR_INVALID_FLAGS),
        CALL(EnumCalendarInfoA(Take, 0x409, CAL_GREGORIAN, 99), 1, ERROR_INVALID_FLAGS),
    });
    EXPECT_TRUE(told.empty());
}
