// winapi/Environment.h: environment variables, the hidden current-directory variables among them.
#pragma once

#include "Types.h"

namespace winapi
{
WINAPI_EXPORT BOOL SetEnvironmentVariableW(LPCWSTR lpName, LPCWSTR lpValue);
WINAPI_EXPORT BOOL SetEnvironmentVariableA(LPCSTR lpName, LPCSTR lpValue);
WINAPI_EXPORT DWORD GetEnvironmentVariableW(LPCWSTR lpName, LPWSTR lpBuffer, DWORD nSize);
WINAPI_EXPORT DWORD GetEnvironmentVariableA(LPCSTR lpName, LPSTR lpBuffer, DWORD nSize);
} // namespace winapi
