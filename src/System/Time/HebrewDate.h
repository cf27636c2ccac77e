// System/Time/HebrewDate.h: a day of the Hebrew calendar. Internal.
#pragma once

// A year, a month, and a day of it. Nothing checks that the calendar has it.
//
// Months count from Nisan = 1 to Adar, or Adar II, = 12 or 13. The year changes at Tishri, month 7.
// Day numbers are those of CT_GregorianDate.
class CT_HebrewDate
{
public:
    CT_HebrewDate(int i_NewYear, int i_NewMonth, int i_NewDay)
        : i_Year(i_NewYear),
          i_Month(i_NewMonth),
          i_Day(i_NewDay)
    {}
    // The date of a day number.
    explicit CT_HebrewDate(int i_DayNumber);

    long long i8_DayNumber() const;
    int i_DaysInMonth() const;

    int i_Year;
    int i_Month;
    int i_Day;

private:
    void v_Compute(int i_DayNumber);
    void v_Search(int i_DayNumber);
};
