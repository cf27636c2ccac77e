// System/Time/Time.cpp
#include <System/Time/Time.h>

#include <System/Time/Clock.h>
#include <System/Time/GregorianDate.h>

#include <windows.h>

static constexpr int DAY = 86400;
static constexpr int HOUR = 3600;
static constexpr int MINUTE = 60;
static constexpr int TM_YEAR = 1900; // the year from which a tm counts
static constexpr unsigned KEEP = 0xFFFFFFFF;

// ---- Construction -------------------------------------------------------------------------

void CT_Time::v_Init()
{
    const SYSTEMTIME so_Default = {1997, 1, 0, 1, 0, 0, 0, 0};
    n_Time = sn_Convert(&so_Default);
    n8_Abs = sn8_Convert(&so_Default);
}

void CT_Time::v_Init(unsigned int n_NewTime)
{
    n_Time = n_NewTime;
    n8_Abs = sn8_Convert(n_NewTime);
}

void CT_Time::v_Init(unsigned long long n8_NewAbs)
{
    n8_Abs = n8_NewAbs;
    n_Time = sn_Convert(n8_NewAbs);
}

void CT_Time::v_SetTime()
{
    v_Init(sn_GetTime());
}

static void v_Change(int* pi_Field, unsigned n_New, unsigned n_Less)
{
    if (n_New != KEEP)
        *pi_Field = static_cast<int>(n_New - n_Less);
}

void CT_Time::v_Set(unsigned int n_Year, unsigned int n_Month, unsigned int n_Day,
                    unsigned int n_Hour, unsigned int n_Minute, unsigned int n_Second)
{
    const tm* pcso_Now = CT_Clock::spcso_Local(n_Time);
    if (!pcso_Now)
        return;
    tm so_Date = *pcso_Now;
    const unsigned n_Century = n_Year < 36 ? 2000 : n_Year < 100 ? 1900 : 0;
    v_Change(&so_Date.tm_year, n_Year, TM_YEAR - n_Century);
    v_Change(&so_Date.tm_mon, n_Month, 1);
    // Kept: one less here, too; what is stored is the day before.
    v_Change(&so_Date.tm_mday, n_Day, 1);
    v_Change(&so_Date.tm_hour, n_Hour, 0);
    v_Change(&so_Date.tm_min, n_Minute, 0);
    v_Change(&so_Date.tm_sec, n_Second, 0);
    n_Time = CT_Clock::sn_Make(&so_Date);
    n8_Abs = sn8_Date2Abs(&so_Date);
}

void CT_Time::v_SetDate(unsigned int n_Year, unsigned int n_Month, unsigned int n_Day)
{
    v_Set(n_Year, n_Month, n_Day, KEEP, KEEP, KEEP);
}

void CT_Time::v_SetTime(unsigned int n_Hour, unsigned int n_Minute, unsigned int n_Second)
{
    v_Set(KEEP, KEEP, KEEP, n_Hour, n_Minute, n_Second);
}

// ---- Now, and from form to form -----------------------------------------------------------

unsigned int CT_Time::sn_GetTime()
{
    return CT_Clock::sn_Now();
}

unsigned long long CT_Time::sn8_GetTime()
{
    tm so_Now = CT_Clock::sso_Now();
    return sn8_Date2Abs(&so_Now);
}

unsigned long long CT_Time::sn8_Convert(unsigned int n_Moment)
{
    const tm* pcso_Local = CT_Clock::spcso_Local(n_Moment);
    if (!pcso_Local)
        return 0;
    tm so_Date = *pcso_Local;
    return sn8_Date2Abs(&so_Date);
}

unsigned int CT_Time::sn_Convert(unsigned long long n8_Moment)
{
    return CT_Clock::sn_Make(spso_Abs2Date(n8_Moment));
}

// ---- The platform's structure -------------------------------------------------------------

void CT_Time::sv_Convert(tm* pso_Date, const _SYSTEMTIME* pcso_System)
{
    *pso_Date = {};
    pso_Date->tm_year = pcso_System->wYear - TM_YEAR;
    pso_Date->tm_mon = pcso_System->wMonth - 1;
    pso_Date->tm_mday = pcso_System->wDay;
    pso_Date->tm_hour = pcso_System->wHour;
    pso_Date->tm_min = pcso_System->wMinute;
    pso_Date->tm_sec = pcso_System->wSecond;
}

void CT_Time::sv_Convert(_SYSTEMTIME* pso_System, const tm* pcso_Date)
{
    *pso_System = {};
    if (!pcso_Date)
        return;
    pso_System->wYear = static_cast<WORD>(pcso_Date->tm_year + TM_YEAR);
    pso_System->wMonth = static_cast<WORD>(pcso_Date->tm_mon + 1);
    pso_System->wDay = static_cast<WORD>(pcso_Date->tm_mday);
    pso_System->wHour = static_cast<WORD>(pcso_Date->tm_hour);
    pso_System->wMinute = static_cast<WORD>(pcso_Date->tm_min);
    pso_System->wSecond = static_cast<WORD>(pcso_Date->tm_sec);
    pso_System->wDayOfWeek = static_cast<WORD>(pcso_Date->tm_wday);
}

