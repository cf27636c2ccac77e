// System/Time/GregorianDate.h: a day of the proleptic Gregorian calendar. Internal.
#pragma once

// A year, a month that counts from 1, and a day of it. Nothing checks that the calendar has it.
//
// Day 1 is 1 January of year 1, and a day number modulo 7 is the day of the week, 0 = Sunday.
class CT_GregorianDate
{
public:
    // The days of the years 1 to 9999.
    static constexpr int FIRST_DAY = 1;
    static constexpr int LAST_DAY = 3652059;

    CT_GregorianDate(int i_NewYear, int i_NewMonth, int i_NewDay)
        : i_Year(i_NewYear),
          i_Month(i_NewMonth),
          i_Day(i_NewDay)
    {}
    // The date of a day number.
    explicit CT_GregorianDate(int i_DayNumber);

    long long i8_DayNumber() const;
    // 31 for a month that the calendar hasn't.
    int i_DaysInMonth() const;

    int i_Year;
    int i_Month;
    int i_Day;

private:
    void v_Compute(unsigned n_DayNumber);
    void v_Search(int i_DayNumber);
};
