// tests/System/Time/CalendarTest.cpp
#include <Ostra/String/CString.h>
#include <System/LocaleInfo/LocaleInfo.h>
#include <System/Time/Calendar.h>

#include <windows.h>

#include <climits>
#include <cstring>

#include "Support/Failure.h"
#include "System/Time/CalendarDates.h"

using namespace calendar;

namespace
{
constexpr unsigned ENGLISH = 0x0409, GERMAN = 0x0407, HEBREW = 0x040D, JAPANESE = 0x0411,
                   THAI = 0x041E, ARABIC = 0x0401, UNKNOWN = 0x7409;

// A number that the service tells of a locale; 0 where it tells none.
unsigned Told(unsigned locale, unsigned type)
{
    char text[64];
    if (!IsValidLocale(locale, LCID_SUPPORTED) || !GetLocaleInfoA(locale, type, text, sizeof(text)))
        return 0;
    return unsigned(std::strtoul(text, nullptr, 10));
}

std::string told_name;

BOOL CALLBACK TakeName(LPSTR name)
{
    told_name = name;
    return 1;
}

// The name that the service tells of a calendar, or "".
std::string ToldName(unsigned locale, unsigned type)
{
    told_name.clear();
    EnumCalendarInfoA(TakeName, locale, type, CAL_SCALNAME);
    return told_name;
}

std::tm Alternate(std::tm date, int id)
{
    CT_Calendar::sv_Gregorian2Alternate(&date, static_cast<CT_Calendar::et_ID>(id));
    return date;
}

std::tm Gregorian(std::tm date, int id)
{
    CT_Calendar::sv_Alternate2Gregorian(&date, static_cast<CT_Calendar::et_ID>(id));
    return date;
}

int Validate(int year, int month, int day)
{
    std::tm date = Tm(year, month, day);
    return CT_Calendar::sb_ValidateTM(&date);
}

bool Same(const std::tm& a, const std::tm& b)
{
    return Of(a) == Of(b) && a.tm_hour == b.tm_hour && a.tm_wday == b.tm_wday &&
           a.tm_yday == b.tm_yday && a.tm_isdst == b.tm_isdst;
}
} // namespace

// ---- The table ----------------------------------------------------------------------------

TEST(Calendar, TheTableHasElevenRowsInTheirOrder)
{
    struct Row
    {
        int id, type, offset;
        const char16_t* era;
    };
    const Row rows[] = {
        {1, 1, 0, u"A.D."},
        {2, 2, 0, u"A.D."},
        {3, 3, 1988, u"\u5E73\u6210"},
        {301, 3, 1925, u"\u662D\u548C"},
        {302, 3, 1911, u"\u5927\u6B63"},
        {303, 3, 1867, u"\u660E\u6CBB"},
        {4, 4, 1911, u"\u4E2D\u83EF\u6C11\u570B"},
        {5, 5, -2333, u"\uB2E8\uAE30"},
        {7, 7, -543, u"\u0E1E.\u0E28."},
        {6, 6, -1, u"A.H."},
        {8, 8, -2, u"Hebrew"},
    };
    ASSERT_EQ(CT_Calendar::sn_GetIDCount(), 11U);
    for (unsigned n = 0; n < 11; ++n) {
        SCOPED_TRACE(n);
        EXPECT_EQ(CT_Calendar::seo_GetCalID(n), rows[n].id);
        EXPECT_EQ(CT_Calendar::seo_GetCalType(n), rows[n].type);
        EXPECT_EQ(CT_Calendar::si_GetCalOffset(n), rows[n].offset);
        EXPECT_EQ(Wide(CT_Calendar::sqcuz_GetCalEra(n)), rows[n].era);
    }
    EXPECT_EQ(CT_Calendar::seo_GetCalType(11), 0);
}

// ---- Locales ------------------------------------------------------------------------------

TEST(Calendar, ALocaleTellsItsOwnCalendarAndTheOneBeside)
{
    for (unsigned locale : {ENGLISH, GERMAN, HEBREW, JAPANESE, THAI, ARABIC}) {
        SCOPED_TRACE(locale);
        EXPECT_EQ(unsigned(CT_Calendar::seo_GetCalendar(locale)), Told(locale, 4105));
        EXPECT_EQ(unsigned(CT_Calendar::seo_GetAlternateCalendar(locale)), Told(locale, 4107));
        EXPECT_NE(CT_Calendar::seo_GetCalendar(locale), 0);
    }
    EXPECT_EQ(CT_Calendar::seo_GetCalendar(ENGLISH), CT_Calendar::ct_Gregorian);
}