unsigned int CT_Time::sn_Convert(const _SYSTEMTIME* pcso_System)
{
    tm so_Date;
    sv_Convert(&so_Date, pcso_System);
    // Kept: asked of the present moment, so that a winter's date is an hour early in summer.
    so_Date.tm_isdst = CT_Clock::sso_Now().tm_isdst;
    return CT_Clock::sn_Make(&so_Date);
}

unsigned long long CT_Time::sn8_Convert(const _SYSTEMTIME* pcso_System)
{
    tm so_Date;
    sv_Convert(&so_Date, pcso_System);
    so_Date.tm_isdst = CT_Clock::sb_HasDaylight();
    return sn8_Date2Abs(&so_Date);
}

void CT_Time::sv_Convert(_SYSTEMTIME* pso_System, LONG i4_Moment)
{
    sv_Convert(pso_System, CT_Clock::spcso_Local(static_cast<unsigned>(i4_Moment)));
}

void CT_Time::sv_Convert(_SYSTEMTIME* pso_System, unsigned long long n8_Moment)
{
    sv_Convert(pso_System, spso_Abs2Date(n8_Moment));
}

// ---- The C library's structure ------------------------------------------------------------

unsigned long long CT_Time::sn8_Date2Abs(tm* pso_Date)
{
    if (!pso_Date)
        return 0;
    const int i_Zone = CT_Clock::si_Zone();
    // Day 0 is the first one here.
    CT_GregorianDate co_Date(pso_Date->tm_year, pso_Date->tm_mon, pso_Date->tm_mday);
    co_Date.i_Year = static_cast<int>(static_cast<unsigned>(co_Date.i_Year) + TM_YEAR);
    co_Date.i_Month = static_cast<int>(static_cast<unsigned>(co_Date.i_Month) + 1);
    const long long i8_Days = static_cast<int>(co_Date.i8_DayNumber() - 1);
    return static_cast<unsigned long long>(i8_Days * DAY + 1LL * pso_Date->tm_hour * HOUR +
                                           1LL * pso_Date->tm_min * MINUTE + pso_Date->tm_sec +
                                           static_cast<int>(n_GetDST(pso_Date)) + i_Zone);
}

static tm so_LastDate; // what spso_Abs2Date gave last

tm* CT_Time::spso_Abs2Date(unsigned long long n8_Moment)
{
    const int i_Zone = CT_Clock::si_Zone();
    // Kept: the correction for daylight time is that of the date before.
    const int i_Daylight = static_cast<int>(n_GetDST(&so_LastDate));
    const auto i8_Seconds = static_cast<long long>(
        n8_Moment - static_cast<unsigned long long>(static_cast<long long>(i_Zone) + i_Daylight));
    const long long i8_Days = i8_Seconds / DAY;
    const int i_Rest = static_cast<int>(i8_Seconds - i8_Days * DAY);
    const CT_GregorianDate co_Date(static_cast<int>(i8_Days + 1));
    so_LastDate.tm_isdst = CT_Clock::sso_Now().tm_isdst;
    so_LastDate.tm_year = co_Date.i_Year;
    so_LastDate.tm_mon = co_Date.i_Month - 1;
    so_LastDate.tm_mday = co_Date.i_Day;
    so_LastDate.tm_hour = i_Rest / HOUR;
    so_LastDate.tm_min = i_Rest % HOUR / MINUTE;
    so_LastDate.tm_sec = i_Rest % MINUTE;
    so_LastDate.tm_wday = -1;
    CT_Calendar::sv_AddYearWeekday(&so_LastDate);
    so_LastDate.tm_year -= TM_YEAR;
    return &so_LastDate;
}

unsigned int CT_Time::n_GetDST(tm* pso_Date)
{
    tm so_Copy = *pso_Date;
    so_Copy.tm_year = 80;
    if (CT_Clock::sn_Make(&so_Copy) == CT_Clock::NONE || so_Copy.tm_isdst <= 0)
        return 0;
    // Kept: both dates are told as standard time, so the distance is what it is without daylight
    // time, 122 days, and the result 0.
    tm so_March = {}, so_July = {};
    so_March.tm_year = so_July.tm_year = 80;
    so_March.tm_mday = so_July.tm_mday = 1;
    so_March.tm_mon = 2;
    so_July.tm_mon = 6;
    return CT_Clock::sn_Make(&so_March) - CT_Clock::sn_Make(&so_July) + 122 * DAY;
}
