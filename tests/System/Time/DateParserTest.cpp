// tests/System/Time/DateParserTest.cpp: dates read after pictures.
#include <random>

#include "Support/Clock.h"
#include "Support/Directory.h"
#include "System/Time/TimeTextSupport.h"

using namespace time_text;

namespace
{
// 15 January and 31 August 2000, noon UTC.
constexpr long long JANUARY = 947937600, AUGUST_31 = 967723200;

int Set(CT_Time* time, const char16_t* text, const char16_t* picture, unsigned locale = ENGLISH,
        int calendar = 0)
{
    const CT_UString wide_text(text), wide_picture(picture);
    return time->b_Set(&wide_text, &wide_picture, locale,
                       static_cast<CT_Calendar::et_ID>(calendar));
}

// What is read, as text, or "refused".
std::u16string Read(const char16_t* text, const char16_t* picture, unsigned locale = ENGLISH,
                    int calendar = 0)
{
    CT_Time time(YEAR_1970);
    if (!Set(&time, text, picture, locale, calendar))
        return u"refused";
    return DateText(time, ENGLISH, u"yyyy-MM-dd ") + TimeText(time, ENGLISH, u"HH:mm:ss");
}

// The date alone.
std::u16string Day(const char16_t* text, const char16_t* picture, unsigned locale = ENGLISH,
                   int calendar = 0)
{
    return Read(text, picture, locale, calendar).substr(0, 10);
}

std::u16string Clock(const char16_t* text, const char16_t* picture, unsigned locale = ENGLISH)
{
    const std::u16string all = Read((std::u16string(u"1.2.1998 ") + text).c_str(),
                                    (std::u16string(u"d.M.yyyy ") + picture).c_str(), locale);
    return all.size() > 11 ? all.substr(11) : all;
}

// Tests that need another present than the machine's.
class DateParserThen : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!FixedClock::WORKS)
            GTEST_SKIP() << "the present is the machine's";
    }
};

// The names of a kind that a locale has, first to last; a twelfth or thirteenth may be missing.
std::vector<std::u16string> Names(unsigned locale, std::initializer_list<unsigned> types)
{
    std::vector<std::u16string> names;
    for (unsigned type : types)
        names.push_back(Fact(locale, type));
    return names;
}
} // namespace

// ---- Numbers ------------------------------------------------------------------------------

TEST(DateParser, FieldsOfNumbersAreReadInTheirPlaces)
{
    EXPECT_EQ(Read(u"29.2.2000 23:59:58", u"d.M.yyyy HH:mm:ss"), u"2000-02-29 23:59:58");
    EXPECT_EQ(Read(u"02/29/2000", u"MM/dd/yyyy"), u"2000-02-29 00:00:00");
    EXPECT_EQ(Read(u"20000229235958", u"yyyyMMddHHmmss"), u"2000-02-29 23:59:58");
    EXPECT_EQ(Read(u"7.8.1998 1:2:3", u"d.M.yyyy H:m:s"), u"1998-08-07 01:02:03");
}

TEST(DateParser, OneLetterTakesTwoDigitsToo)
{
    EXPECT_EQ(Day(u"29.12.1998", u"d.M.yyyy"), u"1998-12-29");
    EXPECT_EQ(Clock(u"17:18:19", u"H:m:s"), u"17:18:19");
    EXPECT_EQ(Day(u"9.2.1998", u"dd.MM.yyyy"), u"1998-02-09");
}

