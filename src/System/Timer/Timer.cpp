// System/Timer/Timer.cpp: a stopwatch on the system's tick count.
#include <System/Timer/Timer.h>

#include <Ostra/Frame/Report.h>

#include <windows.h>

#include <cstdlib>

static constexpr char qccz_Source[] = "System/Timer/Timer";

static constexpr unsigned SECOND = 1000;
static constexpr unsigned MINUTE = 60 * SECOND;
static constexpr unsigned HOUR = 60 * MINUTE;
static constexpr unsigned DAY = 24 * HOUR;

void* CT_Timer::operator new(std::size_t n_Size) noexcept
{
    return CT_Report::spv_New(n_Size, qccz_Source);
}

void CT_Timer::operator delete(void* pv_Object)
{
    std::free(pv_Object);
}

void CT_Timer::v_Init()
{
    n_Ticks = GetTickCount();
}

unsigned CT_Timer::n_MillisecondsBetween(const CT_Timer* pcco_Other) const
{
    const unsigned n_Other = pcco_Other ? pcco_Other->n_Ticks : GetTickCount();
    // Kept: the plain difference of the two counts, also when the count began anew between them.
    return n_Other > n_Ticks ? n_Other - n_Ticks : n_Ticks - n_Other;
}

unsigned CT_Timer::n_SecondsBetween(const CT_Timer* pcco_Other) const
{
    return n_MillisecondsBetween(pcco_Other) / SECOND;
}

unsigned CT_Timer::n_MinutesBetween(const CT_Timer* pcco_Other) const
{
    return n_MillisecondsBetween(pcco_Other) / MINUTE;
}

unsigned CT_Timer::n_HoursBetween(const CT_Timer* pcco_Other) const
{
    return n_MillisecondsBetween(pcco_Other) / HOUR;
}

unsigned CT_Timer::n_DaysBetween(const CT_Timer* pcco_Other) const
{
    return n_MillisecondsBetween(pcco_Other) / DAY;
}

void CT_Timer::v_Delta(unsigned* pn_Milliseconds, unsigned* pn_Seconds, unsigned* pn_Minutes,
                       unsigned* pn_Hours, unsigned* pn_Days, const CT_Timer* pcco_Other) const
{
    const unsigned n_Distance = n_MillisecondsBetween(pcco_Other);
    *pn_Milliseconds = n_Distance % SECOND;
    *pn_Seconds = n_Distance / SECOND % 60;
    *pn_Minutes = n_Distance / MINUTE % 60;
    *pn_Hours = n_Distance / HOUR % 24;
    *pn_Days = n_Distance / DAY;
}
