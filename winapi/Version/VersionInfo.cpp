// winapi/Version/VersionInfo.cpp: the services of version records.
#include "winapi/Version/Version.h"

#include "Errors/Failure.h"
#include "Files/Names.h"
#include "Files/OpenFile.h"
#include "Version/VersionResource.h"
#include "winapi/Files/File.h"

#include <algorithm>
#include <cstring>

#include <sys/stat.h>

namespace winapi
{
namespace
{
constexpr char BEHIND[] = {'F', 'E', '2', 'X'};

// Calls with the file and the place of its record. Result: 0 or the code of the failure.
template <class Call>
DWORD WithRecord(LPCWSTR name, Call call)
{
    const auto path = HostName(name, ERROR_BAD_PATHNAME);
    if (!path)
        throw Failed();
    if (const DWORD code = CheckRegular(*path))
        return code;
    HeldFile held;
    struct stat facts;
    if (const DWORD code = OpenHeld({.path = *path,
                                     .rights = RIGHT_READ,
                                     .shares = RIGHTS_ALL,
                                     .disposition = OPEN_EXISTING},
                                    held))
        return code;
    if (posix.fstat(held.fd.Get(), &facts) != 0)
        return CodeOf(errno);
    const CheckedFile file(held.fd.Get(), facts.st_size);
    const auto record = FindVersionRecord(file);
    return record && call(file, *record) ? 0 : ERROR_RESOURCE_DATA_NOT_FOUND;
}

void CopyBehind(BYTE* data, DWORD from, DWORD room)
{
    const DWORD mark = std::min<DWORD>(room - from, sizeof BEHIND);
    std::memcpy(data + from, BEHIND, mark);
    std::memset(data + from + mark, 0, room - from - mark);
}
} // namespace

DWORD GetFileVersionInfoSizeW(LPCWSTR lptstrFilename, LPDWORD lpdwHandle)
{
    return Guarded(0U, [&] {
        if (lpdwHandle)
            *lpdwHandle = 0;
        DWORD size = 0;
        const DWORD code =
            WithRecord(lptstrFilename, [&](const CheckedFile&, const Extent& record) {
                size = 2 * record.size + sizeof BEHIND;
                return true;
            });
        SetLastError(code);
        return size;
    });
}

DWORD GetFileVersionInfoSizeA(LPCSTR lptstrFilename, LPDWORD lpdwHandle)
{
    return Guarded(0U,
                   [&] { return GetFileVersionInfoSizeW(Widened(lptstrFilename), lpdwHandle); });
}

BOOL GetFileVersionInfoW(LPCWSTR lptstrFilename, DWORD, DWORD dwLen, LPVOID lpData)
{
    return Guarded(FALSE, [&] {
        if (!lpData)
            return Finish(ERROR_INVALID_DATA);
        const auto data = static_cast<BYTE*>(lpData);
        const DWORD code =
            WithRecord(lptstrFilename, [&](const CheckedFile& file, const Extent& record) {
                const DWORD size = std::min(dwLen, record.size);
                if (!file.Read(record.offset, data, size))
                    return false;
                CopyBehind(data, size, dwLen);
                return true;
            });
        SetLastError(code);
        return code == 0 ? TRUE : FALSE;
    });
}

BOOL GetFileVersionInfoA(LPCSTR lptstrFilename, DWORD dwHandle, DWORD dwLen, LPVOID lpData)
{
    return Guarded(FALSE, [&] {
        return GetFileVersionInfoW(Widened(lptstrFilename), dwHandle, dwLen, lpData);
    });
}
} // namespace winapi