TEST(DateParser, NumbersOutsideOfTheirRangesAreRefused)
{
    EXPECT_EQ(Day(u"0.2.1998", u"d.M.yyyy"), u"refused");
    EXPECT_EQ(Day(u"32.1.1998", u"d.M.yyyy"), u"refused");
    EXPECT_EQ(Day(u"31.1.1998", u"d.M.yyyy"), u"1998-01-31");
    EXPECT_EQ(Day(u"1.0.1998", u"d.M.yyyy"), u"refused");
    EXPECT_EQ(Day(u"1.14.1998", u"d.M.yyyy"), u"refused");
    EXPECT_EQ(Clock(u"23:59:59", u"HH:mm:ss"), u"23:59:59");
    EXPECT_EQ(Clock(u"24:00:00", u"HH:mm:ss"), u"refused");
    EXPECT_EQ(Clock(u"0:60:0", u"HH:mm:ss"), u"refused");
    EXPECT_EQ(Clock(u"0:0:60", u"HH:mm:ss"), u"refused");
}

TEST(DateParser, AMissingNumberIsZero)
{
    EXPECT_EQ(Clock(u"", u"HH:mm:ss"), u"00:00:00");
    EXPECT_EQ(Clock(u"17", u"HH:mm:ss"), u"17:00:00");
    EXPECT_EQ(Clock(u"x", u"HH:mm:ss"), u"00:00:00");
    EXPECT_EQ(Day(u".2.1998", u"d.M.yyyy"), u"refused");
    EXPECT_EQ(Day(u"1.2.", u"d.M.yyyy"), u"refused");
}

TEST(DateParser, AnHourOfTwelveGoesUpToEleven)
{
    EXPECT_EQ(Clock(u"11:30", u"h:mm"), u"11:30:00");
    EXPECT_EQ(Clock(u"0:30", u"hh:mm"), u"00:30:00");
    EXPECT_EQ(Clock(u"12:30", u"h:mm"), u"refused");
    EXPECT_EQ(Clock(u"12:30", u"hh:mm"), u"refused");
}

TEST(DateParser, AThirteenthMonthIsReadAndRefusedAtTheEnd)
{
    EXPECT_EQ(Day(u"1.13.1998", u"d.M.yyyy"), u"refused");
    // With an era nothing is checked, and the month is January.
    EXPECT_EQ(Day(u"1.13.2541", u"d.M.yyyy", THAI, CT_Calendar::id_Thai), u"1999-01-01");
}

TEST(DateParser, ADayThatTheMonthDoesNotHaveIsRefusedUnlessThereIsAnEra)
{
    EXPECT_EQ(Day(u"31.2.1998", u"d.M.yyyy"), u"refused");
    EXPECT_EQ(Day(u"29.2.1998", u"d.M.yyyy"), u"refused");
    EXPECT_EQ(Day(u"29.2.2000", u"d.M.yyyy"), u"2000-02-29");
    EXPECT_EQ(Day(u"31.2.2541", u"d.M.yyyy", THAI, CT_Calendar::id_Thai), u"1998-03-03");
}

TEST(DateParser, DigitsOfAnyScriptAndFractionsWithoutTheirPartsCount)
{
    EXPECT_EQ(Day(u"\u0661\u0662.\u0663.\u0661\u0669\u0669\u0668", u"d.M.yyyy"), u"1998-03-12");
    EXPECT_EQ(Day(u"\u0967\u09EB.\u0E53.1998", u"d.M.yyyy"), u"1998-03-15");
    // A half is 0, a Roman ten 10, in whatever place.
    EXPECT_EQ(Day(u"1\u00BD.3.1998", u"d.M.yyyy"), u"1998-03-10");
    EXPECT_EQ(Day(u"\u2169.3.1998", u"d.M.yyyy"), u"1998-03-10");
    EXPECT_EQ(Day(u"\u21691.3.1998", u"d.M.yyyy"), u"refused");
    EXPECT_EQ(Day(u"\u00BD.3.1998", u"d.M.yyyy"), u"refused");
}

TEST(DateParser, SurrogatesAreNoDigits)
{
    EXPECT_EQ(Day(u"\U0001D7CF.3.1998", u"d.M.yyyy"), u"refused");
    EXPECT_EQ(Day(u"1.3.1998\U0001F600", u"d.M.yyyy"), u"1998-03-01");
}

