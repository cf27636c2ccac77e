// System/Time/GregorianDate.cpp
#include <System/Time/GregorianDate.h>

#include <System/Time/DaySearch.h>

static bool b_IsLeapYear(int i_Year)
{
    return (i_Year % 4 == 0 && i_Year % 100 != 0) || i_Year % 400 == 0;
}

CT_GregorianDate::CT_GregorianDate(int i_DayNumber)
{
    if (i_DayNumber >= FIRST_DAY && i_DayNumber <= LAST_DAY)
        v_Compute(static_cast<unsigned>(i_DayNumber));
    else
        v_Search(i_DayNumber);
}

// Years that begin with March have the leap day at their end, and months of 31 and 30 days in turn,
// five of them 153 days long.
void CT_GregorianDate::v_Compute(unsigned n_DayNumber)
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

void CT_GregorianDate::v_Search(int i_DayNumber)
{
    i_Year = i_DayNumber / 366 - 1;
    CT_DaySearch::sv_Year(this, i_DayNumber, 1);
    CT_DaySearch::sv_MonthAndDay(this, i_DayNumber, 0);
}

int CT_GregorianDate::i_DaysInMonth() const
{
    switch (i_Month) {
    case 2:
        return b_IsLeapYear(i_Year) ? 29 : 28;
    case 4:
    case 6:
    case 9:
    case 11:
        return 30;
    default:
        return 31;
    }
}

// The days before each month of a year without a leap day, from month 0 on.
static constexpr short an2_DaysBefore[] = {0,   0,   31,  59,  90,  120, 151,
                                           181, 212, 243, 273, 304, 334, 365};

long long CT_GregorianDate::i8_DayNumber() const
{
    const long long i8_Before = static_cast<long long>(i_Year) - 1;
    long long i8_Result =
        i_Day + i8_Before * 365 + i8_Before / 4 - i8_Before / 100 + i8_Before / 400;
    if (i_Month > 0)
        i8_Result += an2_DaysBefore[i_Month < 13 ? i_Month : 13];
    if (i_Month > 2)
        i8_Result += b_IsLeapYear(i_Year);
    // Kept: months beyond the twelfth are counted too, each of 31 days.
    if (i_Month > 13)
        i8_Result += (i_Month - 13) * 31LL;
    return i8_Result;
}
