// winapi/tests/native/CLibrary/ZoneTest.cpp: the clock in zones, beside what the host's own calls say.
#include "../../Support/Calls.h"
#include "../../Support/Replace.h"
#include "Support/Clock.h"

#include <random>

#include <time.h>

namespace
{
constexpr long long LAST = 32'535'215'999;

std::string Text(const std::tm& date)
{
    char text[80];
    std::snprintf(text, sizeof text, "%d-%02d-%02d %02d:%02d:%02d w%d y%d d%d %ld",
                  date.tm_year + 1900, date.tm_mon + 1, date.tm_mday, date.tm_hour, date.tm_min,
                  date.tm_sec, date.tm_wday, date.tm_yday, date.tm_isdst, date.tm_gmtoff);
    return text;
}

std::string OwnDate(long long moment)
{
    const std::tm* const date = _localtime64(&moment);
    return date ? Text(*date) : "none";
}

std::string HostDate(long long moment)
{
    std::tm date{};
    const time_t seconds = moment;
    ::localtime_r(&seconds, &date);
    return Text(date);
}

std::tm HostOffset(time_t moment)
{
    std::tm date{};
    ::localtime_r(&moment, &date);
    return date;
}

bool IsLike(const std::tm& one, const std::tm& other)
{
    return one.tm_gmtoff == other.tm_gmtoff && one.tm_isdst == other.tm_isdst;
}

// Mostly of the years up to 2096.
long long AnyMoment(std::mt19937_64& random)
{
    return static_cast<long long>(random() % (random() % 100 ? 4'000'000'000 : LAST));
}

class Zones : public testing::TestWithParam<const char*>
{
protected:
    const FixedZone zone{GetParam()};

    void SetUp() override { ::tzset(); }
};

std::tm Given(int year, int month, int day, int hour, int minute, int saving)
{
    std::tm date{};
    date.tm_year = year - 1900;
    date.tm_mon = month - 1;
    date.tm_mday = day;
    date.tm_hour = hour;
    date.tm_min = minute;
    date.tm_isdst = saving;
    return date;
}

long long Moment(std::tm date)
{
    return _mktime64(&date);
}
} // namespace

TEST_P(Zones, EachMomentHasTheDateThatTheHostGivesIt)
{
    std::mt19937_64 random(1970);
    for (int i = 0; i < 20000; ++i) {
        const long long moment = AnyMoment(random);
        ASSERT_EQ(OwnDate(moment), HostDate(moment)) << moment;
    }
}

TEST_P(Zones, EachSecondAroundAChangeHasTheDateThatTheHostGivesIt)
{
    constexpr time_t DAY = 86400;
    for (time_t day = DAY; day < 2'200'000'000; day += DAY) {
        if (IsLike(HostOffset(day), HostOffset(day - DAY)))
            continue;
        for (time_t at = day - DAY; at < day; at += 60)
            if (!IsLike(HostOffset(at), HostOffset(at + 60))) {
                for (time_t second = at - 60; second < at + 120; ++second)
                    ASSERT_EQ(OwnDate(second), HostDate(second)) << second;
            }
    }
}

TEST_P(Zones, EachDateLeadsBackToItsMoment)
{
    std::mt19937_64 random(3000);
    for (int i = 0; i < 20000; ++i) {
        const long long moment = AnyMoment(random);
        std::tm date = *_localtime64(&moment);
        ASSERT_EQ(_mktime64(&date), moment) << Text(date);
        ASSERT_EQ(Text(date), HostDate(moment));
    }
}

TEST_P(Zones, DatesAreUnderstoodAsTheHostDoesWhereTheyHappenedOnce)
{
    std::mt19937_64 random(1980);
    for (int i = 0; i < 20000; ++i) {
        std::tm date = Given(1971 + static_cast<int>(random() % 100),
                             static_cast<int>(random() % 30) - 8, static_cast<int>(random() % 90),
                             static_cast<int>(random() % 24), static_cast<int>(random() % 60), -1);
        std::tm host = date;
        const long long told = ::mktime(&host);
        const long long moment = _mktime64(&date);
        // Where a time was left out or shown twice, both answers are good.
        if (HostDate(told) == HostDate(moment)) {
            ASSERT_EQ(moment, told) << Text(host);
        } else {
            ASSERT_EQ(std::llabs(moment - told) % 1800, 0) << Text(host);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Time, Zones,
                         testing::Values("UTC", "Europe/Berlin", "America/St_Johns", "Asia/Kolkata",
                                         "Australia/Lord_Howe", "Africa/Casablanca", "Pacific/Apia",
                                         "Europe/Dublin", "XYZ-3:17ABC,M4.1.0,J300", ""));

TEST(Zone, TheOffsetIsThatOfStandardTime)
{
    const struct
    {
        const char* name;
        LONG west;
        int saving;
    } rows[] = {{"UTC", 0, 0},
                {"Europe/Berlin", -3600, 1},
                {"America/St_Johns", 12600, 1},
                {"Asia/Kolkata", -19800, 0},
                {"Australia/Lord_Howe", -37800, 1},
                {"", 0, 0}};
    for (const long long day : {1'767'225'600, 1'782'864'000}) // January and July 2026.
        for (const auto& row : rows) {
            const FixedClock clock(day);
            const FixedZone zone(row.name);
            EXPECT_EQ(static_cast<LONG>(_timezone), row.west) << row.name;
            EXPECT_EQ(static_cast<int>(_daylight), row.saving) << row.name;
        }
}

TEST(Zone, DaylightTimeIsReckonedWhereADateAsksForIt)
{
    const FixedZone zone("Europe/Berlin");
    const long long noon = Moment(Given(2000, 1, 15, 12, 0, 0));
    EXPECT_EQ(noon, 947'934'000);
    EXPECT_EQ(Moment(Given(2000, 1, 15, 12, 0, -1)), noon);
    EXPECT_EQ(Moment(Given(2000, 1, 15, 12, 0, 1)), noon - 3600);
    const long long summer = Moment(Given(2000, 7, 15, 12, 0, 1));
    EXPECT_EQ(summer, 963'655'200);
    EXPECT_EQ(Moment(Given(2000, 7, 15, 12, 0, -1)), summer);
    EXPECT_EQ(Moment(Given(2000, 7, 15, 12, 0, 0)), summer + 3600);
}

TEST(Zone, DaylightTimeOfHalfAnHourIsKnown)
{
    const FixedZone zone("Australia/Lord_Howe");
    EXPECT_EQ(Moment(Given(2020, 7, 1, 12, 0, 1)), Moment(Given(2020, 7, 1, 12, 0, 0)) - 1800);
}

TEST(Zone, WithoutDaylightTimeADateIsInStandardTime)
{
    const FixedZone zone("Asia/Kolkata");
    EXPECT_EQ(Moment(Given(2000, 7, 15, 12, 0, 1)), Moment(Given(2000, 7, 15, 12, 0, 0)));
    // The year that the question of daylight time is asked for has the same days in between.
    EXPECT_EQ(Moment(Given(1980, 7, 1, 0, 0, 0)) - Moment(Given(1980, 3, 1, 0, 0, 0)), 10'540'800);
}

TEST(Zone, ATimeThatIsLeftOutLiesBehindTheChange)
{
    const FixedZone zone("Europe/Berlin");
    std::tm date = Given(2021, 3, 28, 2, 30, -1);
    EXPECT_EQ(_mktime64(&date), 1'616'895'000);
    EXPECT_EQ(date.tm_hour, 3);
    EXPECT_EQ(date.tm_isdst, 1);
}

TEST(Zone, ATimeThatIsShownTwiceIsTheSecondOneUnlessTold)
{
    const FixedZone zone("Europe/Berlin");
    const long long second = 1'635'643'800;
    EXPECT_EQ(Moment(Given(2021, 10, 31, 2, 30, -1)), second);
    EXPECT_EQ(Moment(Given(2021, 10, 31, 2, 30, 0)), second);
    EXPECT_EQ(Moment(Given(2021, 10, 31, 2, 30, 1)), second - 3600);
}

TEST(Zone, AChangeOfTheVariableCountsAtOnce)
{
    const long long moment = 947'934'000;
    {
        const FixedZone zone("Asia/Kolkata");
        EXPECT_EQ(_localtime64(&moment)->tm_hour, 16);
    }
    {
        const FixedZone zone("UTC");
        EXPECT_EQ(_localtime64(&moment)->tm_hour, 11);
    }
    {
        const FixedZone zone(nullptr);
        EXPECT_EQ(OwnDate(moment), HostDate(moment));
    }
    const FixedZone first("UTC");
    SetEnvironmentVariableA("TZ", "Europe/Berlin");
    EXPECT_EQ(_localtime64(&moment)->tm_hour, 12);
}

TEST(Zone, ALongOrForeignNameIsUtcAsForTheHost)
{
    const long long moment = 947'934'000;
    for (const std::string& name : {std::string(1000, 'x'), std::string("No/Such_Zone"),
                                    std::string("\xF0\x9F\x95\x90"), std::string("../../etc")}) {
        const FixedZone zone(name.c_str());
        EXPECT_EQ(_localtime64(&moment)->tm_hour, 11);
    }
}

TEST(Zone, FieldsWithoutAnyRangeAreNoTrouble)
{
    const FixedZone zone("Europe/Berlin");
    constexpr int MOST = 0x7FFFFFFF;
    for (const int saving : {-1, 0, 1})
        for (const int year : {-MOST - 1, MOST}) {
            std::tm date{};
            date.tm_isdst = saving;
            date.tm_year = year;
            date.tm_mon = date.tm_mday = date.tm_hour = date.tm_min = date.tm_sec = year;
            EXPECT_EQ(_mktime64(&date), -1);
        }
}