// ---- Years --------------------------------------------------------------------------------

TEST(DateParser, YearsOfTwoDigitsAreThisCenturysBelow36AndTheLastOnesFrom70On)
{
    EXPECT_EQ(Day(u"5.3.98", u"d.M.yy"), u"1998-03-05");
    EXPECT_EQ(Day(u"5.3.70", u"d.M.yy"), u"1970-03-05");
    EXPECT_EQ(Day(u"5.3.01", u"d.M.yy"), u"2001-03-05");
    EXPECT_EQ(Day(u"5.3.1", u"d.M.y"), u"2001-03-05");
    EXPECT_EQ(Day(u"5.3.35", u"d.M.yy"), u"2035-03-05");
    for (const char16_t* text : {u"5.3.00", u"5.3.36", u"5.3.69"})
        EXPECT_EQ(Day(text, u"d.M.yy"), u"refused") << Narrow(text);
}

TEST(DateParser, YearsOfFourDigitsAre1970To2038)
{
    EXPECT_EQ(Day(u"5.3.1970", u"d.M.yyyy"), u"1970-03-05");
    EXPECT_EQ(Day(u"18.1.2038", u"d.M.yyyy"), u"2038-01-18");
    EXPECT_EQ(Day(u"5.3.1935", u"d.M.yyyy"), u"2035-03-05");
    EXPECT_EQ(Day(u"5.3.1901", u"d.M.yyyy"), u"2001-03-05");
    EXPECT_EQ(Day(u"5.3.1998", u"d.M.yyy"), u"1998-03-05");
    EXPECT_EQ(Day(u"5.3.1998", u"d.M.yyyyyy"), u"1998-03-05");
    for (const char16_t* text :
         {u"5.3.1900", u"5.3.1936", u"5.3.1969", u"5.3.1899", u"5.3.98", u"5.3.0"})
        EXPECT_EQ(Day(text, u"d.M.yyyy"), u"refused") << Narrow(text);
}

TEST(DateParser, AYearBeyondThe32BitFormChangesThe64BitFormAlone)
{
    CT_Time time(5U);
    EXPECT_EQ(Set(&time, u"5.3.2040", u"d.M.yyyy"), 0);
    EXPECT_EQ(time.n_Get(), 5U);
    EXPECT_EQ(DateText(time, ENGLISH, u"yyyy-MM-dd"), u"2040-03-05");
}

TEST(DateParser, WhatIsRefusedChangesNothing)
{
    CT_Time time(5U);
    for (const char16_t* text : {u"", u"x", u"32.1.1998", u"31.2.1998", u"5.3.1900"}) {
        EXPECT_EQ(Set(&time, text, u"d.M.yyyy"), 0);
        EXPECT_EQ(time.n_Get(), 5U);
        EXPECT_EQ(time.n8_Get(), YEAR_1970 + 5);
    }
    EXPECT_EQ(TakeFailure(), Failure());
}

TEST(DateParser, WhatIsReadSetsBothForms)
{
    CT_Time time(5U);
    EXPECT_EQ(Set(&time, u"1.1.1998", u"d.M.yyyy"), 1);
    EXPECT_EQ(time.n_Get(), 883612800U);
    EXPECT_EQ(time.n8_Get(), YEAR_1970 + 883612800);
}

// ---- Literals -----------------------------------------------------------------------------

TEST(DateParser, ALiteralIsPassedOverAsFarAsItAgrees)
{
    EXPECT_EQ(Day(u"1abc2.1998", u"d'abc'M.yyyy"), u"1998-02-01");
    EXPECT_EQ(Day(u"1ab2.1998", u"d'abc'M.yyyy"), u"1998-02-01");
    EXPECT_EQ(Day(u"12.1998", u"d'abc'M.yyyy"), u"refused");
    EXPECT_EQ(Day(u"1xyz2.1998", u"d'abc'M.yyyy"), u"refused");
    EXPECT_EQ(Day(u"1aXc2.1998", u"d'abc'M.yyyy"), u"refused");
}

