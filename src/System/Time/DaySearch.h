// System/Time/DaySearch.h: a date of a day number, found by trial. Internal.
#pragma once

// The search that says which date a day number is, for all calendars alike. A calendar answers the
// days of its years by a formula where it has one; what lies outside of those goes this way, and
// the results of the formulas are those of this search.
//
// Before a calendar's first year the parts of day numbers are cut off towards zero, so the search
// ends in dates that no calendar has: a thirteenth month, or a day before the first.
//
// A t_Date has the members i_Year, i_Month and i_Day, i8_DayNumber and i_DaysInMonth.
class CT_DaySearch
{
public:
    // Goes up from the year to the last one whose first day, that of month i_First, isn't behind
    // the day. The year itself is passed over.
    template <typename t_Date>
    static void sv_Year(t_Date* pco_Date, long long i8_Day, int i_First);
    // Goes up from the month to the first one whose last day isn't before the day, and sets the
    // day. The month itself is passed over.
    template <typename t_Date>
    static void sv_MonthAndDay(t_Date* pco_Date, long long i8_Day, int i_Month);
};

template <typename t_Date>
void CT_DaySearch::sv_Year(t_Date* pco_Date, long long i8_Day, int i_First)
{
    do {
        ++pco_Date->i_Year;
        pco_Date->i_Month = i_First;
        pco_Date->i_Day = 1;
    } while (pco_Date->i8_DayNumber() <= i8_Day);
    --pco_Date->i_Year;
}

template <typename t_Date>
void CT_DaySearch::sv_MonthAndDay(t_Date* pco_Date, long long i8_Day, int i_Month)
{
    pco_Date->i_Month = i_Month;
    do {
        ++pco_Date->i_Month;
        pco_Date->i_Day = pco_Date->i_DaysInMonth();
    } while (pco_Date->i8_DayNumber() < i8_Day);
    pco_Date->i_Day = 1;
    pco_Date->i_Day = static_cast<int>(i8_Day - pco_Date->i8_DayNumber() + 1);
}
