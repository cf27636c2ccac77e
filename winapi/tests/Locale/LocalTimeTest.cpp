// winapi/tests/Locale/LocalTimeTest.cpp: the date and time on the wall.
#include "../Support/Calls.h"

#include <ctime>

TEST(LocalTime, ItIsTheDateOfThePresentMoment)
{
    // A second may pass between the calls.
    for (int attempt = 0; attempt < 10; ++attempt) {
        const __time64_t before = _time64(nullptr);
        SYSTEMTIME time;
        GetLocalTime(&time);
        if (_time64(nullptr) != before)
            continue;
        const std::tm* const date = _localtime64(&before);
        ASSERT_NE(date, nullptr);
        EXPECT_EQ(time.wYear, date->tm_year + 1900);
        EXPECT_EQ(time.wMonth, date->tm_mon + 1);
        EXPECT_EQ(time.wDay, date->tm_mday);
        EXPECT_EQ(time.wDayOfWeek, date->tm_wday);
        EXPECT_EQ(time.wHour, date->tm_hour);
        EXPECT_EQ(time.wMinute, date->tm_min);
        EXPECT_EQ(time.wSecond, date->tm_sec);
        EXPECT_LT(time.wMilliseconds, 1000);
        return;
    }
    FAIL() << "each second passed between two calls";
}
