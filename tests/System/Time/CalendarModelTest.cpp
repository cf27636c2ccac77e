// tests/System/Time/CalendarModelTest.cpp: every day of the years 1 to 9999, by other reckonings.
#include <System/Time/Calendar.h>

#include <array>
#include <chrono>
#include <climits>
#include <fstream>
#include <random>
#include <sstream>

#include "Models/CalendarModel.h"
#include "Support/Directory.h"
#include "System/Time/CalendarDates.h"

using namespace calendar;
namespace model = calendar_model;

namespace
{
Date Searched(const model::Day& day)
{
    return {int(day.year), int(day.month), int(day.day)};
}

// The years in which the search for a day may begin and end have their first days in order, so that
// a search that is told the year before the right one finds what one from the beginning finds.
template <typename Calendar>
void ExpectYearsInOrder(int first, int last)
{
    const model::Number to = Calendar::FirstYear(last) + 8000;
    model::Number year = Calendar::FirstYear(first) + 1;
    model::Number before = Calendar::Of({year, Calendar::FIRST_MONTH, 1});
    for (++year; year <= to; ++year) {
        const model::Number next = Calendar::Of({year, Calendar::FIRST_MONTH, 1});
        ASSERT_GT(next, before) << year;
        before = next;
    }
    ASSERT_GT(before, last);
}

// Walks over the days in the order of the calendar's months, by the lengths of the months.
template <typename Calendar>
class Walk
{
public:
    explicit Walk(model::Day first) : day(first), length(Calendar::DaysIn(day.year, day.month)) {}

    const model::Day& Get() const { return day; }
    void Next()
    {
        if (++day.day <= length)
            return;
        day.day = 1;
        if (day.month == LastMonth())
            day.month = 1;
        else
            ++day.month;
        if (day.month == Calendar::FIRST_MONTH)
            ++day.year;
        length = Calendar::DaysIn(day.year, day.month);
    }

private:
    model::Number LastMonth() const
    {
        if constexpr (Calendar::FIRST_MONTH == 7)
            return Calendar::LastMonth(day.year);
        return 12;
    }

    model::Day day;
    model::Number length;
};

// The checksum of zip files.
class Crc32
{
public:
    Crc32()
    {
        for (unsigned n = 0; n < 256; ++n) {
            unsigned value = n;
            for (int bit = 0; bit < 8; ++bit)
                value = value & 1 ? 0xEDB88320U ^ value >> 1 : value >> 1;
            table[n] = value;
        }
    }
    void Add(const char* text, int length)
    {
        for (int n = 0; n < length; ++n)
            sum = table[(sum ^ static_cast<unsigned char>(text[n])) & 0xFF] ^ sum >> 8;
    }
    unsigned Take()
    {
        const unsigned result = ~sum;
        sum = 0xFFFFFFFF;
        return result;
    }

private:
    std::array<unsigned, 256> table;
    unsigned sum = 0xFFFFFFFF;
};

// Compares days that are searched literally, from end to end.
template <typename Calendar>
void ExpectSearched(int day, CT_Calendar::et_ID id)
{
    ASSERT_EQ(Of(ByNumber(day, id)), Searched(model::Search<Calendar>(day))) << day;
}

std::mt19937 MakeRandom()
{
    return std::mt19937(Seed(5758));
}

int Between(std::mt19937& random, int first, int last)
{
    return std::uniform_int_distribution<int>(first, last)(random);
}
} // namespace

// ---- Gregorian ----------------------------------------------------------------------------

TEST(CalendarModel, EveryGregorianDayIsWhatTheSearchFinds)
{
    ExpectYearsInOrder<model::Gregorian>(1, LAST_DAY);
    Walk<model::Gregorian> walk({1, 1, 1});
    for (int n = 1; n <= LAST_DAY; ++n, walk.Next()) {
        const Date expected = Searched(walk.Get());
        ASSERT_EQ(Of(GregorianByNumber(n)), expected) << n;
        ASSERT_EQ(NumberOf(Tm(expected.year, expected.month, expected.day)), n);
        if (expected.day == 1 || n % 1009 == 0) {
            ASSERT_EQ(Searched(model::Search<model::Gregorian>(n)), expected) << n;
        }
    }
    EXPECT_EQ(walk.Get(), (model::Day{10000, 1, 1}));
}