TEST(Calendar, AnUnknownLocaleHasNoCalendar)
{
    for (unsigned locale : {0U, UNKNOWN, 0x0400U, 0x0800U}) {
        SCOPED_TRACE(locale);
        EXPECT_EQ(CT_Calendar::seo_GetCalendar(locale), 0);
        EXPECT_EQ(CT_Calendar::seo_GetAlternateCalendar(locale), 0);
        EXPECT_EQ(CT_Calendar::seo_AlternateCalendar(locale), 0);
    }
}

TEST(Calendar, TheCalendarToUseIsTheOwnOneUnlessGregorianThenTheOneBesideThenHebrew)
{
    for (unsigned locale = 0; locale < 0x10000; ++locale) {
        const unsigned own = Told(locale, 4105), other = Told(locale, 4107);
        unsigned expected = (locale & 0x3FF) == 13 ? 8 : 0;
        if (own != 1 && own != 2)
            expected = own;
        else if (other != 1 && other != 2)
            expected = other;
        ASSERT_EQ(unsigned(CT_Calendar::seo_AlternateCalendar(locale)), expected) << locale;
        if ((locale & 0x3FF) == 0x7F)
            locale |= 0x3FF; // there are no primary languages above
    }
    EXPECT_EQ(CT_Calendar::seo_AlternateCalendar(HEBREW), CT_Calendar::ct_Hebrew);
}

TEST(Calendar, ACalendarsNameIsWhatTheSystemTellsInTheLocalesPage)
{
    for (unsigned locale : {ENGLISH, GERMAN, HEBREW, JAPANESE, THAI}) {
        SCOPED_TRACE(locale);
        CT_CString name(437u);
        ASSERT_EQ(CT_Calendar::sb_GetCalendarName(locale, &name), 1);
        const std::string told = ToldName(locale, Told(locale, 4105));
        EXPECT_FALSE(told.empty());
        EXPECT_EQ(name.qccz_Get(), told);
        EXPECT_EQ(name.vn_GetLength(), told.size());
        EXPECT_EQ(name.n_GetCodePage(), CT_LocaleInfo::sn_GetDefaultANSICodePage(locale));
    }
}

TEST(Calendar, TheOtherCalendarHasANameWhereThereIsOne)
{
    for (unsigned locale : {HEBREW, JAPANESE}) {
        SCOPED_TRACE(locale);
        CT_CString name;
        ASSERT_EQ(CT_Calendar::sb_GetAlternateCalendarName(locale, &name), 1);
        EXPECT_EQ(name.qccz_Get(), ToldName(locale, Told(locale, 4107)));
        EXPECT_STRNE(name.qccz_Get(), "");
        EXPECT_EQ(name.n_GetCodePage(), CT_LocaleInfo::sn_GetDefaultANSICodePage(locale));
    }
}

TEST(Calendar, WithoutAnotherCalendarTheStringForItsNameStays)
{
    // None beside, and the locale's own.
    for (unsigned locale : {ENGLISH, GERMAN, THAI, UNKNOWN}) {
        SCOPED_TRACE(locale);
        CT_CString name("before", CT_String::ALL, 437);
        EXPECT_EQ(CT_Calendar::sb_GetAlternateCalendarName(locale, &name), 0);
        EXPECT_STREQ(name.qccz_Get(), "before");
        EXPECT_EQ(name.n_GetCodePage(), 437U);
    }
}

TEST(Calendar, ACalendarWithoutANameGivesTheNameOfTheCallBefore)
{
    CT_CString name;
    CT_Calendar::sv_SetEnumInfo("the one before");
    EXPECT_EQ(CT_Calendar::sb_GetCalendarName(UNKNOWN, &name), 1);
    EXPECT_STREQ(name.qccz_Get(), "the one before");
    EXPECT_EQ(name.n_GetCodePage(), CT_LocaleInfo::sn_GetDefaultANSICodePage(UNKNOWN));
    CT_Calendar::sv_SetEnumInfo("");
    EXPECT_EQ(CT_Calendar::sb_GetCalendarName(UNKNOWN, &name), 1);
    EXPECT_STREQ(name.qccz_Get(), "");
}

