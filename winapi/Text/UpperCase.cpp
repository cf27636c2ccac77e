// winapi/Text/UpperCase.cpp
#include "Text/UpperCase.h"

#include <algorithm>

namespace winapi
{
WCHAR UpperCase(WCHAR unit)
{
    if (unit < 0x80)
        return unit >= 'a' && unit <= 'z' ? static_cast<WCHAR>(unit - 'a' + 'A') : unit;
    const UpperCaseRun* const end = upper_case_runs + upper_case_run_count;
    const UpperCaseRun* const found =
        std::lower_bound(upper_case_runs, end, unit,
                         [](const UpperCaseRun& run, WCHAR wanted) { return run.last < wanted; });
    if (found == end || unit < found->first || (unit - found->first) % found->step != 0)
        return unit;
    return static_cast<WCHAR>(unit + found->distance);
}
} // namespace winapi
