// tests/Support/Clock.cpp
#include "Support/Clock.h"

#include <windows.h>

#include <cstdlib>

#include <time.h>

namespace
{
std::optional<long long> moment;

void SetZone(const char* name)
{
    if (name)
        ::setenv("TZ", name, 1);
    else
        ::unsetenv("TZ");
}
} // namespace

extern "C" long long winapi_TestClock()
{
    if (moment)
        return *moment;
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return now.tv_sec * 1000LL + now.tv_nsec / 1000000;
}

FixedClock::FixedClock(long long seconds, int milliseconds) : old(moment)
{
    moment = seconds * 1000 + milliseconds;
}

FixedClock::~FixedClock()
{
    moment = old;
}

FixedZone::FixedZone(const char* name)
{
    if (const char* const value = std::getenv("TZ"))
        old = value;
    SetZone(name);
}

FixedZone::~FixedZone()
{
    SetZone(old ? old->c_str() : nullptr);
}
