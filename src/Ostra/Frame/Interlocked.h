// Ostra/Frame/Interlocked.h: steps of a count that several threads may change.
#pragma once

#include <Ostra/Frame/Platform.h>

#include <ext/atomicity.h>
#include <atomic>

// Changes by one, whose results are the new values, and by several at once.
//
// An interlocked step waits for the memory. A process that has one thread only is spared that: a
// plain step then does the same.
class CT_Interlocked
{
public:
    static LONG si4_Inc(LONG& i4_Value)
    {
        return sb_IsAlone() ? i4_Value = LONG(DWORD(i4_Value) + 1)
                            : std::atomic_ref<LONG>(i4_Value).fetch_add(1) + 1;
    }
    static LONG si4_Dec(LONG& i4_Value)
    {
        return sb_IsAlone() ? i4_Value = LONG(DWORD(i4_Value) - 1)
                            : std::atomic_ref<LONG>(i4_Value).fetch_sub(1) - 1;
    }
    static void sv_Add(LONG& i4_Value, LONG i4_Count)
    {
        if (sb_IsAlone())
            i4_Value = LONG(DWORD(i4_Value) + DWORD(i4_Count));
        else if (i4_Count)
            std::atomic_ref<LONG>(i4_Value).fetch_add(i4_Count);
    }

private:
    // What the C library knows; where it doesn't tell, false.
    static bool sb_IsAlone() { return __gnu_cxx::__is_single_threaded(); }
};
