// System/Time/HijriDate.cpp
#include <System/Time/HijriDate.h>

#include <System/Time/DaySearch.h>
#include <System/Time/GregorianDate.h>

static constexpr int EPOCH = 227014;

// Eleven years of thirty have a leap day.
static bool b_IsLeapYear(int i_Year)
{
    return (11LL * i_Year + 14) % 30 < 11;
}

CT_HijriDate::CT_HijriDate(int i_DayNumber) : i_Year(0), i_Month(0), i_Day(0)
{
    if (i_DayNumber <= EPOCH)
        return;
    if (i_DayNumber <= CT_GregorianDate::LAST_DAY)
        v_Compute(static_cast<unsigned>(i_DayNumber - EPOCH - 1));
    else
        v_Search(i_DayNumber);
}

// Thirty years have 10,631 days, a year's months 30 and 29 in turn. A leap day belongs to the
// twelfth.
void CT_HijriDate::v_Compute(unsigned n_Days)
{
    const unsigned n_Year = (30 * n_Days + 10646) / 10631;
    const unsigned n_YearDay = n_Days - 354 * (n_Year - 1) - (3 + 11 * n_Year) / 30;
    const unsigned n_Month = n_YearDay == 354 ? 11 : 2 * n_YearDay / 59;
    i_Year = static_cast<int>(n_Year);
    i_Month = static_cast<int>(n_Month + 1);
    i_Day = static_cast<int>(n_YearDay - (59 * n_Month + 1) / 2 + 1);
}

void CT_HijriDate::v_Search(int i_DayNumber)
{
    i_Year = (i_DayNumber - EPOCH) / 355 - 1;
    CT_DaySearch::sv_Year(this, i_DayNumber, 1);
    CT_DaySearch::sv_MonthAndDay(this, i_DayNumber, 0);
}

int CT_HijriDate::i_DaysInMonth() const
{
    return i_Month % 2 != 0 || (i_Month == 12 && b_IsLeapYear(i_Year)) ? 30 : 29;
}

long long CT_HijriDate::i8_DayNumber() const
{
    const long long i8_Year = i_Year;
    return i_Day + 29LL * (i_Month - 1LL) + i_Month / 2 + 354 * (i8_Year - 1) +
           (3 + 11 * i8_Year) / 30 + EPOCH;
}
