// winapi/Files/Wildcard.cpp
#include "Files/Wildcard.h"

#include <vector>

namespace winapi
{
namespace
{
bool IsEmptyAtEnd(WideView rest)
{
    constexpr WCHAR marks[] = {'*', '.'};
    return rest.find_first_not_of(marks, 0, 2) == WideView::npos;
}
} // namespace

// Row by row: `reached[i]` tells whether the pattern up to the row fits the first i units of the
// name. A pattern that would let a search with returns run wild costs no more than length times
// length.
bool FitsPattern(WideView name, WideView pattern)
{
    std::vector<char> reached(name.size() + 1);
    reached[0] = 1;
    for (; !pattern.empty(); pattern.remove_prefix(1)) {
        const WCHAR mark = pattern[0];
        if (mark == '.' && reached.back() != 0 && IsEmptyAtEnd(pattern))
            return true;
        char before = 0; // What the row above had one place to the left.
        for (std::size_t i = 0; i <= name.size(); ++i) {
            const char above = reached[i];
            const bool atPoint = i == name.size() || name[i] == '.';
            if (mark == '*')
                reached[i] = above | (i > 0 ? reached[i - 1] : 0);
            else if (mark == '?')
                reached[i] = before | (above & atPoint);
            else
                reached[i] = before & (i > 0 && name[i - 1] == mark);
            before = above;
        }
    }
    return reached.back() != 0;
}
} // namespace winapi
