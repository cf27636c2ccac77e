// winapi/CLibrary/Time.cpp
#include "winapi/CLibrary/Time.h"

#include "Locale/Zone.h"

namespace winapi
{
namespace
{
constexpr long long LAST_MOMENT = 32535215999; // The end of the year 3000.
}

__time64_t _time64(__time64_t* _Time)
{
    const long long milliseconds = NowInMilliseconds();
    const __time64_t now = milliseconds / 1000 - (milliseconds % 1000 < 0);
    if (_Time)
        *_Time = now;
    return now;
}

std::tm* _localtime64(const __time64_t* _Time)
{
    static thread_local std::tm date;
    if (!_Time || *_Time < 0 || *_Time > LAST_MOMENT)
        return nullptr;
    return ToZoneTime(*_Time, date) ? &date : nullptr;
}

__time64_t _mktime64(std::tm* _Tm)
{
    const long long moment = FromZoneTime(*_Tm);
    if (moment < 0 || moment > LAST_MOMENT)
        return -1;
    ToZoneTime(moment, *_Tm);
    return moment;
}

// Every call here follows TZ by itself.
void _tzset() {}

ZoneOffset::operator LONG() const
{
    return ZoneSecondsWest();
}

ZoneDaylight::operator int() const
{
    return ZoneHasDaylight();
}
} // namespace winapi
