// winapi/Process/Environment.h: environment variables, the hidden current-directory variables among them.
//
// Variables are those of the host, with values in UTF-8; case counts. Names that begin with "=" are
// hidden: they are kept apart, seen by these calls only and not inherited, and the case of their
// letters doesn't count.
#pragma once

#include "winapi/Base/Constants.h"

namespace winapi
{
// Sets a variable, or with a null value removes it; removing one that isn't there succeeds.
// ERROR_INVALID_PARAMETER (87) for an empty name or one with a "=" behind its first character,
// ERROR_ENVVAR_NOT_FOUND (203) for a null name, ERROR_NO_UNICODE_TRANSLATION (1113) for a lone
// surrogate.
WINAPI_EXPORT BOOL SetEnvironmentVariableW(LPCWSTR lpName, LPCWSTR lpValue);
WINAPI_EXPORT BOOL SetEnvironmentVariableA(LPCSTR lpName, LPCSTR lpValue);

// Result: the length of the value; the size needed with the terminator where the room is too small;
// 0 with ERROR_ENVVAR_NOT_FOUND when there is no such variable. The last error tells that from an
// empty value: this leaves it alone.
WINAPI_EXPORT DWORD GetEnvironmentVariableW(LPCWSTR lpName, LPWSTR lpBuffer, DWORD nSize);
WINAPI_EXPORT DWORD GetEnvironmentVariableA(LPCSTR lpName, LPSTR lpBuffer, DWORD nSize);
} // namespace winapi
