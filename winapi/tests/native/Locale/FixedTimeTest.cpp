// winapi/tests/native/Locale/FixedTimeTest.cpp: the date and time on the wall, in zones and at moments
// of the tests.
#include "../../Support/Locales.h"

#include "Support/Clock.h"

namespace
{
std::string Wall()
{
    SYSTEMTIME time;
    GetLocalTime(&time);
    char text[64];
    std::snprintf(text, sizeof text, "%u-%02u-%02u %02u:%02u:%02u.%03u %u", time.wYear, time.wMonth,
                  time.wDay, time.wHour, time.wMinute, time.wSecond, time.wMilliseconds,
                  time.wDayOfWeek);
    return text;
}

std::string WallIn(const char* name)
{
    const FixedZone zone(name);
    return Wall();
}
} // namespace

TEST(FixedTime, TheWallShowsTheZonesTime)
{
    const FixedClock clock(1'616'892'000, 345);
    EXPECT_EQ(WallIn("UTC"), "2021-03-28 00:40:00.345 0");
    EXPECT_EQ(WallIn("Europe/Berlin"), "2021-03-28 01:40:00.345 0");
    EXPECT_EQ(WallIn("America/St_Johns"), "2021-03-27 22:10:00.345 6");
    EXPECT_EQ(WallIn("Asia/Kolkata"), "2021-03-28 06:10:00.345 0");
    EXPECT_EQ(WallIn("Australia/Lord_Howe"), "2021-03-28 11:40:00.345 0");
}

TEST(FixedTime, AClockThatStandsBefore1970IsNoTrouble)
{
    const FixedClock clock(-1, -1);
    EXPECT_EQ(WallIn("UTC"), "1969-12-31 23:59:58.999 3");
    EXPECT_EQ(_time64(nullptr), -2);
}

TEST(FixedTime, NullIsThePresentMoment)
{
    const FixedClock clock(1'616'892'000);
    const FixedZone zone("America/St_Johns");
    char text[64];
    EXPECT_GT(GetDateFormatA(0x409, DATE_LONGDATE, nullptr, nullptr, text, 64), 0);
    EXPECT_STREQ(text, "Saturday, March 27, 2021");
    EXPECT_GT(GetTimeFormatA(0x409, 0, nullptr, "HH:mm:ss", text, 64), 0);
    EXPECT_STREQ(text, "22:10:00");
}
