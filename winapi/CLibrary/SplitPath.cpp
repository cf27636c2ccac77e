// winapi/CLibrary/SplitPath.cpp
#include "winapi/CLibrary/SplitPath.h"

#include "winapi/Text/CodePage.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace winapi
{
namespace
{
struct Part
{
    LPCSTR begin;
    LPCSTR end;
    LPSTR target;
    std::ptrdiff_t room;

    bool Fits() const { return !target || end - begin < room; }
    void Store(bool all) const
    {
        if (target)
            *std::copy(begin, all ? end : begin, target) = 0;
    }
};
} // namespace

void _splitpath(LPCSTR path, LPSTR drive, LPSTR dir, LPSTR fname, LPSTR ext)
{
    LPCSTR name = path;
    LPCSTR point = nullptr;
    LPCSTR end = path;
    for (; *end; ++end) {
        if (*end == '/' || *end == '\\') {
            name = end + 1;
            point = nullptr;
        } else if (*end == '.') {
            point = end;
        } else if (IsDBCSLeadByte(static_cast<BYTE>(*end)) && end[1]) {
            ++end;
        }
    }
    if (!point)
        point = end;
    const Part parts[] = {{path, path, drive, _MAX_DRIVE},
                          {path, name, dir, _MAX_DIR},
                          {name, point, fname, _MAX_FNAME},
                          {point, end, ext, _MAX_EXT}};
    const bool all = std::all_of(std::begin(parts), std::end(parts),
                                 [](const Part& part) { return part.Fits(); });
    for (const Part& part : parts)
        part.Store(all);
}
} // namespace winapi
