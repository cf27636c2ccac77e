// winapi/Locale/LocalTime.cpp
#include "winapi/Locale/LocalTime.h"

#include "Locale/Zone.h"

namespace winapi
{
void GetLocalTime(LPSYSTEMTIME lpSystemTime)
{
    const long long now = NowInMilliseconds();
    const long long seconds = now / 1000 - (now % 1000 < 0);
    std::tm date{};
    ToZoneTime(seconds, date);
    *lpSystemTime = {.wYear = static_cast<WORD>(date.tm_year + 1900),
                     .wMonth = static_cast<WORD>(date.tm_mon + 1),
                     .wDayOfWeek = static_cast<WORD>(date.tm_wday),
                     .wDay = static_cast<WORD>(date.tm_mday),
                     .wHour = static_cast<WORD>(date.tm_hour),
                     .wMinute = static_cast<WORD>(date.tm_min),
                     .wSecond = static_cast<WORD>(date.tm_sec),
                     .wMilliseconds = static_cast<WORD>(now - seconds * 1000)};
}
} // namespace winapi
