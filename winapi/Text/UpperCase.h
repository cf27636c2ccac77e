// winapi/Text/UpperCase.h: the upper and the lower case of single units.
#pragma once

#include "winapi/Base/Types.h"

namespace winapi
{
// Units from first to last, each one or each second one, whose other case lies that far off.
struct CaseRun
{
    WCHAR first;
    WCHAR last;
    WCHAR step;
    int distance;
};

// Ascending; ASCII is left out.
extern const CaseRun upperCaseRuns[];
extern const unsigned upperCaseRunCount;
extern const CaseRun lowerCaseRuns[];
extern const unsigned lowerCaseRunCount;

// The unit itself where it has no upper, or lower, case of one unit.
WCHAR UpperCase(WCHAR unit);
WCHAR LowerCase(WCHAR unit);
} // namespace winapi