TEST(Calendar, BytesOfANameAreTakenAsTheyAre)
{
    CT_CString name;
    CT_Calendar::sv_SetEnumInfo("\x80\xFF z");
    CT_Calendar::sb_GetCalendarName(UNKNOWN, &name);
    EXPECT_STREQ(name.qccz_Get(), "\x80\xFF z");
}

TEST(Calendar, ANameOf255BytesIsKeptAndALongerOneCut)
{
    CT_CString name;
    const std::string most(255, 'x');
    CT_Calendar::sv_SetEnumInfo(most.c_str());
    CT_Calendar::sb_GetCalendarName(UNKNOWN, &name);
    EXPECT_EQ(name.qccz_Get(), most);
    CT_Calendar::sv_SetEnumInfo((most + "yz").c_str());
    CT_Calendar::sb_GetCalendarName(UNKNOWN, &name);
    EXPECT_EQ(name.qccz_Get(), most);
}

// ---- Days of months and of weeks ----------------------------------------------------------

TEST(Calendar, AMonthHasItsDaysAndDayZero)
{
    const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 1; month <= 12; ++month) {
        SCOPED_TRACE(month);
        for (int day = 0; day <= 33; ++day)
            EXPECT_EQ(Validate(1997, month, day), day <= days[month - 1]) << day;
        EXPECT_EQ(Validate(1997, month, -1), 0);
        EXPECT_EQ(Validate(1997, month, INT_MIN), 0);
    }
}

TEST(Calendar, FebruaryHas29DaysInLeapYears)
{
    for (int year : {4, 1996, 2000, 1600, 2400, -4, 0})
        EXPECT_TRUE(Validate(year, 2, 29) && !Validate(year, 2, 30)) << year;
    for (int year : {1, 1900, 1997, 2100, -100, -1})
        EXPECT_TRUE(Validate(year, 2, 28) && !Validate(year, 2, 29)) << year;
}

TEST(Calendar, AThirteenthMonthHasNoDayAndOtherMonthsHave31)
{
    for (int day : {0, 1, 28, 31})
        EXPECT_EQ(Validate(1997, 13, day), 0);
    for (int month : {0, -1, 14, 100, INT_MIN + 1}) {
        EXPECT_EQ(Validate(1997, month, 31), 1) << month;
        EXPECT_EQ(Validate(1997, month, 32), 0) << month;
    }
}

TEST(Calendar, TheDayOfTheYearIsAlwaysSetAndTheDayOfTheWeekWhereItIsMinusOne)
{
    std::tm date = Tm(1998, 1, 1, -1);
    CT_Calendar::sv_AddYearWeekday(&date);
    EXPECT_EQ(date.tm_yday, 0);
    EXPECT_EQ(date.tm_wday, 4);
    date = Tm(2000, 12, 31, 6);
    CT_Calendar::sv_AddYearWeekday(&date);
    EXPECT_EQ(date.tm_yday, 365);
    EXPECT_EQ(date.tm_wday, 6);
    EXPECT_EQ(Of(date), (Date{2000, 12, 31}));
    EXPECT_EQ(date.tm_hour, 11);
    date = Tm(1, 1, 1, -1);
    CT_Calendar::sv_AddYearWeekday(&date);
    EXPECT_EQ(date.tm_wday, 1);
    date = Tm(-1, 1, 1, -1); // day -729
    CT_Calendar::sv_AddYearWeekday(&date);
    EXPECT_EQ(date.tm_wday, -1);
    EXPECT_EQ(date.tm_yday, 0);
}

// ---- Conversion ---------------------------------------------------------------------------

TEST(Calendar, DayOneIsTheFirstOfJanuaryOfYearOneAMonday)
{
    const std::tm date = GregorianByNumber(1, -1);
    EXPECT_EQ(Of(date), (Date{1, 1, 1}));
    EXPECT_EQ(date.tm_wday, 1);
    EXPECT_EQ(date.tm_yday, 0);
    EXPECT_EQ(NumberOf(Tm(1, 1, 1)), 1);
}

TEST(Calendar, TheFirstHijriDayIsDay227015)
{
    EXPECT_EQ(NumberOf(Tm(1, 1, 1), CT_Calendar::id_Hijri), 227015);
    EXPECT_EQ(Of(ByNumber(227015, CT_Calendar::id_Hijri)), (Date{1, 1, 1}));
}

