// examples/almanac/Calendars.h: the days of a month in three calendars.
#pragma once

#include <string>
#include <vector>

namespace almanac
{
// How names of months are written: those of the Hebrew and the Hijri calendar in their own script,
// or all of them in Latin letters.
enum Script
{
    OWN_SCRIPT,
    LATIN
};

// A date of one calendar, as it is shown.
struct Date
{
    int day;
    std::string month;
    int year; // 0 for a day that the calendar doesn't have
};

struct Day
{
    int number; // of the month
    std::string weekday;
    Date hebrew;
    Date hijri;
};

struct Month
{
    std::string name; // with its year
    std::vector<Day> days;
};

// The month of a Gregorian year from 1 to 9999, with the names of a locale.
Month MakeMonth(int year, int month, unsigned locale, Script script);
} // namespace almanac
