// System/Time/GregorianDate.cpp
#include <System/Time/GregorianDate.h>

#include <System/Time/DaySearch.h>

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
        return sb_IsLeapYear(i_Year) ? 29 : 28;
    case 4:
    case 6:
    case 9:
    case 11:
        return 30;
    default:
        return 31;
    }
}