TEST(Calendar, ADayBeforeTheFirstHijriOneHasYearMonthAndDayZero)
{
    for (int day : {227014, 227013, 1, 0, -1000000, INT_MIN + 1}) {
        const std::tm date = ByNumber(day, CT_Calendar::id_Hijri);
        EXPECT_EQ(Of(date), (Date{0, 0, 0})) << day;
        EXPECT_EQ(date.tm_mon, -1);
        EXPECT_EQ(date.tm_wday, day + 1);
        // From month 1, day 1 of a year 0 on: 227014 - 354 + 1.
        if (day > -1000000000) {
            EXPECT_EQ(date.tm_yday, day - 226661 + 1);
        }
    }
}

TEST(Calendar, TishriOfTheFirstHebrewYearIsDayMinus1373427)
{
    EXPECT_EQ(NumberOf(Tm(1, 7, 1), CT_Calendar::id_Hebrew), -1373427);
    EXPECT_EQ(Of(ByNumber(-1373427, CT_Calendar::id_Hebrew)), (Date{1, 7, 1}));
}

TEST(Calendar, NewYearOf1998IsDay729390InAllThreeCalendars)
{
    EXPECT_EQ(NumberOf(Tm(1998, 1, 1)), 729390);
    const std::tm hebrew = Alternate(Tm(1998, 1, 1), 8);
    EXPECT_EQ(Of(hebrew), (Date{5758, 10, 3}));
    EXPECT_EQ(hebrew.tm_wday, 4);
    const std::tm hijri = Alternate(Tm(1998, 1, 1), 6);
    EXPECT_EQ(Of(hijri), (Date{1418, 9, 2}));
    const std::tm back = Gregorian(Tm(1418, 9, 2, -1), 6);
    EXPECT_EQ(Of(back), (Date{1998, 1, 1}));
    EXPECT_EQ(back.tm_wday, 4);
    EXPECT_EQ(back.tm_yday, 0);
    EXPECT_EQ(Of(Gregorian(Tm(5758, 10, 3), 8)), (Date{1998, 1, 1}));
}

TEST(Calendar, TishriOf5758Is2October1997)
{
    EXPECT_EQ(NumberOf(Tm(5758, 7, 1), CT_Calendar::id_Hebrew), 729299);
    EXPECT_EQ(NumberOf(Tm(1997, 10, 2)), 729299);
    EXPECT_EQ(Of(Gregorian(Tm(5758, 7, 1), 8)), (Date{1997, 10, 2}));
}

TEST(Calendar, AHijriDateLeavesItsDayNumberPlusOneAsDayOfTheWeek)
{
    const std::tm date = Alternate(Tm(1998, 1, 1, 4), 6);
    EXPECT_EQ(date.tm_wday, 729391);
    EXPECT_GT(date.tm_wday, 7);
}

TEST(Calendar, TheDayOfAHijriYearCountsFromOne)
{
    EXPECT_EQ(ByNumber(227015, CT_Calendar::id_Hijri).tm_yday, 1);
    EXPECT_EQ(ByNumber(227015 + 353, CT_Calendar::id_Hijri).tm_yday, 354);
    // 1418 begins on 9 May 1997 by the tables; the months before its ninth have 236 days.
    EXPECT_EQ(Alternate(Tm(1998, 1, 1), 6).tm_yday, 238);
}

TEST(Calendar, TheDayOfAHebrewYearCountsFromNisanAndIsBelowOneBeforeIt)
{
    // Nisan 1 of 5758 is 28 March 1998, the last day of Adar the one before.
    EXPECT_EQ(Of(Alternate(Tm(1998, 3, 28), 8)), (Date{5758, 1, 1}));
    EXPECT_EQ(Alternate(Tm(1998, 3, 28), 8).tm_yday, 1);
    EXPECT_EQ(Of(Alternate(Tm(1998, 3, 27), 8)), (Date{5758, 12, 29}));
    EXPECT_EQ(Alternate(Tm(1998, 3, 27), 8).tm_yday, 0);
    EXPECT_EQ(Alternate(Tm(1997, 10, 2), 8).tm_yday, 729299 - (729299 + 177) + 1);
    // Elul 29 ends the year.
    EXPECT_EQ(Alternate(Tm(1998, 9, 20), 8).tm_yday, 177);
}

