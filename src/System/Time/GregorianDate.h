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
    // How far the day is behind 1 January.
    long long i8_DayOfYear() const;
    // 31 for a month that the calendar hasn't.
    int i_DaysInMonth() const;
    static bool sb_IsLeapYear(int i_Year)
    {
        return (i_Year % 4 == 0 && i_Year % 100 != 0) || i_Year % 400 == 0;
    }

    int i_Year;
    int i_Month;
    int i_Day;

private:
    void v_Compute(unsigned n_DayNumber);
    void v_Search(int i_DayNumber);

    // The days before each month of a year without a leap day, from month 0 on.
    static constexpr short san2_DaysBefore[] = {0,   0,   31,  59,  90,  120, 151,
                                                181, 212, 243, 273, 304, 334, 365};
};

inline CT_GregorianDate::CT_GregorianDate(int i_DayNumber)
{
    if (i_DayNumber >= FIRST_DAY && i_DayNumber <= LAST_DAY)
        v_Compute(static_cast<unsigned>(i_DayNumber));
    else
        v_Search(i_DayNumber);
}

// Years that begin with March have the leap day at their end, and months of 31 and 30 days in turn,
// five of them 153 days long.
inline void CT_GregorianDate::v_Compute(unsigned n_DayNumber)
{
    const unsigned n_Days = n_DayNumber + 305; // behind 1 March of year 0
    const unsigned n_Century = (4 * n_Days + 3) / 146097;
    const unsigned n_CenturyDay = n_Days - 146097 * n_Century / 4;
    const unsigned n_Year = (4 * n_CenturyDay + 3) / 1461;
    const unsigned n_YearDay = n_CenturyDay - 1461 * n_Year / 4;
    const unsigned n_Month = (5 * n_YearDay + 2) / 153;
    const unsigned n_NextYear = n_Month >= 10;
    i_Year = static_cast<int>(100 * n_Century + n_Year + n_NextYear);
    i_Month = static_cast<int>(n_Month + 3 - 12 * n_NextYear);
    i_Day = static_cast<int>(n_YearDay - (153 * n_Month + 2) / 5 + 1);
}

inline long long CT_GregorianDate::i8_DayOfYear() const
{
    long long i8_Result = i_Day - 1LL;
    if (i_Month > 0)
        i8_Result += san2_DaysBefore[i_Month < 13 ? i_Month : 13];
    if (i_Month > 2)
        i8_Result += sb_IsLeapYear(i_Year);
    // Kept: months beyond the twelfth are counted too, each of 31 days.
    if (i_Month > 13)
        i8_Result += (i_Month - 13) * 31LL;
    return i8_Result;
}

inline long long CT_GregorianDate::i8_DayNumber() const
{
    const long long i8_Before = static_cast<long long>(i_Year) - 1;
    return i8_Before * 365 + i8_Before / 4 - i8_Before / 100 + i8_Before / 400 + i8_DayOfYear() + 1;
}
