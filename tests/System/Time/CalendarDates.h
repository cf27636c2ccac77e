// tests/System/Time/CalendarDates.h: dates of CT_Calendar as values.
#pragma once

#include <System/Time/Calendar.h>

#include <gtest/gtest.h>

#include <ctime>
#include <ostream>

namespace calendar
{
// A date as the class counts: the whole year, months from 0. What isn't told is 99.
inline std::tm Tm(int year, int month, int day, int weekday = 99)
{
    std::tm date{};
    date.tm_year = year;
    date.tm_mon = month - 1;
    date.tm_mday = day;
    date.tm_wday = weekday;
    date.tm_yday = 99;
    date.tm_hour = 11;
    date.tm_isdst = 5;
    return date;
}

struct Date
{
    int year, month, day;
    bool operator==(const Date&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Date& date)
{
    return out << date.year << "-" << date.month << "-" << date.day;
}

inline Date Of(const std::tm& date)
{
    return {date.tm_year, date.tm_mon + 1, date.tm_mday};
}

// The date of a day number: a day of January of year 1, however far, is counted on from it.
inline std::tm ByNumber(int day, CT_Calendar::et_ID calendar)
{
    std::tm date = Tm(1, 1, day);
    CT_Calendar::sv_Gregorian2Alternate(&date, calendar);
    return date;
}

// The Gregorian date of a day number, by way of a day of the first Hijri month.
inline std::tm GregorianByNumber(int day, int weekday = 99)
{
    std::tm date = Tm(1, 1, day - 227014, weekday);
    CT_Calendar::sv_Alternate2Gregorian(&date, CT_Calendar::id_Hijri);
    return date;
}

// The day number of a date: what is left as the day of the week of its Hijri date, less 1.
inline int NumberOf(std::tm gregorian)
{
    CT_Calendar::sv_Gregorian2Alternate(&gregorian, CT_Calendar::id_Hijri);
    return gregorian.tm_wday - 1;
}

inline int NumberOf(std::tm date, CT_Calendar::et_ID calendar)
{
    CT_Calendar::sv_Alternate2Gregorian(&date, calendar);
    return NumberOf(date);
}

constexpr int LAST_DAY = 3652059; // 31 December 9999
} // namespace calendar
