// Ostra/Output/Refusal.h: how outputs report a call that they have nothing to do it with. Internal.
#pragma once

#include <Ostra/Frame/Report.h>

#include <windows.h>

// Reports a code of the system at the place of the caller; 0.
inline int b_Refuse(unsigned n_Error, const char* qccz_Source, unsigned n_Line = __builtin_LINE())
{
    SetLastError(n_Error);
    CT_Report::sv_System(qccz_Source, n_Line);
    return 0;
}