TEST(CalendarModel, EveryGregorianDayIsThatOfTheStandardLibrary)
{
    using namespace std::chrono;
    const sys_days zero = sys_days(year(1) / January / 1) - days(1);
    for (int n = 1; n <= LAST_DAY; ++n) {
        const sys_days then = zero + days(n);
        const year_month_day date(then);
        const std::tm ours = GregorianByNumber(n, -1);
        ASSERT_EQ(Of(ours),
                  (Date{int(date.year()), int(unsigned(date.month())), int(unsigned(date.day()))}));
        ASSERT_EQ(unsigned(ours.tm_wday), weekday(then).c_encoding());
        ASSERT_EQ(ours.tm_yday, (then - sys_days(date.year() / January / 1)).count());
    }
}

TEST(CalendarModel, EveryGregorianDayIsThatOfPython)
{
    std::ifstream file(OSTRA_TEST_DATA "/gregorian-days.tsv");
    unsigned centuries = 0;
    Crc32 sum;
    int n = 1;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("#"))
            continue;
        std::istringstream fields(line);
        int first = 0, last = 0;
        unsigned expected = 0;
        fields >> first >> last >> std::hex >> expected;
        ASSERT_EQ(first, n);
        for (; n <= last; ++n) {
            const std::tm date = GregorianByNumber(n, -1);
            char text[64];
            const int length = std::snprintf(text, sizeof(text), "%d-%d-%d %d %d %d\n",
                                             date.tm_year, date.tm_mon + 1, date.tm_mday,
                                             date.tm_wday, date.tm_yday, NumberOf(date));
            sum.Add(text, length);
        }
        ASSERT_EQ(sum.Take(), expected) << "days " << first << " to " << last;
        ++centuries;
    }
    EXPECT_EQ(centuries, 100U);
    EXPECT_EQ(n, LAST_DAY + 1);
}

TEST(CalendarModel, GregorianDaysOutsideOfTheseYearsAreWhatTheSearchFinds)
{
    std::mt19937 random = MakeRandom();
    for (int n = -4000; n <= 0; ++n)
        ASSERT_EQ(Of(GregorianByNumber(n)), Searched(model::Search<model::Gregorian>(n))) << n;
    for (int n = LAST_DAY - 5; n < LAST_DAY + 3000; ++n)
        ASSERT_EQ(Of(GregorianByNumber(n)), Searched(model::Search<model::Gregorian>(n))) << n;
    // A day number that another calendar's date comes to may be any.
    for (int round = 0; round < 300; ++round) {
        const int n = Between(random, INT_MIN + 300000, INT_MAX);
        ASSERT_EQ(Of(GregorianByNumber(n)), Searched(model::Search<model::Gregorian>(n))) << n;
    }
    ASSERT_EQ(Of(GregorianByNumber(INT_MAX)), Searched(model::Search<model::Gregorian>(INT_MAX)));
}

TEST(CalendarModel, BeforeYearOneTheSearchEndsInAThirteenthMonthToo)
{
    unsigned thirteenth = 0;
    for (int n = -400 * 366; n <= 0; ++n) {
        const Date date = Of(GregorianByNumber(n));
        ASSERT_EQ(date, Searched(model::Search<model::Gregorian>(n))) << n;
        thirteenth += date.month == 13;
    }
    EXPECT_GT(thirteenth, 0U);
}

// ---- Hijri --------------------------------------------------------------------------------

TEST(CalendarModel, EveryHijriDayIsWhatTheSearchFinds)
{
    ExpectYearsInOrder<model::Hijri>(227015, LAST_DAY);
    Walk<model::Hijri> walk({1, 1, 1});
    for (int n = 227015; n <= LAST_DAY; ++n, walk.Next()) {
        const Date expected = Searched(walk.Get());
        const std::tm ours = ByNumber(n, CT_Calendar::id_Hijri);
        ASSERT_EQ(Of(ours), expected) << n;
        ASSERT_EQ(ours.tm_wday, n + 1);
        ASSERT_EQ(ours.tm_yday, n - int(model::Hijri::Of({expected.year, 1, 1})) + 1);
        ASSERT_EQ(NumberOf(ours, CT_Calendar::id_Hijri), n);
        if (expected.day == 1 || n % 1009 == 0) {
            ASSERT_EQ(Searched(model::Search<model::Hijri>(n)), expected) << n;
        }
    }
}

