// Ostra/Frame/Interlocked.h: steps of a count that several threads may change.
#pragma once

#include <windows.h>

#include <ext/atomicity.h>

// Changes by one; the results are the new values.
//
// An interlocked step waits for the memory. A process that has one thread only is spared that: a
// plain step then does the same.
class CT_Interlocked
{
public:
    static LONG si4_Inc(LONG& i4_Value)
    {
        return sb_IsAlone() ? i4_Value = LONG(DWORD(i4_Value) + 1)
                            : InterlockedIncrement(&i4_Value);
    }
    static LONG si4_Dec(LONG& i4_Value)
    {
        return sb_IsAlone() ? i4_Value = LONG(DWORD(i4_Value) - 1)
                            : InterlockedDecrement(&i4_Value);
    }

private:
    // What the C library knows; where it doesn't tell, false.
    static bool sb_IsAlone() { return __gnu_cxx::__is_single_threaded(); }
};
