// winapi/Locale/Zone.h: the clock, and the zone of TZ or of the host. Internal.
//
// The host's own calls keep the zone in variables of the process and read a zone's rules with every
// call. Here what holds within a year is asked of them once.
#pragma once

#include "winapi/Base/Types.h"

#include <ctime>

namespace winapi
{
constexpr long long SECONDS_OF_DAY = 86400;

// Since the beginning of 1970 UTC.
long long NowInMilliseconds();

// False for a year that the host doesn't reckon with.
bool ToZoneTime(long long seconds, std::tm& date);

// The moment of a date whose fields may lie beyond their ranges. Where clocks are put forward, a
// time that they leave out is as far behind the change as it is given; where they are put back, a
// time that they show twice is the second one, if tm_isdst doesn't tell. Where no daylight time is
// near, a date in it is one in standard time.
long long FromZoneTime(const std::tm& date);

// Of the present year: standard time's seconds behind UTC, and whether there is daylight time.
LONG ZoneSecondsWest();
bool ZoneHasDaylight();
} // namespace winapi