TEST(DateParser, WhiteSpaceAboutALiteralIsPassedOver)
{
    EXPECT_EQ(Day(u"1 \t. \u3000 2.1998", u"d.M.yyyy"), u"1998-02-01");
    EXPECT_EQ(Day(u"1    2 1998", u"d M yyyy"), u"1998-02-01");
    // White space that isn't the literal's first is passed over in front of it, too.
    EXPECT_EQ(Day(u"1\t 2 1998", u"d M yyyy"), u"1998-02-01");
    EXPECT_EQ(Day(u"1 2 1998", u"d'\t'M'\t'yyyy"), u"1998-02-01");
    // Between fields there is none without a literal.
    EXPECT_EQ(Day(u"1 21998", u"dMyyyy"), u"refused");
    EXPECT_EQ(Day(u" 1.2.1998", u"d.M.yyyy"), u"refused");
    EXPECT_EQ(Day(u" 1.2.1998", u"''d.M.yyyy"), u"1998-02-01");
}

TEST(DateParser, TwoQuotesInALiteralAreOne)
{
    EXPECT_EQ(Day(u"1o'clock2.1998", u"d'o''clock'M.yyyy"), u"1998-02-01");
    EXPECT_EQ(Day(u"1'2.1998", u"d''''M.yyyy"), u"1998-02-01");
    EXPECT_EQ(Day(u"1.2.1998", u"d'.'M'.'yyyy'"), u"1998-02-01");
    EXPECT_EQ(Day(u"1.2.1998 to the end", u"d.M.yyyy' to the end"), u"1998-02-01");
    EXPECT_EQ(Day(u"1.2.1998'x'", u"d.M.yyyy'''x''"), u"1998-02-01");
}

TEST(DateParser, LettersThatAreNoFieldsAreLiterals)
{
    EXPECT_EQ(Day(u"1a2b1998", u"daMbyyyy"), u"1998-02-01");
    EXPECT_EQ(Day(u"1D2Y1998", u"dDMYyyyy"), u"1998-02-01");
    EXPECT_EQ(Day(u"1\u00E4\U0001F600\u65E52.1998", u"d\u00E4\U0001F600\u65E5M.yyyy"),
              u"1998-02-01");
}

TEST(DateParser, WhatFollowsThePictureIsNotLookedAt)
{
    EXPECT_EQ(Day(u"1.2.1998 and more", u"d.M.yyyy"), u"1998-02-01");
    EXPECT_EQ(Day(u"1.2.19981", u"d.M.yyyy"), u"1998-02-01");
}

TEST(DateParser, LongerFieldsAreTheLongestOnes)
{
    EXPECT_EQ(Clock(u"17:18:19", u"HHHHH:mmmm:sss"), u"17:18:19");
    const std::u16string monday = Fact(ENGLISH, 42);
    EXPECT_EQ(Day((monday + u" 1.6.1998").c_str(), u"dddddd d.M.yyyy"), u"1998-06-01");
    EXPECT_EQ(Day(u"1 June 1998", u"d MMMMMMM yyyy"), u"1998-06-01");
}

// ---- Names --------------------------------------------------------------------------------

TEST(DateParser, NamesOfDaysAreReadAndChangeNothing)
{
    const auto longer = Names(ENGLISH, {48, 42, 43, 44, 45, 46, 47});
    const auto shorter = Names(ENGLISH, {55, 49, 50, 51, 52, 53, 54});
    for (unsigned n = 0; n < 7; ++n) {
        EXPECT_EQ(Day((longer[n] + u", 1.6.1998").c_str(), u"dddd, d.M.yyyy"), u"1998-06-01");
        EXPECT_EQ(Day((shorter[n] + u", 1.6.1998").c_str(), u"ddd, d.M.yyyy"), u"1998-06-01");
    }
    EXPECT_EQ(Day(u"Someday, 1.6.1998", u"dddd, d.M.yyyy"), u"refused");
    EXPECT_EQ(Day(u"monday, 1.6.1998", u"dddd, d.M.yyyy"), u"refused");
    EXPECT_EQ(Day(u"1.6.1998", u"dddd, d.M.yyyy"), u"refused");
}

