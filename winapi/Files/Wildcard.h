// winapi/Files/Wildcard.h: patterns of file names.
#pragma once

#include "Files/Names.h"

namespace winapi
{
// Whether a name fits a pattern; case counts. `*` stands for any text, `?` for one character, or
// for none in front of a point or at the end. A point may stand for nothing at the end, as if there
// were one behind every name, when only `*` and points follow: so `*.*` and `*.` mean `*`, and
// `a*.*` finds "ab" as well.
bool FitsPattern(WideView name, WideView pattern);

inline bool HasWildcard(WideView pattern)
{
    constexpr WCHAR marks[] = {'*', '?'};
    return pattern.find_first_of(marks, 0, 2) != WideView::npos;
}
} // namespace winapi