TEST(CalendarModel, HijriDaysOutsideOfTheseYearsAreWhatTheSearchFinds)
{
    std::mt19937 random = MakeRandom();
    for (int n = LAST_DAY - 5; n < LAST_DAY + 3000; ++n)
        ExpectSearched<model::Hijri>(n, CT_Calendar::id_Hijri);
    for (int round = 0; round < 300; ++round)
        ExpectSearched<model::Hijri>(Between(random, INT_MIN + 2, INT_MAX), CT_Calendar::id_Hijri);
    ExpectSearched<model::Hijri>(INT_MAX, CT_Calendar::id_Hijri);
}

// ---- Hebrew -------------------------------------------------------------------------------

TEST(CalendarModel, EveryHebrewDayIsWhatTheSearchFinds)
{
    const int first = -1373427;
    // Only from the year 1 on; the years before are searched literally below.
    model::Number before = model::Hebrew::Of({1, 7, 1});
    for (model::Number year = 2; year < 14000; ++year) {
        const model::Number next = model::Hebrew::Of({year, 7, 1});
        ASSERT_GT(next, before) << year;
        before = next;
    }
    for (model::Number year = model::Hebrew::FirstYear(first); year < 1; ++year)
        ASSERT_LE(model::Hebrew::Of({year, 7, 1}), first) << year;
    Walk<model::Hebrew> walk({1, 7, 1});
    int nisan = 0;
    for (int n = first; n <= LAST_DAY; ++n, walk.Next()) {
        const Date expected = Searched(walk.Get());
        const std::tm ours = ByNumber(n, CT_Calendar::id_Hebrew);
        ASSERT_EQ(Of(ours), expected) << n;
        if (expected.month == 7 && expected.day == 1)
            nisan = int(model::Hebrew::Of({expected.year, 1, 1}));
        ASSERT_EQ(ours.tm_wday, n % 7);
        ASSERT_EQ(ours.tm_yday, n - nisan + 1);
        ASSERT_EQ(NumberOf(ours, CT_Calendar::id_Hebrew), n);
    }
}

TEST(CalendarModel, HebrewDaysAreWhatTheWholeSearchFinds)
{
    std::mt19937 random = MakeRandom();
    // Around the ends of the formula's range, and anywhere in it.
    for (int n = -1373427; n < -1373427 + 400; ++n)
        ExpectSearched<model::Hebrew>(n, CT_Calendar::id_Hebrew);
    for (int n = LAST_DAY - 200; n < LAST_DAY + 200; ++n)
        ExpectSearched<model::Hebrew>(n, CT_Calendar::id_Hebrew);
    for (int n = -200; n < 200; ++n)
        ExpectSearched<model::Hebrew>(n, CT_Calendar::id_Hebrew);
    for (int round = 0; round < 1000; ++round)
        ExpectSearched<model::Hebrew>(Between(random, -1373427, LAST_DAY), CT_Calendar::id_Hebrew);
}

TEST(CalendarModel, HebrewDaysOutsideOfTheseYearsAreWhatTheSearchFinds)
{
    std::mt19937 random = MakeRandom();
    for (int n = -1373427 - 800; n < -1373427; ++n)
        ExpectSearched<model::Hebrew>(n, CT_Calendar::id_Hebrew);
    for (int round = 0; round < 100; ++round)
        ExpectSearched<model::Hebrew>(Between(random, INT_MIN + 2, INT_MAX),
                                      CT_Calendar::id_Hebrew);
    ExpectSearched<model::Hebrew>(INT_MAX, CT_Calendar::id_Hebrew);
}

TEST(CalendarModel, DayNumbersOfAnyMonthAreWhatIsTold)
{
    std::mt19937 random = MakeRandom();
    for (int round = 0; round < 20000; ++round) {
        const int year = Between(random, -9999, 9999), month = Between(random, -3, 20),
                  day = Between(random, -400, 400);
        const model::Day told{year, month, day};
        ASSERT_EQ(NumberOf(Tm(year, month, day)), model::Gregorian::Of(told));
        ASSERT_EQ(NumberOf(Tm(year, month, day), CT_Calendar::id_Hijri), model::Hijri::Of(told))
            << year << " " << month << " " << day;
        ASSERT_EQ(NumberOf(Tm(year, month, day), CT_Calendar::id_Hebrew), model::Hebrew::Of(told))
            << year << " " << month << " " << day;
    }
}
