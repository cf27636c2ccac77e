// winapi/Files/FileSearch.h: directory search.
//
// The last component of a name may hold wildcards, the directory none. `*` stands for any text, `?`
// for one character or, in front of a point and at the end, for none; a point in front of nothing
// but `*` and points may stand for nothing at the end, so `*.*` and `*.` find all. Case counts. "."
// and ".." come first, then the names in order without regard to case. Names that aren't UTF-8 or
// hold a `\` are left out.
#pragma once

#include "winapi/Base/Constants.h"

struct WIN32_FIND_DATAA
{
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD dwReserved0;
    DWORD dwReserved1;
    CHAR cFileName[winapi::MAX_PATH];
    CHAR cAlternateFileName[14];
};
struct WIN32_FIND_DATAW
{
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD dwReserved0;
    DWORD dwReserved1;
    WCHAR cFileName[winapi::MAX_PATH];
    WCHAR cAlternateFileName[14];
};
using LPWIN32_FIND_DATAA = WIN32_FIND_DATAA*;
using LPWIN32_FIND_DATAW = WIN32_FIND_DATAW*;

namespace winapi
{
// Starts a search and tells its first entry. Result: a handle; INVALID_HANDLE_VALUE on failure:
// ERROR_FILE_NOT_FOUND (2) when nothing fits, or for a separator at the end, ERROR_PATH_NOT_FOUND
// (3) for a missing directory or no name at all, ERROR_INVALID_NAME (123) for a file in a
// directory's place, ERROR_INVALID_PARAMETER (87) for a null record. A name without wildcards finds
// the entry itself; "." and ".." find a directory under its name. The list of names is made here; a
// search that isn't closed costs memory, but no descriptor. Size and times are filled as for
// GetFileInformationByHandle, the short name is empty, a symbolic link is told as its target.
WINAPI_EXPORT HANDLE FindFirstFileW(LPCWSTR lpFileName, LPWIN32_FIND_DATAW lpFindFileData);
WINAPI_EXPORT HANDLE FindFirstFileA(LPCSTR lpFileName, LPWIN32_FIND_DATAA lpFindFileData);

// The next entry; ERROR_NO_MORE_FILES (18) when there is none left. An entry that has gone in the
// meantime is left out.
WINAPI_EXPORT BOOL FindNextFileW(HANDLE hFindFile, LPWIN32_FIND_DATAW lpFindFileData);
WINAPI_EXPORT BOOL FindNextFileA(HANDLE hFindFile, LPWIN32_FIND_DATAA lpFindFileData);

// Ends a search; ERROR_INVALID_HANDLE (6) for what isn't one.
WINAPI_EXPORT BOOL FindClose(HANDLE hFindFile);
} // namespace winapi