TEST(DateParser, NamesOfMonthsAreThoseOfTheLocale)
{
    const char16_t* const expected[] = {u"1998-01-02", u"1998-02-02", u"1998-03-02", u"1998-04-02",
                                        u"1998-05-02", u"1998-06-02", u"1998-07-02", u"1998-08-02",
                                        u"1998-09-02", u"1998-10-02", u"1998-11-02", u"1998-12-02"};
    for (unsigned locale : {ENGLISH, GERMAN}) {
        for (unsigned month = 0; month < 12; ++month) {
            const std::u16string longer = Fact(locale, 56 + month),
                                 shorter = Fact(locale, 68 + month);
            EXPECT_EQ(Day((u"2 " + longer + u" 1998").c_str(), u"d MMMM yyyy", locale),
                      expected[month]);
            EXPECT_EQ(Day((u"2 " + shorter + u" 1998").c_str(), u"d MMM yyyy", locale),
                      expected[month]);
        }
    }
    EXPECT_EQ(Day(u"2 december 1998", u"d MMMM yyyy"), u"refused");
    EXPECT_EQ(Day(u"2 Dezember 1998", u"d MMMM yyyy"), u"refused");
    EXPECT_EQ(Day(u"2 1998", u"d MMM yyyy"), u"refused");
}

TEST(DateParser, ALocaleThatIsNotSupportedHasNoNames)
{
    for (unsigned locale : {0U, UNKNOWN}) {
        EXPECT_EQ(Day(u"2 Dec 1998", u"d MMM yyyy", locale), u"refused");
        EXPECT_EQ(Day(u"2.12.1998", u"d.M.yyyy", locale), u"1998-12-02");
    }
}

TEST(DateParser, OfNamesThatBeginTheTextTheLastOneCounts)
{
    // Japanese months are "1" to "12" before their sign: the text of the eleventh begins with the
    // name of the first where that is the number alone.
    for (unsigned month = 0; month < 12; ++month) {
        const std::u16string name = Fact(JAPANESE, 68 + month);
        const std::u16string text = u"1998/2 " + name;
        unsigned expected = 0;
        for (unsigned other = 0; other < 12; ++other) {
            const std::u16string begin = Fact(JAPANESE, 68 + other);
            if (!begin.empty() && name.rfind(begin, 0) == 0)
                expected = other + 1;
        }
        const std::u16string read = Day(text.c_str(), u"yyyy/d MMM", JAPANESE, 1);
        EXPECT_EQ(read.substr(5, 2),
                  (std::u16string{char16_t(u'0' + expected / 10), char16_t(u'0' + expected % 10)}))
            << month;
    }
}

TEST(DateParser, DayPeriodsAreReadInAnyCaseAndShiftTheHour)
{
    const std::u16string morning = Fact(ENGLISH, 40), afternoon = Fact(ENGLISH, 41);
    ASSERT_EQ(afternoon, u"PM");
    EXPECT_EQ(Clock(u"5:06 PM", u"h:mm tt"), u"17:06:00");
    EXPECT_EQ(Clock(u"5:06 pm", u"h:mm tt"), u"17:06:00");
    EXPECT_EQ(Clock(u"5:06 Pm", u"h:mm t"), u"17:06:00");
    EXPECT_EQ(Clock(u"5:06 AM", u"h:mm tt"), u"05:06:00");
    EXPECT_EQ(Clock(u"PM 5:06", u"tt h:mm"), u"17:06:00");
    EXPECT_EQ(Clock(u"0:06 PM", u"h:mm tt"), u"12:06:00");
    EXPECT_EQ(Clock(u"5:06", u"h:mm tt"), u"refused");
    EXPECT_EQ(Clock(u"5:06 XM", u"h:mm tt"), u"refused");
    EXPECT_EQ(Clock(u"5:06 P", u"h:mm tt"), u"refused");
    // An hour of 24 is shifted, too, into the next day.
    EXPECT_EQ(Read(u"1.2.1998 17:06 PM", u"d.M.yyyy HH:mm tt"), u"1998-02-02 05:06:00");
}

