// winapi/Version/Version.h: the version record of an executable file.
//
// The file is one of the platform's, for 32 or 64 bits (PE) or for 16 bits (NE). The record is its
// first version resource, as it lies there. Every offset in the file is checked: what lies about
// itself has no record.
#pragma once

#include "winapi/Base/Constants.h"

namespace winapi
{
// The room for the record and what the platform puts behind it: twice the record's size and four
// bytes. The handle is set to 0. 0 with ERROR_FILE_NOT_FOUND (2), ERROR_PATH_NOT_FOUND (3),
// ERROR_BAD_PATHNAME (161) for an empty name, ERROR_ACCESS_DENIED (5) for what is no file,
// ERROR_RESOURCE_DATA_NOT_FOUND (1812) for a file without a record.
WINAPI_EXPORT DWORD GetFileVersionInfoSizeW(LPCWSTR lptstrFilename, LPDWORD lpdwHandle);
WINAPI_EXPORT DWORD GetFileVersionInfoSizeA(LPCSTR lptstrFilename, LPDWORD lpdwHandle);

// Copies the record, or as much of it as fits. Behind it come the four bytes "FE2X" and zeros, as
// far as there is room. The handle isn't looked at. ERROR_INVALID_DATA (13) without a place to
// copy to.
WINAPI_EXPORT BOOL GetFileVersionInfoW(LPCWSTR lptstrFilename, DWORD dwHandle, DWORD dwLen,
                                       LPVOID lpData);
WINAPI_EXPORT BOOL GetFileVersionInfoA(LPCSTR lptstrFilename, DWORD dwHandle, DWORD dwLen,
                                       LPVOID lpData);
} // namespace winapi
