// winapi/Text/UpperCase.h: the upper case of single units.
#pragma once

#include "winapi/Base/Types.h"

namespace winapi
{
// Units from first to last, each one or each second one, whose upper case lies that far off.
struct UpperCaseRun
{
    WCHAR first;
    WCHAR last;
    WCHAR step;
    int distance;
};

// Ascending; ASCII is left out.
extern const UpperCaseRun upperCaseRuns[];
extern const unsigned upperCaseRunCount;

// The unit itself where it has no upper case of one unit.
WCHAR UpperCase(WCHAR unit);
} // namespace winapi
