// System/Timer/Timer.h: a stopwatch on the system's tick count.
#pragma once

#include <Ostra/Frame/Export.h>

#include <cstddef>

// One instant of the system's tick count, and its distance from another or from now.
//
// The count is of 32 bits and begins anew after some 49.7 days. Nothing compensates for this: a
// distance is the larger instant less the smaller one, whichever is the later.
//
// Units:   the count is milliseconds since the system started; distances are whole numbers of the
//          unit that the name tells, cut off. A null timer stands for now.
// Reports: nothing; 60006 where a new timer finds the heap exhausted.
// Threads: one thread at a time.
class OSTRA_API CT_Timer
{
public:
    // ---- Construction -----------------------------------------------------------------------

    // Now.
    CT_Timer() { v_Init(); }
    explicit CT_Timer(const CT_Timer* pcco_Timer) { v_Init(pcco_Timer); }
    CT_Timer(const CT_Timer& co_Other) = default;
    CT_Timer& operator=(const CT_Timer& co_Other) = default;
    ~CT_Timer() { v_Exit(); }

    // Like the constructors.
    void v_Set() { v_Init(); }
    void v_Set(const CT_Timer* pcco_Timer) { v_Init(pcco_Timer); }

    static void* operator new(std::size_t n_Size) noexcept;
    static void* operator new(std::size_t, void* pv_Place) noexcept { return pv_Place; }
    static void operator delete(void* pv_Object);

    // ---- Access -----------------------------------------------------------------------------

    unsigned n_MillisecondsBetween(const CT_Timer* pcco_Other) const;
    unsigned n_SecondsBetween(const CT_Timer* pcco_Other) const;
    unsigned n_MinutesBetween(const CT_Timer* pcco_Other) const;
    unsigned n_HoursBetween(const CT_Timer* pcco_Other) const;
    unsigned n_DaysBetween(const CT_Timer* pcco_Other) const;
    // The distance in parts, each less than one of the next.
    void v_Delta(unsigned* pn_Milliseconds, unsigned* pn_Seconds, unsigned* pn_Minutes,
                 unsigned* pn_Hours, unsigned* pn_Days, const CT_Timer* pcco_Other) const;

private:
    void v_Init();
    void v_Init(const CT_Timer* pcco_Timer) { n_Ticks = pcco_Timer->n_Ticks; }
    void v_Exit() {}

    unsigned n_Ticks; // the instant
};