// ---- The present --------------------------------------------------------------------------

TEST_F(DateParserThen, WhatAPictureDoesNotHaveIsOfThePresent)
{
    const FixedClock clock(JANUARY);
    EXPECT_EQ(Read(u"17:08", u"HH:mm"), u"2000-01-15 17:08:00");
    EXPECT_EQ(Read(u"3", u"d"), u"2000-01-03 00:00:00");
    EXPECT_EQ(Read(u"3", u"M"), u"2000-03-15 00:00:00");
    EXPECT_EQ(Read(u"98", u"yy"), u"1998-01-15 00:00:00");
    EXPECT_EQ(Read(u"", u""), u"2000-01-15 00:00:00");
    EXPECT_EQ(Read(u"anything", u""), u"2000-01-15 00:00:00");
}

TEST_F(DateParserThen, ADayOfThePresentThatTheMonthDoesNotHaveIsRefused)
{
    const FixedClock clock(AUGUST_31);
    EXPECT_EQ(Day(u"2", u"M"), u"refused");
    EXPECT_EQ(Day(u"7", u"M"), u"2000-07-31");
}

TEST_F(DateParserThen, OnThe31stMonthsOf30DaysHaveNoGenitive)
{
    for (const long long now : {JANUARY, AUGUST_31}) {
        const FixedClock clock(now);
        // June's form beside a day, as Russian has it, and July's.
        EXPECT_EQ(Day(u"2 \u0438\u044E\u043D\u044F 1998", u"d MMMM yyyy", RUSSIAN),
                  now == JANUARY ? u"1998-06-02" : u"refused");
        EXPECT_EQ(Day(u"2 \u0438\u044E\u043B\u044F 1998", u"d MMMM yyyy", RUSSIAN), u"1998-07-02");
    }
}

TEST_F(DateParserThen, InDaylightTimeByTheRulesFor1980)
{
    const FixedZone zone("Europe/Berlin");
    const FixedClock clock(JANUARY);
    CT_Time time;
    ASSERT_EQ(Set(&time, u"1.7.1997 2:00", u"d.M.yyyy HH:mm"), 1);
    EXPECT_EQ(time.n_Get(), 867715200U);
    ASSERT_EQ(Set(&time, u"1.1.1997 1:00", u"d.M.yyyy HH:mm"), 1);
    EXPECT_EQ(time.n_Get(), 852076800U);
    // Daylight time began on 6 April in 1980 and on 30 March in 1997.
    ASSERT_EQ(Set(&time, u"2.4.1997 2:00", u"d.M.yyyy HH:mm"), 1);
    EXPECT_EQ(time.n_Get(), 859942800U);
}

// ---- Other calendars ----------------------------------------------------------------------

TEST(DateParser, AYearOfTheLocalesCalendarIsToldByItsNearness)
{
    // 2541 is far in the future for a Gregorian year, 1998 far in the past for a Thai one.
    EXPECT_EQ(Day(u"5.3.2541", u"d.M.yyyy", THAI), u"1998-03-05");
    EXPECT_EQ(Day(u"5.3.1998", u"d.M.yyyy", THAI), u"1998-03-05");
    EXPECT_EQ(Day(u"5.3.5758", u"d.M.yyyy", HEBREW), u"1998-05-30"); // Sivan
    EXPECT_EQ(Day(u"3.10.5758", u"d.M.yyyy", HEBREW), u"1998-01-01");
    EXPECT_EQ(Day(u"5.3.1998", u"d.M.yyyy", HEBREW), u"1998-03-05");
}

