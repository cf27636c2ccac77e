// winapi/tests/CLibrary/TimeTest.cpp: the C library's clock, in UTC.
#include "../Support/Calls.h"

#include <ctime>

namespace
{
std::tm Date(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
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

long long Moment(std::tm date)
{
    return _mktime64(&date);
}
} // namespace

TEST(Time, TheMomentIsStoredAndReturned)
{
    __time64_t stored = 0;
    const __time64_t now = _time64(&stored);
    EXPECT_EQ(now, stored);
    EXPECT_LE(now, _time64(nullptr));
}

TEST(Time, AMomentBefore1970HasNoDate)
{
    const __time64_t before = -1;
    const __time64_t wayBefore = -100'000'000'000;
    EXPECT_EQ(_localtime64(&before), nullptr);
    EXPECT_EQ(_localtime64(&wayBefore), nullptr);
    const __time64_t first = 0;
    ASSERT_NE(_localtime64(&first), nullptr);
    EXPECT_EQ(_localtime64(&first)->tm_year, 70);
}

TEST(Time, ADateBefore1970HasNoMomentAndStays)
{
    std::tm date = Date(1960, 1, 40);
    EXPECT_EQ(_mktime64(&date), -1);
    EXPECT_EQ(date.tm_mon, 0);
    EXPECT_EQ(date.tm_mday, 40);
}

TEST(Time, ADateHasTheDayOfTheWeekAndOfTheYear)
{
    const __time64_t moment = 951'782'400; // 29 February 2000, a Tuesday.
    const std::tm* const date = _localtime64(&moment);
    ASSERT_NE(date, nullptr);
    EXPECT_EQ(date->tm_year, 100);
    EXPECT_EQ(date->tm_mon, 1);
    EXPECT_EQ(date->tm_mday, 29);
    EXPECT_EQ(date->tm_wday, 2);
    EXPECT_EQ(date->tm_yday, 59);
    EXPECT_EQ(date->tm_isdst, 0);
}

TEST(Time, FieldsBeyondTheirRangesAreBroughtIntoThem)
{
    std::tm date = Date(1999, 14, 31, 25, 61, 61);
    EXPECT_EQ(_mktime64(&date), 952'048'921);
    EXPECT_EQ(date.tm_year, 100);
    EXPECT_EQ(date.tm_mon, 2);
    EXPECT_EQ(date.tm_mday, 3);
    EXPECT_EQ(date.tm_hour, 2);
    EXPECT_EQ(date.tm_min, 2);
    EXPECT_EQ(date.tm_sec, 1);
    EXPECT_EQ(date.tm_wday, 5);
    EXPECT_EQ(date.tm_yday, 62);
    // Day 0 is the last one of the month before.
    EXPECT_EQ(Moment(Date(2000, 3, 0)), Moment(Date(2000, 2, 29)));
    EXPECT_EQ(Moment(Date(2000, -1, 1)), Moment(Date(1999, 11, 1)));
}

TEST(Time, DatesBehind2038HaveMoments)
{
    EXPECT_EQ(Moment(Date(2038, 1, 19, 3, 14, 8)), 0x80000000LL);
    EXPECT_EQ(Moment(Date(2999, 12, 31)), 32'503'593'600);
    const __time64_t moment = 32'503'593'600;
    ASSERT_NE(_localtime64(&moment), nullptr);
    EXPECT_EQ(_localtime64(&moment)->tm_year, 1099);
}

TEST(Time, UtcLiesNotBehindItself)
{
    _tzset();
    EXPECT_EQ(static_cast<long>(_timezone), 0);
    EXPECT_EQ(static_cast<int>(_daylight), 0);
}
