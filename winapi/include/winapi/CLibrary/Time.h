// winapi/CLibrary/Time.h: the clock and calendar of the platform's C library.
//
// Zones are those of the host: TZ or, where it isn't set, the host's own; a change of TZ counts at
// the next call.
#pragma once

#include "winapi/Base/Constants.h"
#include "winapi/Locale/LocalTime.h"

#include <ctime>

using __time64_t = long long;

namespace winapi
{
// Seconds since the beginning of 1970 UTC, which are also stored where the pointer leads.
WINAPI_EXPORT __time64_t _time64(__time64_t* _Time);

// The moment in the zone's time; null for one before 1970 UTC, or behind the year 3000. The result
// is the thread's own and lives until its next call.
WINAPI_EXPORT std::tm* _localtime64(const __time64_t* _Time);

// The moment of a date in the zone's time, whose fields may lie beyond their ranges; they are
// brought into them, and the day of the week and of the year are set. -1, with the date as it was,
// for a moment before 1970 UTC or behind the year 3000. tm_isdst tells whether the date is meant in
// daylight time, or to find out (below 0).
WINAPI_EXPORT __time64_t _mktime64(std::tm* _Tm);

// Reads TZ. Nothing needs it: the calls here look for themselves.
WINAPI_EXPORT void _tzset();

// Seconds that the zone's standard time lies behind UTC.
constexpr struct ZoneOffset
{
    WINAPI_EXPORT operator LONG() const;
} _timezone;

// 1 for a zone with daylight time, else 0.
constexpr struct ZoneDaylight
{
    WINAPI_EXPORT operator int() const;
} _daylight;
} // namespace winapi