TEST(Calendar, ErasAreYearOffsetsAndLeaveEverythingElse)
{
    struct Row
    {
        int id, offset;
    };
    const Row rows[] = {{1, 0},      {2, 0},    {3, 1988},  {301, 1925}, {302, 1911},
                        {303, 1867}, {4, 1911}, {5, -2333}, {7, -543}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.id);
        const std::tm date = Tm(1998, 3, 10);
        std::tm expected = date;
        expected.tm_year = 1998 - row.offset;
        EXPECT_TRUE(Same(Alternate(date, row.id), expected));
        expected.tm_year = 1998 + row.offset;
        EXPECT_TRUE(Same(Gregorian(date, row.id), expected));
    }
}

TEST(Calendar, AnIdThatNoRowHasLeavesTheDate)
{
    for (int id : {0, 9, 23, 300, 304, -1, -2}) {
        SCOPED_TRACE(id);
        EXPECT_TRUE(Same(Alternate(Tm(1998, 3, 10), id), Tm(1998, 3, 10)));
        EXPECT_TRUE(Same(Gregorian(Tm(1998, 3, 10), id), Tm(1998, 3, 10)));
    }
}

TEST(Calendar, AGregorianDateOfAnotherCalendarKeepsAGivenDayOfTheWeek)
{
    EXPECT_EQ(Gregorian(Tm(5758, 10, 3, 77), 8).tm_wday, 77);
    EXPECT_EQ(Gregorian(Tm(5758, 10, 3, -1), 8).tm_wday, 4);
    EXPECT_EQ(Gregorian(Tm(1418, 9, 2, 77), 6).tm_wday, 77);
    EXPECT_EQ(Gregorian(Tm(1418, 9, 2, 77), 6).tm_yday, 0);
}

TEST(Calendar, DaysAndMonthsBeyondTheirRangesCountOn)
{
    EXPECT_EQ(NumberOf(Tm(1998, 1, 366)), 729390 + 365);
    EXPECT_EQ(NumberOf(Tm(1998, 1, -30)), 729390 - 31);
    // A month behind the twelfth is one of 31 days, and those below the first count nothing.
    EXPECT_EQ(NumberOf(Tm(1998, 13, 1)), 729390 + 365);
    EXPECT_EQ(NumberOf(Tm(1998, 14, 1)), 729390 + 365 + 31);
    EXPECT_EQ(NumberOf(Tm(1998, 15, 1)), 729390 + 365 + 62);
    EXPECT_EQ(NumberOf(Tm(1996, 14, 1)), NumberOf(Tm(1996, 1, 1)) + 366 + 31);
    EXPECT_EQ(NumberOf(Tm(1998, 0, 1)), 729390);
    EXPECT_EQ(NumberOf(Tm(1998, -5, 1)), 729390);
    // Hebrew months behind the last: 29 days for a thirteenth, 30 for others.
    const int tishri = 729299, year = 354;
    EXPECT_EQ(NumberOf(Tm(5758, 13, 1), CT_Calendar::id_Hebrew), tishri + year - 177);
    EXPECT_EQ(NumberOf(Tm(5758, 14, 1), CT_Calendar::id_Hebrew), tishri + year - 177 + 29);
    EXPECT_EQ(NumberOf(Tm(5758, 16, 1), CT_Calendar::id_Hebrew), tishri + year - 177 + 89);
    EXPECT_EQ(NumberOf(Tm(5758, 0, 1), CT_Calendar::id_Hebrew), tishri + year - 177);
    // Hijri months are by the formula alone.
    EXPECT_EQ(NumberOf(Tm(1418, 14, 1), CT_Calendar::id_Hijri),
              NumberOf(Tm(1418, 1, 1), CT_Calendar::id_Hijri) + 29 * 13 + 7);
}

TEST(Calendar, YearsBeyondAllDayNumbersEndSomewhere)
{
    for (int year : {INT_MAX, INT_MIN, 5879612, -5879612, 6100000, -6100000}) {
        for (int month : {INT_MAX, INT_MIN, 1, 12}) {
            for (int day : {INT_MAX, INT_MIN, 1}) {
                for (int id : {1, 3, 5, 6, 8}) {
                    std::tm date = Tm(year, 1, day, -1);
                    date.tm_mon = month;
                    Alternate(date, id);
                    Gregorian(date, id);
                    CT_Calendar::sb_ValidateTM(&date);
                    CT_Calendar::sv_AddYearWeekday(&date);
                }
            }
        }
    }
}
