// winapi/Errors/FormatMessage.h: texts of the system errors.
#pragma once

#include <cstdarg>

#include "winapi/Base/Constants.h"

namespace winapi
{
constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x00000100;
constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x00000200;
constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x00001000;

// The system's text for a code, ending in CR LF. FORMAT_MESSAGE_FROM_SYSTEM, with or without
// FORMAT_MESSAGE_ALLOCATE_BUFFER (lpBuffer is then the address of a pointer, null on failure, to
// free with LocalFree; nSize the least room in units) and FORMAT_MESSAGE_IGNORE_INSERTS; source,
// language and arguments are ignored, for the texts are English and have no inserts. Result: units
// without the terminator. 0 with ERROR_MR_MID_NOT_FOUND (317) for an unknown code,
// ERROR_INSUFFICIENT_BUFFER (122) for a short buffer, ERROR_INVALID_PARAMETER (87) for other flags
// or a null buffer (ERROR_NOT_ENOUGH_MEMORY (8) for the narrow call with a null address),
// ERROR_NOT_ENOUGH_MEMORY without memory.
WINAPI_EXPORT DWORD FormatMessageW(DWORD dwFlags, LPCVOID lpSource, DWORD dwMessageId,
                                   DWORD dwLanguageId, LPWSTR lpBuffer, DWORD nSize,
                                   va_list* Arguments);
WINAPI_EXPORT DWORD FormatMessageA(DWORD dwFlags, LPCVOID lpSource, DWORD dwMessageId,
                                   DWORD dwLanguageId, LPSTR lpBuffer, DWORD nSize,
                                   va_list* Arguments);

// Frees what FormatMessage allocated; null is allowed. Result: null.
WINAPI_EXPORT HLOCAL LocalFree(HLOCAL hMem);
} // namespace winapi
