// winapi/Files/Path.cpp: full names, directories, drives.
#include "winapi/Files/Path.h"

#include "Base/HostVariables.h"
#include "Base/Posix.h"
#include "Errors/Failure.h"
#include "Files/Names.h"

namespace winapi
{
namespace
{
// A name of the host as a caller's text; 0, with the last error set, where there is none.
DWORD StoreName(const std::optional<std::string>& name, DWORD room, LPWSTR buffer)
{
    if (!name)
        return 0;
    if (const auto wide = FromUtf8(*name))
        return StoreText(*wide, room, buffer);
    SetLastError(ERROR_NO_UNICODE_TRANSLATION);
    return 0;
}

DWORD StoreName(const std::optional<std::string>& name, DWORD room, LPSTR buffer)
{
    if (!name)
        return 0;
    if (const auto wide = FromUtf8(*name))
        return StoreText(Narrowed(*wide), room, buffer);
    SetLastError(ERROR_NO_UNICODE_TRANSLATION);
    return 0;
}

// The last component within a stored path; null when it ends in a separator. No second byte of a
// double-byte character is a `/`.
template <class Char>
Char* FilePart(Char* path, DWORD size)
{
    Char* part = path + size;
    while (part > path && part[-1] != '/')
        --part;
    return *part ? part : nullptr;
}

template <class Char>
DWORD FullPath(LPCWSTR file, DWORD room, Char* buffer, Char** part)
{
    if (part)
        *part = nullptr;
    const auto name = HostName(file, ERROR_INVALID_NAME);
    if (!name)
        return 0;
    const DWORD size = StoreName(AbsoluteName(*name), room, buffer);
    if (part && buffer && size > 0 && size < room)
        *part = FilePart(buffer, size);
    return size;
}

// The directory for temporary files, with the separator at its end.
std::optional<std::string> TemporaryDirectory()
{
    const auto told = HostVariable("TMPDIR");
    return AbsoluteName((told && !told->empty() ? *told : "/tmp") + '/');
}

DWORD CodeOfDirectory(int error, const std::string& path)
{
    return error == EEXIST ? ERROR_ALREADY_EXISTS : CodeOf(error, path);
}

// What names something else than a directory, where a directory is wanted, has an error of its own.
DWORD CodeOfNoDirectory(int error, const std::string& path)
{
    struct stat facts;
    const bool isFile =
        error == ENOTDIR && posix.stat(path.c_str(), &facts) == 0 && !S_ISDIR(facts.st_mode);
    return isFile ? ERROR_DIRECTORY : CodeOf(error, path);
}
DWORD CodeOfRemoval(int error, const std::string& path)
{
    if (error == EINVAL) // The name ends in ".": that directory is in use.
        return ERROR_SHARING_VIOLATION;
    return CodeOfNoDirectory(error, path);
}
} // namespace

DWORD GetFullPathNameW(LPCWSTR lpFileName, DWORD nBufferLength, LPWSTR lpBuffer, LPWSTR* lpFilePart)
{
    return Guarded(0U, [&] { return FullPath(lpFileName, nBufferLength, lpBuffer, lpFilePart); });
}

DWORD GetFullPathNameA(LPCSTR lpFileName, DWORD nBufferLength, LPSTR lpBuffer, LPSTR* lpFilePart)
{
    return Guarded(
        0U, [&] { return FullPath(Widened(lpFileName), nBufferLength, lpBuffer, lpFilePart); });
}

DWORD GetCurrentDirectoryW(DWORD nBufferLength, LPWSTR lpBuffer)
{
    return Guarded(0U, [&] { return StoreName(CurrentDirectory(), nBufferLength, lpBuffer); });
}

DWORD GetCurrentDirectoryA(DWORD nBufferLength, LPSTR lpBuffer)
{
    return Guarded(0U, [&] { return StoreName(CurrentDirectory(), nBufferLength, lpBuffer); });
}

BOOL SetCurrentDirectoryW(LPCWSTR lpPathName)
{
    return Guarded(FALSE, [&]() -> BOOL {
        const auto path = HostName(lpPathName, ERROR_INVALID_NAME);
        if (!path)
            return FALSE;
        return Finish(posix.chdir(path->c_str()) == 0 ? 0 : CodeOfNoDirectory(errno, *path));
    });
}

BOOL SetCurrentDirectoryA(LPCSTR lpPathName)
{
    return Guarded(FALSE, [&] { return SetCurrentDirectoryW(Widened(lpPathName)); });
}

BOOL CreateDirectoryW(LPCWSTR lpPathName, LPSECURITY_ATTRIBUTES)
{
    return Guarded(FALSE, [&]() -> BOOL {
        const auto path = HostName(lpPathName);
        if (!path)
            return FALSE;
        return Finish(posix.mkdir(path->c_str(), 0777) == 0 ? 0 : CodeOfDirectory(errno, *path));
    });
}

BOOL CreateDirectoryA(LPCSTR lpPathName, LPSECURITY_ATTRIBUTES lpSecurityAttributes)
{
    return Guarded(FALSE,
                   [&] { return CreateDirectoryW(Widened(lpPathName), lpSecurityAttributes); });
}

BOOL RemoveDirectoryW(LPCWSTR lpPathName)
{
    return Guarded(FALSE, [&]() -> BOOL {
        const auto path = HostName(lpPathName, ERROR_INVALID_NAME);
        if (!path)
            return FALSE;
        return Finish(posix.rmdir(path->c_str()) == 0 ? 0 : CodeOfRemoval(errno, *path));
    });
}

BOOL RemoveDirectoryA(LPCSTR lpPathName)
{
    return Guarded(FALSE, [&] { return RemoveDirectoryW(Widened(lpPathName)); });
}

DWORD GetTempPathW(DWORD nBufferLength, LPWSTR lpBuffer)
{
    return Guarded(0U, [&] { return StoreName(TemporaryDirectory(), nBufferLength, lpBuffer); });
}

DWORD GetTempPathA(DWORD nBufferLength, LPSTR lpBuffer)
{
    return Guarded(0U, [&] { return StoreName(TemporaryDirectory(), nBufferLength, lpBuffer); });
}

UINT GetDriveTypeW(LPCWSTR lpRootPathName)
{
    return Guarded(UINT(DRIVE_UNKNOWN), [&]() -> UINT {
        if (!lpRootPathName)
            return DRIVE_FIXED;
        const DWORD error = GetLastError();
        const auto path = HostName(lpRootPathName);
        const auto whole = path ? AbsoluteName(*path) : path;
        SetLastError(error);
        return whole && *whole == "/" ? DRIVE_FIXED : DRIVE_NO_ROOT_DIR;
    });
}

UINT GetDriveTypeA(LPCSTR lpRootPathName)
{
    return Guarded(UINT(DRIVE_UNKNOWN), [&] { return GetDriveTypeW(Widened(lpRootPathName)); });
}
} // namespace winapi
