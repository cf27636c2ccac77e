// winapi/Text/UpperCase.cpp
#include "Text/UpperCase.h"

#include <algorithm>

namespace winapi
{
namespace
{
WCHAR OtherCase(WCHAR unit, const CaseRun* runs, unsigned count)
{
    const CaseRun* const end = runs + count;
    const CaseRun* const found = std::lower_bound(
        runs, end, unit, [](const CaseRun& run, WCHAR wanted) { return run.last < wanted; });
    if (found == end || unit < found->first || (unit - found->first) % found->step != 0)
        return unit;
    return static_cast<WCHAR>(unit + found->distance);
}
} // namespace

WCHAR UpperCase(WCHAR unit)
{
    if (unit < 0x80)
        return unit >= 'a' && unit <= 'z' ? static_cast<WCHAR>(unit - 'a' + 'A') : unit;
    return OtherCase(unit, upperCaseRuns, upperCaseRunCount);
}

WCHAR LowerCase(WCHAR unit)
{
    if (unit < 0x80)
        return unit >= 'A' && unit <= 'Z' ? static_cast<WCHAR>(unit - 'A' + 'a') : unit;
    return OtherCase(unit, lowerCaseRuns, lowerCaseRunCount);
}
} // namespace winapi
