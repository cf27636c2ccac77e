// tests/System/Time/TimeTest.cpp: the two forms of a moment, and the structures.
#include <System/Time/Time.h>

#include <windows.h>

#include <climits>
#include <ctime>
#include <ostream>
#include <random>
#include <type_traits>

#include "Support/Clock.h"
#include "Support/Directory.h"

namespace
{
constexpr unsigned KEEP = 0xFFFFFFFF;
constexpr unsigned NONE = 0xFFFFFFFF;
constexpr unsigned long long YEAR_1970 = 62135596800ULL;

// 15 January and 15 July 2000, noon UTC.
constexpr long long WINTER = 947937600, SUMMER = 963662400;

struct Fields
{
    int year, month, day, hour, minute, second;
    bool operator==(const Fields&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Fields& f)
{
    return out << f.year << "-" << f.month << "-" << f.day << " " << f.hour << ":" << f.minute
               << ":" << f.second;
}

Fields Of(const std::tm& date)
{
    return {date.tm_year + 1900, date.tm_mon + 1, date.tm_mday,
            date.tm_hour,        date.tm_min,     date.tm_sec};
}

Fields Of(const SYSTEMTIME& system)
{
    return {system.wYear, system.wMonth, system.wDay, system.wHour, system.wMinute, system.wSecond};
}

// What the 64-bit form of a moment says.
Fields Of(const CT_Time& time)
{
    SYSTEMTIME system;
    CT_Time::sv_Convert(&system, time.n8_Get());
    return Of(system);
}

std::tm Tm(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    std::tm date{};
    date.tm_year = year - 1900;
    date.tm_mon = month - 1;
    date.tm_mday = day;
    date.tm_hour = hour;
    date.tm_min = minute;
    date.tm_sec = second;
    return date;
}

SYSTEMTIME System(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    SYSTEMTIME system{};
    system.wYear = WORD(year);
    system.wMonth = WORD(month);
    system.wDay = WORD(day);
    system.wHour = WORD(hour);
    system.wMinute = WORD(minute);
    system.wSecond = WORD(second);
    system.wMilliseconds = 77;
    system.wDayOfWeek = 77;
    return system;
}

// The process's structure as it is before the first conversion, so that tests don't depend on one
// another.
void ForgetLastDate()
{
    CT_Time::spso_Abs2Date(YEAR_1970);
}

Fields AfterSet(unsigned year, unsigned month, unsigned day, unsigned hour, unsigned minute,
                unsigned second)
{
    CT_Time time(852076800U); // 1 January 1997
    time.v_Set(year, month, day, hour, minute, second);
    SYSTEMTIME system;
    CT_Time::sv_Convert(&system, LONG(time.n_Get()));
    EXPECT_EQ(Of(system), Of(time));
    return Of(system);
}

// The tests are run in UTC.
class Time : public testing::Test
{
protected:
    Time() { ForgetLastDate(); }
};
class TimeZones : public Time
{
protected:
    void SetUp() override
    {
        if (!FixedZone::WORKS)
            GTEST_SKIP() << "the zone is the machine's";
    }
};
} // namespace

// ---- Construction -------------------------------------------------------------------------

TEST_F(Time, ANewTimeIsTheFirstOfJanuary1997)
{
    const FixedClock clock(WINTER);
    const CT_Time time;
    EXPECT_EQ(time.n_Get(), 852076800U);
    EXPECT_EQ(time.n8_Get(), YEAR_1970 + 852076800U);
    EXPECT_EQ(Of(time), (Fields{1997, 1, 1, 0, 0, 0}));
}

TEST_F(Time, EitherFormSetsBoth)
{
    CT_Time time(867715200U);
    EXPECT_EQ(time.n_Get(), 867715200U);
    EXPECT_EQ(time.n8_Get(), YEAR_1970 + 867715200U);
    time.v_Set(YEAR_1970 + 1);
    EXPECT_EQ(time.n_Get(), 1U);
    EXPECT_EQ(time.n8_Get(), YEAR_1970 + 1);
    time.v_Set(5U);
    EXPECT_EQ(time.n_Get(), 5U);
    EXPECT_EQ(time.n8_Get(), YEAR_1970 + 5);
    const CT_Time other(YEAR_1970 + 951782400);
    EXPECT_EQ(other.n_Get(), 951782400U);
}

TEST_F(Time, ACopyHasBothForms)
{
    const CT_Time source(YEAR_1970 - 1);
    const CT_Time copy(source);
    EXPECT_EQ(copy.n_Get(), NONE);
    EXPECT_EQ(copy.n8_Get(), YEAR_1970 - 1);
    CT_Time assigned;
    assigned = source;
    EXPECT_EQ(assigned.n_Get(), NONE);
    EXPECT_EQ(assigned.n8_Get(), YEAR_1970 - 1);
    EXPECT_FALSE(std::is_polymorphic_v<CT_Time>);
    EXPECT_EQ(sizeof(CT_Time), 16U);
}

TEST_F(Time, ValuesFrom80000000UpAreNegativeAndHaveNo64BitForm)
{
    for (unsigned n : {0x80000000U, 0x80000001U, 0xFFFFFFFFU}) {
        const CT_Time time(n);
        EXPECT_EQ(time.n_Get(), n);
        EXPECT_EQ(time.n8_Get(), 0U);
        EXPECT_EQ(CT_Time::sn8_Convert(n), 0U);
    }
    EXPECT_EQ(CT_Time(0x7FFFFFFFU).n8_Get(), YEAR_1970 + 0x7FFFFFFF);
}

TEST_F(Time, MomentsBefore1970AndFrom2038OnHaveNo32BitForm)
{
    EXPECT_EQ(CT_Time::sn_Convert(YEAR_1970), 0U);
    EXPECT_EQ(CT_Time::sn_Convert(YEAR_1970 - 1), NONE);
    EXPECT_EQ(CT_Time::sn_Convert(0ULL), NONE);
    EXPECT_EQ(CT_Time::sn_Convert(YEAR_1970 + 0x7FFFFFFF), 0x7FFFFFFFU);
    EXPECT_EQ(CT_Time::sn_Convert(YEAR_1970 + 0x80000000), NONE);
    EXPECT_EQ(CT_Time::sn_Convert(YEAR_1970 * 4), NONE);
}

TEST_F(Time, TheFormsLeadToEachOther)
{
    std::mt19937 random(Seed(1970));
    for (int round = 0; round < 20000; ++round) {
        const unsigned n = random() >> 1;
        ASSERT_EQ(CT_Time::sn8_Convert(n), YEAR_1970 + n);
        ASSERT_EQ(CT_Time::sn_Convert(YEAR_1970 + n), n);
    }
}

// ---- Now ----------------------------------------------------------------------------------

TEST_F(Time, NowIsThePresentMoment)
{
    const auto before = std::time(nullptr);
    const unsigned now = CT_Time::sn_GetTime();
    const unsigned long long now8 = CT_Time::sn8_GetTime();
    CT_Time time(1U);
    time.v_SetTime();
    const auto after = std::time(nullptr);
    EXPECT_TRUE(now >= unsigned(before) && now <= unsigned(after));
    EXPECT_TRUE(now8 >= YEAR_1970 + unsigned(before) && now8 <= YEAR_1970 + unsigned(after));
    EXPECT_TRUE(time.n_Get() >= unsigned(before) && time.n_Get() <= unsigned(after));
    EXPECT_EQ(time.n8_Get(), YEAR_1970 + time.n_Get());
}

TEST_F(TimeZones, NowIsWhatTheClockSays)
{
    const FixedClock clock(SUMMER, 999);
    EXPECT_EQ(CT_Time::sn_GetTime(), unsigned(SUMMER));
    EXPECT_EQ(CT_Time::sn8_GetTime(), YEAR_1970 + SUMMER);
    CT_Time time(1U);
    time.v_SetTime();
    EXPECT_EQ(time.n_Get(), unsigned(SUMMER));
    EXPECT_EQ(time.n8_Get(), YEAR_1970 + SUMMER);
}

TEST_F(TimeZones, From2038OnNowHasA64BitFormOfItsOwnOnly)
{
    const FixedClock clock(0x80000000LL + 3600);
    EXPECT_EQ(CT_Time::sn_GetTime(), 0x80000000U + 3600);
    EXPECT_EQ(CT_Time::sn8_GetTime(), YEAR_1970 + 0x80000000ULL + 3600);
    CT_Time time;
    time.v_SetTime();
    EXPECT_EQ(time.n_Get(), 0x80000000U + 3600);
    EXPECT_EQ(time.n8_Get(), 0U);
    EXPECT_EQ(Of(CT_Time(YEAR_1970)), (Fields{1970, 1, 1, 0, 0, 0}));
}

// ---- Fields -------------------------------------------------------------------------------

TEST_F(Time, YearsBelow36AreThisCenturysAndThoseBelow100TheLastOnes)
{
    EXPECT_EQ(AfterSet(96, 7, 15, 12, 0, 0), (Fields{1996, 7, 14, 12, 0, 0}));
    EXPECT_EQ(AfterSet(0, 7, 15, 12, 0, 0), (Fields{2000, 7, 14, 12, 0, 0}));
    EXPECT_EQ(AfterSet(35, 7, 15, 12, 0, 0), (Fields{2035, 7, 14, 12, 0, 0}));
    EXPECT_EQ(AfterSet(99, 7, 15, 12, 0, 0), (Fields{1999, 7, 14, 12, 0, 0}));
    EXPECT_EQ(AfterSet(1998, 7, 15, 12, 0, 0), (Fields{1998, 7, 14, 12, 0, 0}));
    // 1936 has only the 64-bit form, and so have 100 and what is beyond 2038.
    for (unsigned year : {36U, 100U, 1969U, 2039U, 9999U}) {
        CT_Time time(852076800U);
        time.v_Set(year, 7, 15, 12, 0, 0);
        EXPECT_EQ(time.n_Get(), NONE) << year;
        EXPECT_EQ(Of(time), (Fields{int(year == 36 ? 1936 : year), 7, 14, 12, 0, 0}));
    }
}

TEST_F(Time, TheDayThatIsStoredIsTheOneBefore)
{
    CT_Time time(852076800U + 3600);
    time.v_SetDate(1998, 3, 10);
    EXPECT_EQ(Of(time), (Fields{1998, 3, 9, 1, 0, 0}));
    time.v_SetDate(1998, 3, 1);
    EXPECT_EQ(Of(time), (Fields{1998, 2, 28, 1, 0, 0}));
    time.v_SetDate(2000, 1, 1);
    EXPECT_EQ(Of(time), (Fields{1999, 12, 31, 1, 0, 0}));
    EXPECT_EQ(time.n8_Get(), YEAR_1970 + time.n_Get());
}

TEST_F(Time, AFieldOfAllOnesStays)
{
    CT_Time time(YEAR_1970 + 951782400 + 3723); // 29 February 2000 01:02:03
    time.v_SetTime(4, 5, 6);
    EXPECT_EQ(Of(time), (Fields{2000, 2, 29, 4, 5, 6}));
    time.v_Set(KEEP, KEEP, KEEP, KEEP, 59, KEEP);
    EXPECT_EQ(Of(time), (Fields{2000, 2, 29, 4, 59, 6}));
    time.v_Set(KEEP, KEEP, KEEP, KEEP, KEEP, KEEP);
    EXPECT_EQ(Of(time), (Fields{2000, 2, 29, 4, 59, 6}));
    time.v_Set(1999, KEEP, KEEP, KEEP, KEEP, KEEP);
    EXPECT_EQ(Of(time), (Fields{1999, 3, 1, 4, 59, 6}));
    time.v_Set(KEEP, 12, KEEP, KEEP, KEEP, 0);
    EXPECT_EQ(Of(time), (Fields{1999, 12, 1, 4, 59, 0}));
}

TEST_F(Time, FieldsBeyondTheirRangesCountOn)
{
    EXPECT_EQ(AfterSet(1998, 14, 32, 25, 61, 61), (Fields{1999, 3, 4, 2, 2, 1}));
    EXPECT_EQ(AfterSet(1998, 0, 2, 0, 0, 0), (Fields{1997, 12, 1, 0, 0, 0}));
    EXPECT_EQ(AfterSet(1998, 1, 0, 0, 0, 0), (Fields{1997, 12, 30, 0, 0, 0}));
}

TEST_F(Time, AMomentWithoutADateStaysAsItIs)
{
    CT_Time time(YEAR_1970 - 5);
    time.v_SetTime(1, 2, 3);
    EXPECT_EQ(time.n_Get(), NONE);
    EXPECT_EQ(time.n8_Get(), YEAR_1970 - 5);
}

// ---- The platform's structure -------------------------------------------------------------

TEST_F(Time, TheSystemsStructureBecomesBothForms)
{
    const FixedClock clock(WINTER);
    const SYSTEMTIME system = System(2000, 2, 29, 23, 59, 58);
    EXPECT_EQ(CT_Time::sn_Convert(&system), 951868798U);
    EXPECT_EQ(CT_Time::sn8_Convert(&system), YEAR_1970 + 951868798);
    const SYSTEMTIME first = System(1, 1, 1);
    EXPECT_EQ(CT_Time::sn_Convert(&first), NONE);
    EXPECT_EQ(CT_Time::sn8_Convert(&first), 0U);
    const SYSTEMTIME last = System(9999, 12, 31, 23, 59, 59);
    EXPECT_EQ(CT_Time::sn8_Convert(&last), 3652059ULL * 86400 - 1);
}

TEST_F(Time, BothFormsBecomeTheSystemsStructure)
{
    for (const bool wide : {false, true}) {
        SYSTEMTIME system = System(7, 7, 7);
        if (wide)
            CT_Time::sv_Convert(&system, YEAR_1970 + 951868798);
        else
            CT_Time::sv_Convert(&system, LONG(951868798));
        EXPECT_EQ(Of(system), (Fields{2000, 2, 29, 23, 59, 58}));
        EXPECT_EQ(system.wDayOfWeek, 2);
        EXPECT_EQ(system.wMilliseconds, 0);
    }
    SYSTEMTIME system;
    CT_Time::sv_Convert(&system, 0ULL);
    EXPECT_EQ(Of(system), (Fields{1, 1, 1, 0, 0, 0}));
    EXPECT_EQ(system.wDayOfWeek, 1);
}

TEST_F(Time, ANegativeMomentGivesAStructureOfZeros)
{
    for (LONG moment : {LONG(-1), LONG(INT_MIN)}) {
        SYSTEMTIME system = System(7, 7, 7);
        CT_Time::sv_Convert(&system, moment);
        EXPECT_EQ(Of(system), (Fields{0, 0, 0, 0, 0, 0}));
        EXPECT_EQ(system.wDayOfWeek, 0);
        EXPECT_EQ(system.wMilliseconds, 0);
    }
}

// ---- The C library's structure ------------------------------------------------------------

TEST_F(Time, NoDateIsZero)
{
    EXPECT_EQ(CT_Time::sn8_Date2Abs(nullptr), 0U);
}

TEST_F(Time, ADateIsSecondsFromTheFirstDayOn)
{
    std::tm date = Tm(1, 1, 1);
    EXPECT_EQ(CT_Time::sn8_Date2Abs(&date), 0U);
    date = Tm(1, 1, 1, 1, 2, 3);
    EXPECT_EQ(CT_Time::sn8_Date2Abs(&date), 3723U);
    date = Tm(1998, 1, 1);
    EXPECT_EQ(CT_Time::sn8_Date2Abs(&date), 729389ULL * 86400);
    date = Tm(1970, 1, 1);
    EXPECT_EQ(CT_Time::sn8_Date2Abs(&date), YEAR_1970);
    // Fields beyond their ranges count on, and days before the first one are negative.
    date = Tm(1970, 1, 2, -24, 60, -3600);
    EXPECT_EQ(CT_Time::sn8_Date2Abs(&date), YEAR_1970);
    date = Tm(1, 1, 0);
    EXPECT_EQ(CT_Time::sn8_Date2Abs(&date), 0 - 86400ULL);
    date = Tm(1, 1, 1, 0, 0, -1);
    EXPECT_EQ(CT_Time::sn8_Date2Abs(&date), ~0ULL);
}

TEST_F(Time, TheFirstSecondIsTheFirstOfJanuaryOfYearOne)
{
    const std::tm* date = CT_Time::spso_Abs2Date(0);
    EXPECT_EQ(Of(*date), (Fields{1, 1, 1, 0, 0, 0}));
    EXPECT_EQ(date->tm_year, -1899);
    EXPECT_EQ(date->tm_wday, 1);
    EXPECT_EQ(date->tm_yday, 0);
}

TEST_F(Time, ADateOfAMomentHasItsDaysOfTheWeekAndTheYear)
{
    const std::tm* date = CT_Time::spso_Abs2Date(YEAR_1970 + 951868798);
    EXPECT_EQ(Of(*date), (Fields{2000, 2, 29, 23, 59, 58}));
    EXPECT_EQ(date->tm_wday, 2);
    EXPECT_EQ(date->tm_yday, 59);
}

TEST_F(Time, TheDateOfAMomentIsOneStructureForAll)
{
    const std::tm* first = CT_Time::spso_Abs2Date(0);
    EXPECT_EQ(CT_Time::spso_Abs2Date(YEAR_1970), first);
    EXPECT_EQ(first->tm_year, 70);
}

TEST_F(Time, EveryDayLeadsThereAndBack)
{
    std::mt19937_64 random(Seed(9999));
    for (int round = 0; round < 20000; ++round) {
        const unsigned long long n = random() % (3652059ULL * 86400);
        std::tm date = *CT_Time::spso_Abs2Date(n);
        ASSERT_EQ(CT_Time::sn8_Date2Abs(&date), n);
    }
}

TEST_F(Time, MomentsBeyondAllDatesEndSomewhere)
{
    for (unsigned long long n : {~0ULL, 1ULL << 63, (1ULL << 63) - 1, 1ULL << 62, 3ULL << 62}) {
        std::tm date = *CT_Time::spso_Abs2Date(n);
        CT_Time::sn8_Date2Abs(&date);
        CT_Time time(n);
        EXPECT_EQ(time.n8_Get(), n);
        SYSTEMTIME system;
        CT_Time::sv_Convert(&system, n);
    }
    // The last second of a day before the first.
    EXPECT_EQ(Of(*CT_Time::spso_Abs2Date(~0ULL)), (Fields{1, 1, 1, 0, 0, -1}));
    std::tm date = Tm(1970, 1, 1);
    date.tm_year = date.tm_mon = date.tm_mday = date.tm_hour = date.tm_min = date.tm_sec = INT_MAX;
    CT_Time::sn8_Date2Abs(&date);
    CT_Time::n_GetDST(&date);
}

TEST_F(Time, DaylightTimeAddsNothing)
{
    for (int month = 1; month <= 12; ++month) {
        std::tm date = Tm(1997, month, 15, 12);
        for (int flag : {-1, 0, 1}) {
            date.tm_isdst = flag;
            EXPECT_EQ(CT_Time::n_GetDST(&date), 0U);
        }
        EXPECT_EQ(Of(date), (Fields{1997, month, 15, 12, 0, 0}));
    }
}

// ---- Zones --------------------------------------------------------------------------------

namespace
{
struct ZoneRow
{
    const char* zone;
    unsigned moment;
    struct
    {
        int year, month, day, hour, minute, second, weekday, yearday;
    } date;
    unsigned long long abs;
};

// By Python's zoneinfo. The last number is the local time with the zone's standard time taken off,
// so that in daylight time it is ahead of UTC.
const ZoneRow zone_rows[] = {
    {"UTC", 0, {1970, 1, 1, 0, 0, 0, 4, 0}, 62135596800ULL},
    {"UTC", 1, {1970, 1, 1, 0, 0, 1, 4, 0}, 62135596801ULL},
    {"UTC", 852076800, {1997, 1, 1, 0, 0, 0, 3, 0}, 62987673600ULL},
    {"UTC", 867715200, {1997, 7, 1, 0, 0, 0, 2, 181}, 63003312000ULL},
    {"UTC", 915148800, {1999, 1, 1, 0, 0, 0, 5, 0}, 63050745600ULL},
    {"UTC", 951782400, {2000, 2, 29, 0, 0, 0, 2, 59}, 63087379200ULL},
    {"UTC", 1700000000, {2023, 11, 14, 22, 13, 20, 2, 317}, 63835596800ULL},
    {"UTC", 2147483647, {2038, 1, 19, 3, 14, 7, 2, 18}, 64283080447ULL},
    {"Europe/Berlin", 0, {1970, 1, 1, 1, 0, 0, 4, 0}, 62135596800ULL},
    {"Europe/Berlin", 1, {1970, 1, 1, 1, 0, 1, 4, 0}, 62135596801ULL},
    {"Europe/Berlin", 852076800, {1997, 1, 1, 1, 0, 0, 3, 0}, 62987673600ULL},
    {"Europe/Berlin", 867715200, {1997, 7, 1, 2, 0, 0, 2, 181}, 63003315600ULL},
    {"Europe/Berlin", 915148800, {1999, 1, 1, 1, 0, 0, 5, 0}, 63050745600ULL},
    {"Europe/Berlin", 951782400, {2000, 2, 29, 1, 0, 0, 2, 59}, 63087379200ULL},
    {"Europe/Berlin", 1700000000, {2023, 11, 14, 23, 13, 20, 2, 317}, 63835596800ULL},
    {"Europe/Berlin", 2147483647, {2038, 1, 19, 4, 14, 7, 2, 18}, 64283080447ULL},
    {"America/St_Johns", 0, {1969, 12, 31, 20, 30, 0, 3, 364}, 62135596800ULL},
    {"America/St_Johns", 1, {1969, 12, 31, 20, 30, 1, 3, 364}, 62135596801ULL},
    {"America/St_Johns", 852076800, {1996, 12, 31, 20, 30, 0, 2, 365}, 62987673600ULL},
    {"America/St_Johns", 867715200, {1997, 6, 30, 21, 30, 0, 1, 180}, 63003315600ULL},
    {"America/St_Johns", 915148800, {1998, 12, 31, 20, 30, 0, 4, 364}, 63050745600ULL},
    {"America/St_Johns", 951782400, {2000, 2, 28, 20, 30, 0, 1, 58}, 63087379200ULL},
    {"America/St_Johns", 1700000000, {2023, 11, 14, 18, 43, 20, 2, 317}, 63835596800ULL},
    {"America/St_Johns", 2147483647, {2038, 1, 18, 23, 44, 7, 1, 17}, 64283080447ULL},
    {"Asia/Kolkata", 0, {1970, 1, 1, 5, 30, 0, 4, 0}, 62135596800ULL},
    {"Asia/Kolkata", 1, {1970, 1, 1, 5, 30, 1, 4, 0}, 62135596801ULL},
    {"Asia/Kolkata", 852076800, {1997, 1, 1, 5, 30, 0, 3, 0}, 62987673600ULL},
    {"Asia/Kolkata", 867715200, {1997, 7, 1, 5, 30, 0, 2, 181}, 63003312000ULL},
    {"Asia/Kolkata", 915148800, {1999, 1, 1, 5, 30, 0, 5, 0}, 63050745600ULL},
    {"Asia/Kolkata", 951782400, {2000, 2, 29, 5, 30, 0, 2, 59}, 63087379200ULL},
    {"Asia/Kolkata", 1700000000, {2023, 11, 15, 3, 43, 20, 3, 318}, 63835596800ULL},
    {"Asia/Kolkata", 2147483647, {2038, 1, 19, 8, 44, 7, 2, 18}, 64283080447ULL},
    {"Australia/Lord_Howe", 0, {1970, 1, 1, 10, 0, 0, 4, 0}, 62135595000ULL},
    {"Australia/Lord_Howe", 1, {1970, 1, 1, 10, 0, 1, 4, 0}, 62135595001ULL},
    {"Australia/Lord_Howe", 852076800, {1997, 1, 1, 11, 0, 0, 3, 0}, 62987675400ULL},
    {"Australia/Lord_Howe", 867715200, {1997, 7, 1, 10, 30, 0, 2, 181}, 63003312000ULL},
    {"Australia/Lord_Howe", 915148800, {1999, 1, 1, 11, 0, 0, 5, 0}, 63050747400ULL},
    {"Australia/Lord_Howe", 951782400, {2000, 2, 29, 11, 0, 0, 2, 59}, 63087381000ULL},
    {"Australia/Lord_Howe", 1700000000, {2023, 11, 15, 9, 13, 20, 3, 318}, 63835598600ULL},
    {"Australia/Lord_Howe", 2147483647, {2038, 1, 19, 14, 14, 7, 2, 18}, 64283082247ULL},
};

const char* const zones[] = {"UTC", "Europe/Berlin", "America/St_Johns", "Asia/Kolkata",
                             "Australia/Lord_Howe"};
} // namespace

TEST_F(TimeZones, MomentsHaveTheDatesThatPythonGivesThem)
{
    const FixedClock clock(WINTER);
    for (const ZoneRow& row : zone_rows) {
        SCOPED_TRACE(std::string(row.zone) + " " + std::to_string(row.moment));
        const FixedZone zone(row.zone);
        SYSTEMTIME system;
        CT_Time::sv_Convert(&system, LONG(row.moment));
        EXPECT_EQ(Of(system), (Fields{row.date.year, row.date.month, row.date.day, row.date.hour,
                                      row.date.minute, row.date.second}));
        EXPECT_EQ(system.wDayOfWeek, row.date.weekday);
        EXPECT_EQ(CT_Time::sn8_Convert(row.moment), row.abs);
        EXPECT_EQ(CT_Time(row.moment).n8_Get(), row.abs);
        const std::tm* date = CT_Time::spso_Abs2Date(row.abs);
        EXPECT_EQ(Of(*date), Of(system));
        EXPECT_EQ(date->tm_wday, row.date.weekday);
        EXPECT_EQ(date->tm_yday, row.date.yearday);
    }
}

TEST_F(TimeZones, TheZoneMayChangeBetweenCalls)
{
    for (int round = 0; round < 2; ++round) {
        {
            const FixedZone zone("Asia/Kolkata");
            EXPECT_EQ(CT_Time::spso_Abs2Date(YEAR_1970)->tm_hour, 5);
        }
        const FixedZone zone("UTC");
        EXPECT_EQ(CT_Time::spso_Abs2Date(YEAR_1970)->tm_hour, 0);
    }
}

TEST_F(TimeZones, TheFirstSecondIsLocalTimeByTheStandardTime)
{
    const FixedClock clock(SUMMER);
    const Fields expected[] = {{1, 1, 1, 0, 0, 0},
                               {1, 1, 1, 1, 0, 0},
                               {1, 1, 1, -3, -30, 0},
                               {1, 1, 1, 5, 30, 0},
                               {1, 1, 1, 10, 30, 0}};
    for (unsigned n = 0; n < 5; ++n) {
        const FixedZone zone(zones[n]);
        EXPECT_EQ(Of(*CT_Time::spso_Abs2Date(0)), expected[n]) << zones[n];
    }
}

TEST_F(TimeZones, ADateOfAMomentHasThePresentsDaylightTime)
{
    const FixedZone zone("Europe/Berlin");
    for (const bool summer : {false, true}) {
        const FixedClock clock(summer ? SUMMER : WINTER);
        EXPECT_EQ(CT_Time::spso_Abs2Date(YEAR_1970)->tm_isdst, summer);
        EXPECT_EQ(CT_Time::spso_Abs2Date(YEAR_1970 + 867715200)->tm_isdst, summer);
    }
}

TEST_F(TimeZones, The32BitFormOfA64BitOneIsAnHourOffWhereThePresentsDaylightTimeIsAnother)
{
    const FixedZone zone("Europe/Berlin");
    const unsigned long long in_winter = YEAR_1970 + 852076800, in_summer = YEAR_1970 + 867718800;
    {
        const FixedClock clock(WINTER);
        EXPECT_EQ(CT_Time::sn_Convert(in_winter), 852076800U);
        EXPECT_EQ(CT_Time::sn_Convert(in_summer), 867718800U);
    }
    const FixedClock clock(SUMMER);
    EXPECT_EQ(CT_Time::sn_Convert(in_winter), 852076800U - 3600);
    EXPECT_EQ(CT_Time::sn_Convert(in_summer), 867718800U - 3600);
    const CT_Time time(in_winter);
    EXPECT_EQ(time.n_Get(), 852076800U - 3600);
    EXPECT_EQ(time.n8_Get(), in_winter);
}

TEST_F(TimeZones, ASystemsStructureIsMeantAsThePresentOrAsTheZoneSays)
{
    const FixedZone zone("Europe/Berlin");
    const SYSTEMTIME winter = System(1997, 1, 1, 1), summer = System(1997, 7, 1, 2);
    {
        const FixedClock clock(WINTER);
        EXPECT_EQ(CT_Time::sn_Convert(&winter), 852076800U);
        EXPECT_EQ(CT_Time::sn_Convert(&summer), 867715200U + 3600);
    }
    const FixedClock clock(SUMMER);
    EXPECT_EQ(CT_Time::sn_Convert(&winter), 852076800U - 3600);
    EXPECT_EQ(CT_Time::sn_Convert(&summer), 867715200U);
    EXPECT_EQ(CT_Time::sn8_Convert(&winter), YEAR_1970 + 852076800);
    EXPECT_EQ(CT_Time::sn8_Convert(&summer), YEAR_1970 + 867715200 + 3600);
}

TEST_F(TimeZones, ANewTimeIsTheFirstOfJanuary1997InItsZone)
{
    const unsigned expected[] = {852076800U, 852073200U, 852089400U, 852057000U, 852037200U};
    for (unsigned n = 0; n < 5; ++n) {
        SCOPED_TRACE(zones[n]);
        const FixedZone zone(zones[n]);
        // In the present of Lord Howe's summer, January is daylight time as it was in 1997.
        const FixedClock clock(WINTER);
        const CT_Time time;
        EXPECT_EQ(time.n_Get(), expected[n]);
        EXPECT_EQ(Of(time), (Fields{1997, 1, 1, 0, 0, 0}));
    }
}

TEST_F(TimeZones, DaylightTimeAddsNothingInAnyZone)
{
    for (const char* name : zones) {
        const FixedZone zone(name);
        for (int month = 1; month <= 12; ++month) {
            std::tm date = Tm(1997, month, 15, 12);
            EXPECT_EQ(CT_Time::n_GetDST(&date), 0U) << name << " " << month;
        }
    }
}

TEST_F(TimeZones, FieldsAreSetInTheZonesTime)
{
    const FixedZone zone("America/St_Johns");
    const FixedClock clock(WINTER);
    CT_Time time(852089400U);
    time.v_Set(1997, 7, 2, 0, 0, 0);
    // Told as standard time, which January's is; the result is told as daylight time.
    EXPECT_EQ(time.n_Get(), 867727800U);
    EXPECT_EQ(Of(time), (Fields{1997, 7, 1, 1, 0, 0}));
}

TEST_F(TimeZones, NowIsLocalTimeByTheStandardTimeInThe64BitForm)
{
    const FixedZone zone("Europe/Berlin");
    const FixedClock clock(SUMMER);
    EXPECT_EQ(CT_Time::sn_GetTime(), unsigned(SUMMER));
    EXPECT_EQ(CT_Time::sn8_GetTime(), YEAR_1970 + SUMMER + 3600);
}
