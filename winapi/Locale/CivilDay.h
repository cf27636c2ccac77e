// winapi/Locale/CivilDay.h: days of the Gregorian calendar, reckoned before its beginning as well. Internal.
#pragma once

namespace winapi
{
struct CivilDay
{
    long long year;
    int month; // 1 is January.
    int day;
};

// A year that begins in March ends with the day that leap years have more.
constexpr int DAYS_TO_MARCH_1970 = 719468;

// Days since the beginning of 1970; the month may lie in another year.
constexpr long long DayNumber(long long year, long long month, long long day)
{
    const long long months = year * 12 + month - 3;
    const long long marchYear = months >= 0 ? months / 12 : (months - 11) / 12;
    const long long era = marchYear >= 0 ? marchYear / 400 : (marchYear - 399) / 400;
    const long long yearOfEra = marchYear - era * 400;
    const long long dayOfYear = ((months - marchYear * 12) * 153 + 2) / 5 + day - 1;
    return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear -
           DAYS_TO_MARCH_1970;
}

constexpr CivilDay DateOfDay(long long number)
{
    const long long days = number + DAYS_TO_MARCH_1970;
    const long long era = (days >= 0 ? days : days - 146096) / 146097;
    const int dayOfEra = static_cast<int>(days - era * 146097);
    const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int month = (5 * dayOfYear + 2) / 153;
    return {era * 400 + yearOfEra + (month >= 10), month < 10 ? month + 3 : month - 9,
            dayOfYear - (153 * month + 2) / 5 + 1};
}

// 0 is Sunday.
constexpr int WeekDay(long long number)
{
    return static_cast<int>(((number + 4) % 7 + 7) % 7);
}

constexpr bool IsLeapYear(long long year)
{
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

constexpr int DaysOfMonth(long long year, int month)
{
    return month == 2 ? 28 + IsLeapYear(year) : 30 + ((month ^ (month >> 3)) & 1);
}
} // namespace winapi
