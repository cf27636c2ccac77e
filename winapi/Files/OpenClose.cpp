// winapi/Files/OpenClose.cpp: handles of files, from CreateFile to CloseHandle.
#include "winapi/Files/File.h"

#include "Errors/Failure.h"
#include "Files/Attributes.h"
#include "Files/Names.h"
#include "Files/OpenFile.h"

#include <sys/sysmacros.h>

namespace winapi
{
namespace
{
unsigned RightsOf(DWORD access, DWORD flags)
{
    unsigned rights = 0;
    if ((access & (GENERIC_READ | GENERIC_ALL)) != 0)
        rights |= RIGHT_READ;
    if ((access & (GENERIC_WRITE | GENERIC_ALL)) != 0)
        rights |= RIGHT_WRITE;
    if ((access & (DELETE | GENERIC_ALL)) != 0 || (flags & FILE_FLAG_DELETE_ON_CLOSE) != 0)
        rights |= RIGHT_DELETE;
    return rights;
}

// Number 7 has no name, and the platform refuses it as a parameter. Here it opens always, like the
// attempt that it follows, so that a second refusal tells the reason of the first.
constexpr DWORD OPEN_ALWAYS_AGAIN = 7;

bool IsDisposition(DWORD disposition, DWORD access)
{
    if (disposition == TRUNCATE_EXISTING)
        return (access & (GENERIC_WRITE | GENERIC_ALL)) != 0;
    return disposition >= CREATE_NEW && disposition <= OPEN_ALWAYS;
}

HANDLE Create(OpenRequest& request)
{
    auto file = std::make_unique<OpenFile>(request.rights);
    if (const DWORD code = OpenHeld(request, file->held)) {
        SetLastError(code);
        return INVALID_HANDLE_VALUE;
    }
    file->Opened(request);
    const bool note = request.disposition == CREATE_ALWAYS || request.disposition == OPEN_ALWAYS;
    const DWORD code = note && file->held.existed ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS;
    const HANDLE handle = MakeHandle(std::move(file));
    if (!handle)
        return INVALID_HANDLE_VALUE;
    SetLastError(code);
    return handle;
}

DWORD SerialNumber(const struct statx& facts)
{
    return static_cast<DWORD>(makedev(facts.stx_dev_major, facts.stx_dev_minor));
}
} // namespace

HANDLE CreateFileW(LPCWSTR lpFileName, DWORD dwDesiredAccess, DWORD dwShareMode,
                   LPSECURITY_ATTRIBUTES, DWORD dwCreationDisposition, DWORD dwFlagsAndAttributes,
                   HANDLE)
{
    return Guarded(INVALID_HANDLE_VALUE, [&]() -> HANDLE {
        OpenRequest request;
        auto path = HostName(lpFileName);
        if (!path)
            return INVALID_HANDLE_VALUE;
        if (dwCreationDisposition == OPEN_ALWAYS_AGAIN)
            dwCreationDisposition = OPEN_ALWAYS;
        if (!IsDisposition(dwCreationDisposition, dwDesiredAccess)) {
            SetLastError(ERROR_INVALID_PARAMETER);
            return INVALID_HANDLE_VALUE;
        }
        request.path = std::move(*path);
        request.rights = RightsOf(dwDesiredAccess, dwFlagsAndAttributes);
        request.shares = dwShareMode & RIGHTS_ALL;
        request.disposition = dwCreationDisposition;
        request.flags = dwFlagsAndAttributes;
        return Create(request);
    });
}

HANDLE CreateFileA(LPCSTR lpFileName, DWORD dwDesiredAccess, DWORD dwShareMode,
                   LPSECURITY_ATTRIBUTES lpSecurityAttributes, DWORD dwCreationDisposition,
                   DWORD dwFlagsAndAttributes, HANDLE hTemplateFile)
{
    return Guarded(INVALID_HANDLE_VALUE, [&] {
        return CreateFileW(Widened(lpFileName), dwDesiredAccess, dwShareMode, lpSecurityAttributes,
                           dwCreationDisposition, dwFlagsAndAttributes, hTemplateFile);
    });
}

BOOL CloseHandle(HANDLE hObject)
{
    return hObject == INVALID_HANDLE_VALUE || ReleaseHandle(hObject, false);
}

BOOL GetFileInformationByHandle(HANDLE hFile, LPBY_HANDLE_FILE_INFORMATION lpFileInformation)
{
    const Reference<OpenFile> file(hFile);
    if (!file)
        return FALSE;
    if (!lpFileInformation)
        return Finish(ERROR_NOACCESS);
    struct statx facts;
    if (!GetFacts(file->Fd(), "", AT_EMPTY_PATH, facts))
        return Finish(CodeOf(errno));
    BY_HANDLE_FILE_INFORMATION& info = *lpFileInformation;
    info.dwFileAttributes = AttributesOf(facts.stx_mode, StoredAttributes(file->Fd()), file->name);
    info.ftCreationTime = CreationTime(facts);
    info.ftLastAccessTime = ToFileTime(facts.stx_atime);
    info.ftLastWriteTime = ToFileTime(facts.stx_mtime);
    info.dwVolumeSerialNumber = SerialNumber(facts);
    const std::uint64_t size = S_ISDIR(facts.stx_mode) ? 0 : facts.stx_size;
    info.nFileSizeHigh = static_cast<DWORD>(size >> 32);
    info.nFileSizeLow = static_cast<DWORD>(size);
    info.nNumberOfLinks = facts.stx_nlink;
    info.nFileIndexHigh = static_cast<DWORD>(facts.stx_ino >> 32);
    info.nFileIndexLow = static_cast<DWORD>(facts.stx_ino);
    return TRUE;
}

UINT SetHandleCount(UINT uNumber)
{
    return uNumber;
}
} // namespace winapi
