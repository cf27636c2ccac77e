// tests/System/Time/CalendarIcuTest.cpp: against ICU's calendars, where there is ICU.
//
// docs/locale.md shows the differences as a table.
#include <System/Time/Calendar.h>

#include <unicode/ucal.h>

#include <vector>

#include "System/Time/CalendarDates.h"

using namespace calendar;

namespace
{
constexpr int DAY_OF_1970 = 719163; // 1 January

// One of ICU's calendars, in UTC.
class Icu
{
public:
    explicit Icu(const char* locale)
        : calendar(ucal_open(u"UTC", -1, locale, UCAL_DEFAULT, &status))
    {}
    ~Icu() { ucal_close(calendar); }

    void Set(int day) { ucal_setMillis(calendar, (day - DAY_OF_1970) * 86400000.0, &status); }
    int Get(UCalendarDateFields field) { return ucal_get(calendar, field, &status); }
    bool Works() const { return U_SUCCESS(status); }

private:
    UErrorCode status = U_ZERO_ERROR;
    UCalendar* calendar;
};

Date HijriOf(Icu& icu, int day)
{
    icu.Set(day);
    return {icu.Get(UCAL_YEAR), icu.Get(UCAL_MONTH) + 1, icu.Get(UCAL_DAY_OF_MONTH)};
}

// ICU counts Hebrew months from Tishri = 0, has Adar I (5) in leap years only, and Adar as 6.
Date HebrewOf(Icu& icu, int day)
{
    icu.Set(day);
    const int year = icu.Get(UCAL_YEAR), month = icu.Get(UCAL_MONTH);
    const bool leap = (7LL * year + 1) % 19 < 7;
    const int ours = month >= 7 ? month - 6 : month == 6 && !leap ? 12 : month + 7;
    return {year, ours, icu.Get(UCAL_DAY_OF_MONTH)};
}

// Days on end that have another date.
struct Days
{
    int first, last;
    bool operator==(const Days&) const = default;
};

void PrintTo(const Days& run, std::ostream* out)
{
    *out << "{" << run.first << ", " << run.last << "} from " << Of(GregorianByNumber(run.first))
         << " to " << Of(GregorianByNumber(run.last));
}

template <typename T_IcuDate>
std::vector<Days> Differences(int first, int last, CT_Calendar::et_ID id, const char* locale,
                              T_IcuDate icu_date)
{
    Icu icu(locale);
    std::vector<Days> runs;
    for (int day = first; day <= last && icu.Works(); ++day) {
        if (icu_date(icu, day) == Of(ByNumber(day, id)))
            continue;
        if (runs.empty() || runs.back().last != day - 1)
            runs.push_back({day, day});
        runs.back().last = day;
    }
    EXPECT_TRUE(icu.Works());
    return runs;
}
} // namespace

TEST(CalendarIcuModel, EveryHijriDayFromTheFirstOnIsThatOfTheCivilCalendar)
{
    EXPECT_EQ(
        Differences(227015, LAST_DAY, CT_Calendar::id_Hijri, "en@calendar=islamic-civil", HijriOf),
        std::vector<Days>());
}

TEST(CalendarIcuModel, BeforeTheFirstHijriDayIcuCountsBackwards)
{
    EXPECT_EQ(Differences(1, 227014, CT_Calendar::id_Hijri, "en@calendar=islamic-civil", HijriOf),
              (std::vector<Days>{{1, 227014}}));
}

// Years after a leap year whose mean new moon falls on a Sunday from 15 hours and 589 parts on. The
// Sunday puts them off to the Monday. ICU takes that Monday for the new moon's, puts the year off
// once more by the rule for such hours of a Monday, and makes the leap year before longer.
constexpr int PUT_OFF_TWICE[] = {
    96,    194,   441,   688,   1033,  1111,  1280,  1358,  1527,  1605,  1950,  2197,  2444,
    2542,  2789,  3036,  3134,  3381,  3459,  3628,  3706,  3953,  4051,  4298,  4545,  4643,
    4890,  4968,  5137,  5215,  5462,  5560,  5807,  6054,  6399,  6646,  6893,  6991,  7238,
    7316,  7485,  7563,  7810,  7908,  8155,  8402,  8500,  8747,  8825,  8994,  9072,  9319,
    9417,  9664,  9911,  10256, 10503, 10848, 10926, 11095, 11173, 11342, 11420, 11765, 12012,
    12259, 12357, 12604, 12682, 12851, 12929, 13176, 13274, 13521,
};

int IcuNewYear(Icu& icu, int near_day)
{
    for (int day = near_day - 3; day <= near_day + 3; ++day) {
        const Date date = HebrewOf(icu, day);
        if (date.month == 7 && date.day == 1)
            return day;
    }
    return 0;
}

// The fourteen kinds of years: day of the week of Tishri 1, and days of the year. The calendar has
// no others.
bool IsKindOfYear(int weekday, int days)
{
    switch ((weekday + 7) % 7) {
    case 1:
    case 6:
        return days == 353 || days == 355 || days == 383 || days == 385;
    case 2:
        return days == 354 || days == 384;
    case 4:
        return days == 354 || days == 355 || days == 383 || days == 385;
    default:
        return false;
    }
}

TEST(CalendarIcuModel, EveryHebrewYearIsOfOneOfTheFourteenKinds)
{
    int first = NumberOf(Tm(1, 7, 1), CT_Calendar::id_Hebrew);
    for (int year = 1; first <= LAST_DAY; ++year) {
        const int next = NumberOf(Tm(year + 1, 7, 1), CT_Calendar::id_Hebrew);
        ASSERT_TRUE(IsKindOfYear(first % 7, next - first)) << year;
        first = next;
    }
}

TEST(CalendarIcuModel, EveryHebrewYearBeginsAsIcusButForThoseThatItPutsOffTwice)
{
    Icu icu("en@calendar=hebrew");
    std::vector<int> others;
    for (int year = 1; NumberOf(Tm(year, 7, 1), CT_Calendar::id_Hebrew) <= LAST_DAY; ++year) {
        const int ours = NumberOf(Tm(year, 7, 1), CT_Calendar::id_Hebrew);
        const int icus = IcuNewYear(icu, ours);
        if (icus == ours)
            continue;
        others.push_back(year);
        EXPECT_EQ(icus, ours + 1) << year;
        const int before = NumberOf(Tm(year - 1, 7, 1), CT_Calendar::id_Hebrew);
        EXPECT_TRUE(IsKindOfYear(before % 7, ours - before)) << year;
        EXPECT_FALSE(IsKindOfYear(before % 7, icus - before)) << year;
    }
    EXPECT_EQ(others, std::vector<int>(std::begin(PUT_OFF_TWICE), std::end(PUT_OFF_TWICE)));
}

TEST(CalendarIcuModel, EveryHebrewDayIsThatOfIcuButForTheMonthsAboutThoseYears)
{
    std::vector<Days> expected;
    for (int year : PUT_OFF_TWICE) {
        // From the end of Heshvan, where ICU's year before has its extra day, to that of the year.
        const int first = NumberOf(Tm(year - 1, 9, 1), CT_Calendar::id_Hebrew);
        const int last = NumberOf(Tm(year, 9, 1), CT_Calendar::id_Hebrew);
        expected.push_back({first, last - 1});
    }
    EXPECT_EQ(
        Differences(-1373427, LAST_DAY, CT_Calendar::id_Hebrew, "en@calendar=hebrew", HebrewOf),
        expected);
}
