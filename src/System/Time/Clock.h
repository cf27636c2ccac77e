// System/Time/Clock.h: the C library's clock with moments of 32 bits. Internal.
#pragma once

#include <ctime>

// Moments are seconds since the beginning of 1970 UTC, up to 0x7FFFFFFF. Values above are taken for
// negative ones, and there are none before 1970.
class CT_Clock
{
public:
    static constexpr unsigned NONE = 0xFFFFFFFF; // no moment

    // The present moment, cut to 32 bits.
    static unsigned sn_Now();
    // The present date and time in the zone. It isn't bound to 32 bits.
    static tm sso_Now();
    // A moment's date and time in the zone; null for one that isn't in the range. The result is the
    // C library's and lives until the next call.
    static const tm* spcso_Local(unsigned n_Moment);
    // The moment of a date whose fields may lie beyond their ranges, and are brought into them; the
    // other fields are set. NONE, with the date as it was, for a moment that isn't in the range.
    static unsigned sn_Make(tm* pso_Time);
    // Seconds that the zone's standard time lies behind UTC.
    static int si_Zone();
    // 1 if the zone has daylight time.
    static int sb_HasDaylight();
};
