// System/Time/HijriDate.h: a day of the Hijri calendar by its tables. Internal.
#pragma once

// A year, a month that counts from 1, and a day of it. Nothing checks that the calendar has it.
//
// Day numbers are those of CT_GregorianDate. The calendar begins behind day 227014; days up to that
// have year, month and day 0.
class CT_HijriDate
{
public:
    CT_HijriDate(int i_NewYear, int i_NewMonth, int i_NewDay)
        : i_Year(i_NewYear),
          i_Month(i_NewMonth),
          i_Day(i_NewDay)
    {}
    // The date of a day number.
    explicit CT_HijriDate(int i_DayNumber);

    long long i8_DayNumber() const;
    int i_DaysInMonth() const;

    int i_Year;
    int i_Month;
    int i_Day;

private:
    void v_Compute(unsigned n_Days);
    void v_Search(int i_DayNumber);
};
