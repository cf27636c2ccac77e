// System/Time/HebrewDate.cpp
#include <System/Time/HebrewDate.h>

#include <System/Time/DaySearch.h>
#include <System/Time/GregorianDate.h>

static constexpr int EPOCH = -1373429;
static constexpr int FIRST_DAY = EPOCH + 2; // of year 1

static bool b_IsLeapYear(long long i8_Year)
{
    return (7 * i8_Year + 1) % 19 < 7;
}

// The days from the epoch to Tishri 1 of a year: those up to the mean new moon, in parts of which
// an hour has 1,080, and the days by which the feasts put the year off.
static long long i8_ElapsedDays(long long i8_Year)
{
    const long long i8_Cycles = (i8_Year - 1) / 19, i8_InCycle = (i8_Year - 1) % 19;
    const long long i8_Months = 235 * i8_Cycles + 12 * i8_InCycle + (7 * i8_InCycle + 1) / 19;
    const long long i8_Parts = 204 + 793 * (i8_Months % 1080);
    const long long i8_Hours = 5 + 12 * i8_Months + 793 * (i8_Months / 1080) + i8_Parts / 1080;
    const long long i8_InDay = 1080 * (i8_Hours % 24) + i8_Parts % 1080;
    long long i8_Day = 1 + 29 * i8_Months + i8_Hours / 24;
    const long long i8_Week = i8_Day % 7;
    if (i8_InDay >= 19440 || (i8_Week == 2 && i8_InDay >= 9924 && !b_IsLeapYear(i8_Year)) ||
        (i8_Week == 1 && i8_InDay >= 16789 && b_IsLeapYear(i8_Year - 1)))
        ++i8_Day;
    if (i8_Day % 7 == 0 || i8_Day % 7 == 3 || i8_Day % 7 == 5)
        ++i8_Day;
    return i8_Day;
}

// One year: its days and its months.
class CT_HebrewYear
{
public:
    explicit CT_HebrewYear(int i_Year)
        : CT_HebrewYear(i_Year, i8_ElapsedDays(i_Year), i8_ElapsedDays(i_Year + 1LL))
    {}
    CT_HebrewYear(int i_Year, long long i8_First, long long i8_Next)
        : i8_Elapsed(i8_First),
          b_Leap(b_IsLeapYear(i_Year)),
          b_LongHeshvan((i8_Next - i8_First) % 10 == 5),
          b_ShortKislev((i8_Next - i8_First) % 10 == 3)
    {}

    int i_LastMonth() const { return b_Leap ? 13 : 12; }
    int i_DaysInMonth(int i_Month) const;
    long long i8_DaysOfMonths(int i_From, int i_To) const;

    long long i8_Elapsed; // days before Tishri 1

private:
    bool b_Leap, b_LongHeshvan, b_ShortKislev;
};

int CT_HebrewYear::i_DaysInMonth(int i_Month) const
{
    switch (i_Month) {
    case 2:
    case 4:
    case 6:
    case 10:
    case 13:
        return 29;
    case 8:
        return b_LongHeshvan ? 30 : 29;
    case 9:
        return b_ShortKislev ? 29 : 30;
    case 12:
        return b_Leap ? 30 : 29;
    default:
        return 30;
    }
}

// The days of the months from one up to in front of another.
long long CT_HebrewYear::i8_DaysOfMonths(int i_From, int i_To) const
{
    long long i8_Days = 0;
    // Kept: months beyond the last are counted too, each of 30 days but for a thirteenth.
    if (i_To > 14) {
        i8_Days = 30LL * (i_To - 14);
        i_To = 14;
    }
    for (int i = i_From; i < i_To; ++i)
        i8_Days += i_DaysInMonth(i);
    return i8_Days;
}

CT_HebrewDate::CT_HebrewDate(int i_DayNumber)
{
    if (i_DayNumber >= FIRST_DAY && i_DayNumber <= CT_GregorianDate::LAST_DAY)
        v_Compute(i_DayNumber);
    else
        v_Search(i_DayNumber);
}

// 98,496 years have 35,975,351 days in the mean, so the year that this tells is the right one or a
// neighbour.
void CT_HebrewDate::v_Compute(int i_DayNumber)
{
    const long long i8_Days = static_cast<long long>(i_DayNumber) - EPOCH;
    i_Year = static_cast<int>(i8_Days * 98496 / 35975351) + 1;
    long long i8_First = i8_ElapsedDays(i_Year), i8_Next;
    if (i8_First >= i8_Days) {
        i8_Next = i8_First;
        i8_First = i8_ElapsedDays(--i_Year);
    } else if ((i8_Next = i8_ElapsedDays(i_Year + 1LL)) < i8_Days) {
        i8_First = i8_Next;
        i8_Next = i8_ElapsedDays(++i_Year + 1LL);
    }
    const CT_HebrewYear co_Year(i_Year, i8_First, i8_Next);
    i_Month = 7;
    i_Day = static_cast<int>(i8_Days - i8_First);
    for (int i_Length; i_Day > (i_Length = co_Year.i_DaysInMonth(i_Month)); i_Day -= i_Length)
        i_Month = i_Month == co_Year.i_LastMonth() ? 1 : i_Month + 1;
}

void CT_HebrewDate::v_Search(int i_DayNumber)
{
    // Kept: the epoch counts the wrong way, so the search begins thousands of years too early. That
    // decides only where days stand before year 1.
    i_Year = static_cast<int>((static_cast<long long>(i_DayNumber) + EPOCH) / 366 - 1);
    CT_DaySearch::sv_Year(this, i_DayNumber, 7);
    i_Month = 1;
    i_Day = 1;
    CT_DaySearch::sv_MonthAndDay(this, i_DayNumber, i8_DayNumber() <= i_DayNumber ? 0 : 6);
}

int CT_HebrewDate::i_DaysInMonth() const
{
    return CT_HebrewYear(i_Year).i_DaysInMonth(i_Month);
}

// The days from the first of a month, Nisan to Elul, up to the next year: whatever the year is,
// these months have 30 and 29 days in turn.
static int i_DaysToNewYear(int i_Month)
{
    return 177 - 29 * (i_Month - 1) - i_Month / 2;
}

long long CT_HebrewDate::i8_DayNumber() const
{
    if (i_Month == 7)
        return i_Day + i8_ElapsedDays(i_Year) + EPOCH;
    if (i_Month >= 1 && i_Month < 7 && i_Year >= 1)
        return i_Day + i8_ElapsedDays(i_Year + 1LL) + EPOCH - i_DaysToNewYear(i_Month);
    const CT_HebrewYear co_Year(i_Year);
    long long i8_Days = i_Day + co_Year.i8_Elapsed + EPOCH;
    if (i_Month > 7)
        return i8_Days + co_Year.i8_DaysOfMonths(7, i_Month);
    i8_Days += co_Year.i8_DaysOfMonths(7, co_Year.i_LastMonth() + 1);
    return i8_Days + co_Year.i8_DaysOfMonths(1, i_Month);
}
