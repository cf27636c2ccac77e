// tests/Support/Clock.h: the present moment and the zone of a test.
//
// On Windows neither can be had: WORKS tells, and the time there is the machine's own.
#pragma once

#ifdef _WIN32

class FixedClock
{
public:
    static constexpr bool WORKS = false;
    explicit FixedClock(long long, int = 0) {}
    ~FixedClock() {}
};

class FixedZone
{
public:
    static constexpr bool WORKS = false;
    explicit FixedZone(const char*) {}
    ~FixedZone() {}
};

#else

#include <optional>
#include <string>

// Until the end of its scope it is that many seconds (and milliseconds) since the beginning of 1970
// UTC.
class FixedClock
{
public:
    static constexpr bool WORKS = true;
    explicit FixedClock(long long seconds, int milliseconds = 0);
    ~FixedClock();
    FixedClock(const FixedClock&) = delete;
    FixedClock& operator=(const FixedClock&) = delete;

private:
    const std::optional<long long> old;
};

// Until the end of its scope TZ has this value, or none where it is null.
class FixedZone
{
public:
    static constexpr bool WORKS = true;
    explicit FixedZone(const char* name);
    ~FixedZone();
    FixedZone(const FixedZone&) = delete;
    FixedZone& operator=(const FixedZone&) = delete;

private:
    std::optional<std::string> old;
};

#endif
