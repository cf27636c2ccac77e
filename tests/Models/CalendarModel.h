// tests/Models/CalendarModel.h: the calendars as they are told, by search and in plain arithmetic.
#pragma once

namespace calendar_model
{
using Number = long long;

struct Day
{
    Number year, month, day;
    bool operator==(const Day&) const = default;
};

inline bool IsLeapGregorian(Number y)
{
    return y % 400 == 0 || (y % 4 == 0 && y % 100 != 0);
}

struct Gregorian
{
    static constexpr int FIRST_MONTH = 1;

    static Number DaysIn(Number y, Number m)
    {
        if (m == 2)
            return IsLeapGregorian(y) ? 29 : 28;
        return m == 4 || m == 6 || m == 9 || m == 11 ? 30 : 31;
    }
    static Number Of(const Day& d)
    {
        Number n = d.day;
        for (Number m = d.month - 1; m > 0; --m)
            n += DaysIn(d.year, m);
        return n + (d.year - 1) * 365 + (d.year - 1) / 4 - (d.year - 1) / 100 + (d.year - 1) / 400;
    }
    static Number FirstYear(Number n) { return n / 366 - 1; }
    static Number FirstMonth(Number, Number) { return 0; }
};

struct Hijri
{
    static constexpr int FIRST_MONTH = 1;
    static constexpr Number EPOCH = 227014;

    static Number DaysIn(Number y, Number m)
    {
        return m % 2 != 0 || (m == 12 && (11 * y + 14) % 30 < 11) ? 30 : 29;
    }
    static Number Of(const Day& d)
    {
        return d.day + 29 * (d.month - 1) + d.month / 2 + 354 * (d.year - 1) +
               (3 + 11 * d.year) / 30 + EPOCH;
    }
    static Number FirstYear(Number n) { return (n - EPOCH) / 355 - 1; }
    static Number FirstMonth(Number, Number) { return 0; }
};

struct Hebrew
{
    static constexpr int FIRST_MONTH = 7;
    static constexpr Number EPOCH = -1373429;

    static bool IsLeap(Number y) { return (7 * y + 1) % 19 < 7; }
    static Number LastMonth(Number y) { return IsLeap(y) ? 13 : 12; }
    static Number Elapsed(Number y)
    {
        const Number months =
            235 * ((y - 1) / 19) + 12 * ((y - 1) % 19) + (7 * ((y - 1) % 19) + 1) / 19;
        const Number parts = 204 + 793 * (months % 1080);
        const Number hours = 5 + 12 * months + 793 * (months / 1080) + parts / 1080;
        Number day = 1 + 29 * months + hours / 24;
        const Number p = 1080 * (hours % 24) + parts % 1080;
        if (p >= 19440)
            ++day;
        else if (day % 7 == 2 && p >= 9924 && !IsLeap(y))
            ++day;
        else if (day % 7 == 1 && p >= 16789 && IsLeap(y - 1))
            ++day;
        if (day % 7 == 0 || day % 7 == 3 || day % 7 == 5)
            ++day;
        return day;
    }
    static Number DaysIn(Number y, Number m)
    {
        const Number length = Elapsed(y + 1) - Elapsed(y);
        if (m == 2 || m == 4 || m == 6 || m == 10 || m == 13)
            return 29;
        if ((m == 8 && length % 10 != 5) || (m == 9 && length % 10 == 3) || (m == 12 && !IsLeap(y)))
            return 29;
        return 30;
    }
    static Number Of(const Day& d)
    {
        Number n = d.day;
        if (d.month < 7) {
            for (Number m = 7; m <= LastMonth(d.year); ++m)
                n += DaysIn(d.year, m);
            for (Number m = 1; m < d.month; ++m)
                n += DaysIn(d.year, m);
        }
        for (Number m = 7; m < d.month; ++m)
            n += DaysIn(d.year, m);
        return n + Elapsed(d.year) + EPOCH;
    }
    static Number FirstYear(Number n) { return (n - 1373429) / 366 - 1; }
    static Number FirstMonth(Number y, Number n) { return Of({y, 1, 1}) <= n ? 0 : 6; }
};

// The month and the day of a day number in a year that the search has found.
template <typename Calendar>
Day MonthAndDay(Number year, Number n)
{
    Day d{year, Calendar::FirstMonth(year, n), 1};
    do {
        ++d.month;
        d.day = Calendar::DaysIn(d.year, d.month);
    } while (Calendar::Of(d) < n);
    d.day = 1;
    d.day = n - Calendar::Of(d) + 1;
    return d;
}

// The whole search.
template <typename Calendar>
Day Search(Number n)
{
    Number year = Calendar::FirstYear(n);
    do
        ++year;
    while (Calendar::Of({year, Calendar::FIRST_MONTH, 1}) <= n);
    return MonthAndDay<Calendar>(year - 1, n);
}

template <>
inline Day Search<Hijri>(Number n)
{
    if (n <= Hijri::EPOCH)
        return {0, 0, 0};
    Number year = Hijri::FirstYear(n);
    do
        ++year;
    while (Hijri::Of({year, 1, 1}) <= n);
    return MonthAndDay<Hijri>(year - 1, n);
}
} // namespace calendar_model