TEST(DateParser, ACalendarGivenClosesTheChoice)
{
    EXPECT_EQ(Day(u"5.3.2541", u"d.M.yyyy", ENGLISH, CT_Calendar::id_Thai), u"1998-03-05");
    EXPECT_EQ(Day(u"3.10.5758", u"d.M.yyyy", ENGLISH, CT_Calendar::id_Hebrew), u"1998-01-01");
    EXPECT_EQ(Day(u"5.3.10", u"d.M.yyyy", ENGLISH, CT_Calendar::id_Japan), u"1998-03-05");
    EXPECT_EQ(Day(u"5.3.50", u"d.M.yyyy", ENGLISH, CT_Calendar::id_JapanShowa), u"1975-03-05");
    EXPECT_EQ(Day(u"5.3.87", u"d.M.yyyy", ENGLISH, CT_Calendar::id_Taiwan), u"1998-03-05");
    EXPECT_EQ(Day(u"5.3.4331", u"d.M.yyyy", ENGLISH, CT_Calendar::id_Korea), u"1998-03-05");
    EXPECT_EQ(Day(u"5.3.1998", u"d.M.yyyy", ENGLISH, CT_Calendar::id_Gregorian), u"1998-03-05");
    // A Gregorian year of a calendar that is closed isn't seen.
    EXPECT_EQ(Day(u"5.3.1998", u"d.M.yyyy", ENGLISH, CT_Calendar::id_Thai), u"refused");
}

TEST(DateParser, AHijriYearIsToldByItsNearnessEvenWhenItIsAskedFor)
{
    EXPECT_EQ(Day(u"2.9.1418", u"d.M.yyyy", ENGLISH, CT_Calendar::id_Hijri), u"1998-01-01");
    EXPECT_EQ(Day(u"2.9.1998", u"d.M.yyyy", ENGLISH, CT_Calendar::id_Hijri), u"1998-09-02");
}

TEST(DateParser, ACalendarThatNoRowHasLeavesTheChoiceToTheLocale)
{
    // Without a calendar of its own the locale's choice is the Hijri one.
    EXPECT_EQ(Day(u"2.9.1418", u"d.M.yyyy", ENGLISH, 99), u"1998-01-01");
    EXPECT_EQ(Day(u"5.3.2541", u"d.M.yyyy", THAI, 99), u"1998-03-05");
}

TEST(DateParser, AnErasTextChoosesAmongTheRowsOfTheLocalesCalendars)
{
    EXPECT_EQ(Day(u"\u5E73\u6210 10/3/5", u"gg yyyy/M/d", JAPANESE), u"1998-03-05");
    EXPECT_EQ(Day(u"\u662D\u548C 50/3/5", u"gg yyyy/M/d", JAPANESE), u"1975-03-05");
    EXPECT_EQ(Day(u"A.D. 1998/3/5", u"g yyyy/M/d", JAPANESE), u"1998-03-05");
    // An era of another calendar is no era, and no error either; the text then stays there.
    EXPECT_EQ(Day(u"\u0E1E.\u0E28. 2541/3/5", u"gg yyyy/M/d", THAI), u"1998-03-05");
    EXPECT_EQ(Day(u"\u0E1E.\u0E28. 2541/3/5", u"gg yyyy/M/d", JAPANESE), u"refused");
    EXPECT_EQ(Day(u"5.3.1998 ?", u"d.M.yyyy gg", JAPANESE), u"1998-03-05");
}

