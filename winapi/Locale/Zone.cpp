// winapi/Locale/Zone.cpp
#include "Locale/Zone.h"

#include "Base/HostVariables.h"
#include "Base/Posix.h"
#include "Locale/CivilDay.h"
#include "winapi/Locale/LocalTime.h"

#include <algorithm>
#include <cstdlib>
#include <mutex>

namespace winapi
{
namespace
{
// A span of time for which the clock stays as it is.
struct Span
{
    long long begin; // In seconds of UTC.
    int offset;      // Seconds ahead of UTC.
    bool daylight;
    const char* name;

    bool IsLike(const Span& other) const
    {
        return offset == other.offset && daylight == other.daylight;
    }
};

struct Year
{
    static constexpr int MOST = 12; // No zone has had half as many in a year.
    int number;
    int count; // 0: not known yet.
    Span spans[MOST];

    const Span& At(long long seconds) const
    {
        int at = count - 1;
        while (at > 0 && spans[at].begin > seconds)
            --at;
        return spans[at];
    }
};

constexpr int KEPT_YEARS = 128;
constexpr long long STEP = 4 * SECONDS_OF_DAY; // No zone went back and forth in so few days.
constexpr long long FIRST_YEAR = -200000;      // Beyond are no dates, and no zone has rules there.
constexpr long long LAST_YEAR = 200000;

constinit std::mutex mutex; // What follows.
Year years[KEPT_YEARS];
HostZone zone;

// What the host says of a moment.
Span Ask(long long seconds)
{
    const time_t moment = seconds;
    std::tm date{};
    posix.localtime_r(&moment, &date);
    return {seconds, static_cast<int>(date.tm_gmtoff), date.tm_isdst > 0, date.tm_zone};
}

// The first moment behind `from`, up to `to`, that isn't as `from` is.
Span FindChange(const Span& from, const Span& to)
{
    Span before = from;
    Span after = to;
    while (after.begin - before.begin > 1) {
        const Span middle = Ask(before.begin + (after.begin - before.begin) / 2);
        (middle.IsLike(before) ? before : after) = middle;
    }
    return after;
}

void Learn(Year& year, int number)
{
    const long long begin = DayNumber(number, 1, 1) * SECONDS_OF_DAY;
    const long long end = DayNumber(number + 1, 1, 1) * SECONDS_OF_DAY;
    year.number = number;
    year.spans[0] = Ask(begin);
    year.count = 1;
    Span last = year.spans[0];
    for (long long at = begin; at < end; at += STEP) {
        const Span next = Ask(std::min(at + STEP, end));
        if (!next.IsLike(last) && year.count < Year::MOST)
            year.spans[year.count++] = FindChange(last, next);
        last = next;
    }
}

// The following are called with the mutex held.

const Year& YearOf(long long wanted)
{
    const long long number = std::clamp(wanted, FIRST_YEAR, LAST_YEAR);
    Year& year = years[static_cast<unsigned>(number) % KEPT_YEARS];
    if (year.count == 0 || year.number != number)
        Learn(year, static_cast<int>(number));
    return year;
}

long long YearAt(long long seconds)
{
    const long long days = seconds / SECONDS_OF_DAY - (seconds % SECONDS_OF_DAY < 0);
    return DateOfDay(days).year;
}

const Span& SpanAt(long long seconds)
{
    return YearOf(YearAt(seconds)).At(seconds);
}

void FollowVariable()
{
    if (zone.Follow())
        for (Year& year : years)
            year.count = 0;
}

// The span that is like the wish and nearest to the moment, within the years around it; null if
// there is none.
const Span* FindNearest(long long seconds, bool daylight)
{
    const Span* nearest = nullptr;
    long long distance = 0;
    const long long at = YearAt(seconds);
    for (long long number = at - 1; number <= at + 1; ++number)
        for (const Year& year = YearOf(number); const Span& span : year.spans) {
            if (&span == year.spans + year.count)
                break;
            const long long away = std::llabs(span.begin - seconds);
            if (span.daylight == daylight && (!nearest || away < distance)) {
                nearest = &span;
                distance = away;
            }
        }
    return nearest;
}

// The span that holds at a time of the zone's clock. A day is more than any clock is ahead of UTC
// or was ever changed by.
const Span& SpanOfClock(long long clock)
{
    const Span& later = SpanAt(clock + SECONDS_OF_DAY);
    const Span& second = SpanAt(clock - later.offset);
    if (second.offset == later.offset)
        return second;
    const Span& earlier = SpanAt(clock - SECONDS_OF_DAY);
    const Span& first = SpanAt(clock - earlier.offset);
    return first.offset == earlier.offset ? first : earlier;
}

void SetDate(std::tm& date, long long clock, const Span& span)
{
    const long long days = clock / SECONDS_OF_DAY - (clock % SECONDS_OF_DAY < 0);
    const int rest = static_cast<int>(clock - days * SECONDS_OF_DAY);
    const CivilDay day = DateOfDay(days);
    date.tm_year = static_cast<int>(day.year - 1900);
    date.tm_mon = day.month - 1;
    date.tm_mday = day.day;
    date.tm_hour = rest / 3600;
    date.tm_min = rest / 60 % 60;
    date.tm_sec = rest % 60;
    date.tm_wday = WeekDay(days);
    date.tm_yday = static_cast<int>(days - DayNumber(day.year, 1, 1));
    date.tm_isdst = span.daylight;
    date.tm_gmtoff = span.offset;
    date.tm_zone = span.name;
}

const Year& PresentYear()
{
    return YearOf(YearAt(NowInMilliseconds() / 1000));
}
} // namespace

long long NowInMilliseconds()
{
    if (winapi_TestClock)
        return winapi_TestClock();
    timespec now{};
    posix.clock_gettime(CLOCK_REALTIME, &now);
    return now.tv_sec * 1000LL + now.tv_nsec / 1000000;
}

bool ToZoneTime(long long seconds, std::tm& date)
{
    const long long year = YearAt(seconds);
    if (year < FIRST_YEAR || year > LAST_YEAR)
        return false;
    const std::lock_guard lock(mutex);
    FollowVariable();
    const Span& span = SpanAt(seconds);
    SetDate(date, seconds + span.offset, span);
    return true;
}

long long FromZoneTime(const std::tm& date)
{
    const long long clock =
        DayNumber(date.tm_year + 1900LL, date.tm_mon + 1LL, date.tm_mday) * SECONDS_OF_DAY +
        date.tm_hour * 3600LL + date.tm_min * 60LL + date.tm_sec;
    const std::lock_guard lock(mutex);
    FollowVariable();
    const Span& found = SpanOfClock(clock);
    if (date.tm_isdst < 0 || found.daylight == (date.tm_isdst > 0))
        return clock - found.offset;
    const Span* const other = FindNearest(clock - found.offset, date.tm_isdst > 0);
    return clock - (other ? other->offset : found.offset);
}

LONG ZoneSecondsWest()
{
    const std::lock_guard lock(mutex);
    FollowVariable();
    const Year& year = PresentYear();
    int at = year.count - 1;
    while (at > 0 && year.spans[at].daylight)
        --at;
    return -year.spans[at].offset;
}

bool ZoneHasDaylight()
{
    const std::lock_guard lock(mutex);
    FollowVariable();
    const Year& year = PresentYear();
    for (int i = 0; i < year.count; ++i)
        if (year.spans[i].daylight)
            return true;
    return false;
}
} // namespace winapi
