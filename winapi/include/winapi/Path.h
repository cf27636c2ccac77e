// winapi/Path.h: paths, directories, drives and the temporary directory.
#pragma once

#include "Types.h"

#define DRIVE_UNKNOWN 0
#define DRIVE_NO_ROOT_DIR 1
#define DRIVE_FIXED 3

namespace winapi
{
WINAPI_EXPORT DWORD GetFullPathNameW(LPCWSTR lpFileName, DWORD nBufferLength, LPWSTR lpBuffer, LPWSTR* lpFilePart);
WINAPI_EXPORT DWORD GetFullPathNameA(LPCSTR lpFileName, DWORD nBufferLength, LPSTR lpBuffer, LPSTR* lpFilePart);
WINAPI_EXPORT DWORD GetCurrentDirectoryW(DWORD nBufferLength, LPWSTR lpBuffer);
WINAPI_EXPORT DWORD GetCurrentDirectoryA(DWORD nBufferLength, LPSTR lpBuffer);
WINAPI_EXPORT BOOL SetCurrentDirectoryW(LPCWSTR lpPathName);
WINAPI_EXPORT BOOL SetCurrentDirectoryA(LPCSTR lpPathName);
WINAPI_EXPORT BOOL CreateDirectoryW(LPCWSTR lpPathName, LPSECURITY_ATTRIBUTES lpSecurityAttributes);
WINAPI_EXPORT BOOL CreateDirectoryA(LPCSTR lpPathName, LPSECURITY_ATTRIBUTES lpSecurityAttributes);
WINAPI_EXPORT BOOL RemoveDirectoryW(LPCWSTR lpPathName);
WINAPI_EXPORT BOOL RemoveDirectoryA(LPCSTR lpPathName);
WINAPI_EXPORT DWORD GetTempPathW(DWORD nBufferLength, LPWSTR lpBuffer);
WINAPI_EXPORT DWORD GetTempPathA(DWORD nBufferLength, LPSTR lpBuffer);
WINAPI_EXPORT UINT GetDriveTypeW(LPCWSTR lpRootPathName);
WINAPI_EXPORT UINT GetDriveTypeA(LPCSTR lpRootPathName);
} // namespace winapi
