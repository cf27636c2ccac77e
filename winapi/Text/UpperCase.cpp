// winapi/Text/UpperCase.cpp
#include "Text/UpperCase.h"

#include <algorithm>

namespace winapi
{
WCHAR UpperCase(WCHAR unit)
{
    if (unit < 0x80)
        return unit >= 'a' && unit <= 'z' ? static_cast<WCHAR>(unit - 'a' + 'A') : unit;
    const UpperCaseRun* const end = upperCaseRuns + upperCaseRunCount;
    const UpperCaseRun* const found =
        std::lower_bound(upperCaseRuns, end, unit,
                         [](const UpperCaseRun& run, WCHAR wanted) { return run.last < wanted; });
    if (found == end || unit < found->first || (unit - found->first) % found->step != 0)
        return unit;
    return static_cast<WCHAR>(unit + found->distance);
}
} // namespace winapi
