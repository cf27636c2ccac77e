// winapi/Files/Path.h: paths, directories, drives and the temporary directory.
//
// Calls that fill a buffer return the length of the text; where the room is too small, the size
// needed with the terminator, and nothing is stored; 0 on failure. Sizes count characters of the
// call's width. Paths are told with `/`. What names have in common stands in File.h.
#pragma once

#include "winapi/Base/Constants.h"

namespace winapi
{
constexpr UINT DRIVE_UNKNOWN = 0;
constexpr UINT DRIVE_NO_ROOT_DIR = 1;
constexpr UINT DRIVE_FIXED = 3;

// The name seen from the root, as text only: it need not exist. "." and ".." are folded, the latter
// not above the root, doubled separators too; one at the end stays, and so do points and blanks.
// The pointer is set to the last component, null when there is none. 0 with ERROR_INVALID_NAME
// (123) for a null or empty name.
WINAPI_EXPORT DWORD GetFullPathNameW(LPCWSTR lpFileName, DWORD nBufferLength, LPWSTR lpBuffer,
                                     LPWSTR* lpFilePart);
WINAPI_EXPORT DWORD GetFullPathNameA(LPCSTR lpFileName, DWORD nBufferLength, LPSTR lpBuffer,
                                     LPSTR* lpFilePart);

// The process's current directory; 0 with ERROR_PATH_NOT_FOUND (3) when it has been removed, with
// ERROR_NO_UNICODE_TRANSLATION (1113) when its name isn't UTF-8.
WINAPI_EXPORT DWORD GetCurrentDirectoryW(DWORD nBufferLength, LPWSTR lpBuffer);
WINAPI_EXPORT DWORD GetCurrentDirectoryA(DWORD nBufferLength, LPSTR lpBuffer);

// ERROR_DIRECTORY (267) for a file, ERROR_INVALID_NAME for a null or empty name.
WINAPI_EXPORT BOOL SetCurrentDirectoryW(LPCWSTR lpPathName);
WINAPI_EXPORT BOOL SetCurrentDirectoryA(LPCSTR lpPathName);

// One level. ERROR_ALREADY_EXISTS (183) when the name is taken. Security attributes are ignored.
WINAPI_EXPORT BOOL CreateDirectoryW(LPCWSTR lpPathName, LPSECURITY_ATTRIBUTES lpSecurityAttributes);
WINAPI_EXPORT BOOL CreateDirectoryA(LPCSTR lpPathName, LPSECURITY_ATTRIBUTES lpSecurityAttributes);

// ERROR_DIR_NOT_EMPTY (145) when it isn't empty, ERROR_DIRECTORY for a file,
// ERROR_SHARING_VIOLATION (32) for ".", ERROR_INVALID_NAME for a null or empty name.
WINAPI_EXPORT BOOL RemoveDirectoryW(LPCWSTR lpPathName);
WINAPI_EXPORT BOOL RemoveDirectoryA(LPCSTR lpPathName);

// The variable TMPDIR, else /tmp, made absolute, with a separator at its end. It need not exist.
WINAPI_EXPORT DWORD GetTempPathW(DWORD nBufferLength, LPWSTR lpBuffer);
WINAPI_EXPORT DWORD GetTempPathA(DWORD nBufferLength, LPSTR lpBuffer);

// DRIVE_FIXED for the root, and for null; DRIVE_NO_ROOT_DIR for all else. Leaves the last error
// alone.
WINAPI_EXPORT UINT GetDriveTypeW(LPCWSTR lpRootPathName);
WINAPI_EXPORT UINT GetDriveTypeA(LPCSTR lpRootPathName);
} // namespace winapi