TEST_F(DateParserThen, YearsOfTwoDigitsAreOfTheNearerCalendarsCentury)
{
    const FixedClock clock(
        JANUARY); // 2000 is 2543 in Thai, 1420 in Hijri, 5760 in Hebrew reckoning
    EXPECT_EQ(Day(u"5.3.41", u"d.M.yy", THAI), u"1998-03-05");
    EXPECT_EQ(Day(u"5.3.43", u"d.M.yy", THAI), u"2000-03-05");
    EXPECT_EQ(Day(u"5.3.00", u"d.M.yy", THAI), u"2000-03-05");
    EXPECT_EQ(Day(u"3.10.58", u"d.M.yy", HEBREW), u"1998-01-01");
    EXPECT_EQ(Day(u"2.9.18", u"d.M.yy", ENGLISH, CT_Calendar::id_Hijri), u"1998-01-01");
    EXPECT_EQ(Day(u"2.9.01", u"d.M.yy", ENGLISH, CT_Calendar::id_Hijri), u"2001-09-02");
    // A year of the future is ten times as far.
    EXPECT_EQ(Day(u"5.3.44", u"d.M.yy", THAI), u"2001-03-05");
}

TEST_F(DateParserThen, ANearerYearIsAlternateOnlyByMoreThanATenth)
{
    // In a year where a year of two digits lies alike in both: 2000 and 43 of Taiwan's 89.
    const FixedClock clock(JANUARY);
    const unsigned taiwan = 0x0404;
    EXPECT_EQ(CT_Calendar::seo_AlternateCalendar(taiwan), CT_Calendar::ct_Taiwan);
    // 89: Gregorian 890 away, Taiwan 0 away.
    EXPECT_EQ(Day(u"5.3.89", u"d.M.yy", taiwan), u"2000-03-05");
    // 0: Gregorian 0 away.
    EXPECT_EQ(Day(u"5.3.0", u"d.M.yy", taiwan), u"2000-03-05");
    // 8: 80 away against 81, which isn't nearer by a tenth the other way; 9: 90 against 80.
    EXPECT_EQ(Day(u"5.3.8", u"d.M.yy", taiwan), u"2008-03-05");
    // That is 1920, which isn't told from 2020.
    EXPECT_EQ(Day(u"5.3.9", u"d.M.yy", taiwan), u"2020-03-05");
}

TEST_F(DateParserThen, APictureWithoutAYearAddsTheCenturiesWhereThereAreTwoCalendars)
{
    const FixedClock clock(JANUARY);
    EXPECT_EQ(Day(u"5.3.", u"d.M.", ENGLISH), u"2000-03-05");
    CT_Time time(5U);
    EXPECT_EQ(Set(&time, u"5.3.", u"d.M.", THAI), 0);
    EXPECT_EQ(DateText(time, ENGLISH, u"yyyy-MM-dd"), u"4000-03-05");
}

// ---- Strings ------------------------------------------------------------------------------

TEST(DateParser, BothStringsMayBeOfBytes)
{
    CT_Time time;
    const CT_CString text("2 M\xE4rz 1998", CT_String::ALL, 1252), picture("d MMMM yyyy");
    ASSERT_EQ(time.b_Set(&text, &picture, GERMAN, CT_Calendar::id_None), 1);
    EXPECT_EQ(DateText(time, ENGLISH, u"yyyy-MM-dd"), u"1998-03-02");
}

TEST(DateParser, AnyTextAndPictureEndSomewhere)
{
    std::mt19937 random(Seed(31));
    const std::u16string units =
        u"dMyghHmst'  .:/,0123456789JMondayPAM\u0661\u00A0\u3000\xD83D\xDE00";
    for (int round = 0; round < 4000; ++round) {
        std::u16string text, picture;
        for (unsigned n = random() % 24; n > 0; --n)
            text += units[random() % units.size()];
        for (unsigned n = random() % 16; n > 0; --n)
            picture += units[random() % units.size()];
        CT_Time time(5U);
        Set(&time, text.c_str(), picture.c_str(), random() % 2 ? ENGLISH : JAPANESE,
            int(random() % 10));
    }
    EXPECT_EQ(TakeFailure(), Failure());
}
