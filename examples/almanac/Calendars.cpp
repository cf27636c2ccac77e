// examples/almanac/Calendars.cpp
#include "Calendars.h"

#include "Locales.h"
#include "Width.h"

#include <System/LocaleInfo/LocaleInfo.h>
#include <System/Time/Calendar.h>

#include <ctime>

namespace almanac
{
namespace
{
struct Name
{
    const char* own;
    const char* latin;
};

// Nisan is the first month, whatever month the year begins with.
const Name HEBREW_MONTHS[] = {
    {"\u05E0\u05D9\u05E1\u05DF", "Nisan"},
    {"\u05D0\u05D9\u05D9\u05E8", "Iyar"},
    {"\u05E1\u05D9\u05D5\u05DF", "Sivan"},
    {"\u05EA\u05DE\u05D5\u05D6", "Tammuz"},
    {"\u05D0\u05D1", "Av"},
    {"\u05D0\u05DC\u05D5\u05DC", "Elul"},
    {"\u05EA\u05E9\u05E8\u05D9", "Tishri"},
    {"\u05D7\u05E9\u05D5\u05D5\u05DF", "Heshvan"},
    {"\u05DB\u05E1\u05DC\u05D5", "Kislev"},
    {"\u05D8\u05D1\u05EA", "Tevet"},
    {"\u05E9\u05D1\u05D8", "Shevat"},
    {"\u05D0\u05D3\u05E8", "Adar"},
};
// In a leap year Adar is two months.
const Name ADARS[] = {
    {"\u05D0\u05D3\u05E8 \u05D0", "Adar I"},
    {"\u05D0\u05D3\u05E8 \u05D1", "Adar II"},
};
const Name HIJRI_MONTHS[] = {
    {"\u0645\u062D\u0631\u0645", "Muharram"},
    {"\u0635\u0641\u0631", "Safar"},
    {"\u0631\u0628\u064A\u0639 \u0627\u0644\u0623\u0648\u0644", "Rabi I"},
    {"\u0631\u0628\u064A\u0639 \u0627\u0644\u0622\u062E\u0631", "Rabi II"},
    {"\u062C\u0645\u0627\u062F\u0649 \u0627\u0644\u0623\u0648\u0644\u0649", "Jumada I"},
    {"\u062C\u0645\u0627\u062F\u0649 \u0627\u0644\u0622\u062E\u0631\u0629", "Jumada II"},
    {"\u0631\u062C\u0628", "Rajab"},
    {"\u0634\u0639\u0628\u0627\u0646", "Shaban"},
    {"\u0631\u0645\u0636\u0627\u0646", "Ramadan"},
    {"\u0634\u0648\u0627\u0644", "Shawwal"},
    {"\u0630\u0648 \u0627\u0644\u0642\u0639\u062F\u0629", "Dhu al-Qada"},
    {"\u0630\u0648 \u0627\u0644\u062D\u062C\u0629", "Dhu al-Hijja"},
};

std::string Written(const Name& name, Script script)
{
    return script == LATIN ? name.latin : Isolated(name.own);
}

bool IsHebrewLeapYear(int year)
{
    return (7 * year + 1) % 19 < 7;
}

// A Gregorian date with its whole year, and the weekday.
tm MakeDate(int year, int month, int day)
{
    tm date = {};
    date.tm_year = year;
    date.tm_mon = month - 1;
    date.tm_mday = day;
    date.tm_wday = -1;
    CT_Calendar::sv_AddYearWeekday(&date);
    return date;
}

Date HebrewDate(tm date, Script script)
{
    CT_Calendar::sv_Gregorian2Alternate(&date, CT_Calendar::id_Hebrew);
    constexpr int adar = 11;
    const bool isAdar = date.tm_mon >= adar && IsHebrewLeapYear(date.tm_year);
    const Name& name = isAdar ? ADARS[date.tm_mon - adar] : HEBREW_MONTHS[date.tm_mon];
    return {date.tm_mday, Written(name, script), date.tm_year};
}

// No date before the calendar's first day.
Date HijriDate(tm date, Script script)
{
    CT_Calendar::sv_Gregorian2Alternate(&date, CT_Calendar::id_Hijri);
    if (date.tm_year < 1)
        return {0, "", 0};
    return {date.tm_mday, Written(HIJRI_MONTHS[date.tm_mon], script), date.tm_year};
}

// Of a locale; Sunday, which is day 0, stands behind Saturday there.
std::string Weekday(int day, unsigned locale)
{
    const unsigned monday = CT_LocaleInfo::lt_DayName1;
    return Isolated(Fact(locale, monday + static_cast<unsigned>(day + 6) % 7));
}
} // namespace

Month MakeMonth(int year, int month, unsigned locale, Script script)
{
    Month made;
    const unsigned name = CT_LocaleInfo::lt_MonthName1 + static_cast<unsigned>(month - 1);
    made.name = Isolated(Fact(locale, name)) + " " + std::to_string(year);
    for (int day = 1; day <= 31; ++day) {
        tm date = MakeDate(year, month, day);
        if (!CT_Calendar::sb_ValidateTM(&date))
            break;
        made.days.push_back({day, Weekday(date.tm_wday, locale), HebrewDate(date, script),
                             HijriDate(date, script)});
    }
    return made;
}
} // namespace almanac
