// winapi/Locale/LocalTime.h: the date and time on the wall.
#pragma once

#include "winapi/Base/Constants.h"

struct _SYSTEMTIME
{
    WORD wYear;
    WORD wMonth;     // 1 is January.
    WORD wDayOfWeek; // 0 is Sunday.
    WORD wDay;
    WORD wHour;
    WORD wMinute;
    WORD wSecond;
    WORD wMilliseconds;
};
using SYSTEMTIME = _SYSTEMTIME;
using LPSYSTEMTIME = _SYSTEMTIME*;

// A test program may define this: its answer, milliseconds since the beginning of 1970 UTC, becomes
// the present moment for GetLocalTime and _time64. Nothing else defines it.
extern "C" WINAPI_EXPORT long long winapi_TestClock() __attribute__((weak));

namespace winapi
{
// In the zone of TZ, or of the host where that isn't set; a change of TZ counts at once.
WINAPI_EXPORT void GetLocalTime(LPSYSTEMTIME lpSystemTime);
} // namespace winapi
