// winapi/Errors/Errors.h: last error of the thread, numbers of the system errors, and their texts.
#pragma once

#include <cstdarg>

#include "winapi/Base/Types.h"

#define ERROR_SUCCESS 0
#define NO_ERROR 0
#define ERROR_INVALID_FUNCTION 1
#define ERROR_FILE_NOT_FOUND 2
#define ERROR_PATH_NOT_FOUND 3
#define ERROR_TOO_MANY_OPEN_FILES 4
#define ERROR_ACCESS_DENIED 5
#define ERROR_INVALID_HANDLE 6
#define ERROR_NOT_ENOUGH_MEMORY 8
#define ERROR_NOT_SAME_DEVICE 17
#define ERROR_NO_MORE_FILES 18
#define ERROR_WRITE_PROTECT 19
#define ERROR_GEN_FAILURE 31
#define ERROR_SHARING_VIOLATION 32
#define ERROR_LOCK_VIOLATION 33
#define ERROR_NOT_SUPPORTED 50
#define ERROR_FILE_EXISTS 80
#define ERROR_INVALID_PARAMETER 87
#define ERROR_BROKEN_PIPE 109
#define ERROR_DISK_FULL 112
#define ERROR_INSUFFICIENT_BUFFER 122
#define ERROR_INVALID_NAME 123
#define ERROR_MOD_NOT_FOUND 126
#define ERROR_NEGATIVE_SEEK 131
#define ERROR_DIR_NOT_EMPTY 145
#define ERROR_NOT_LOCKED 158
#define ERROR_ALREADY_EXISTS 183
#define ERROR_ENVVAR_NOT_FOUND 203
#define ERROR_FILENAME_EXCED_RANGE 206
#define ERROR_DIRECTORY 267
#define ERROR_MR_MID_NOT_FOUND 317
#define ERROR_INVALID_ADDRESS 487
#define ERROR_NOACCESS 998
#define ERROR_INVALID_FLAGS 1004
#define ERROR_FILE_INVALID 1006
#define ERROR_NO_UNICODE_TRANSLATION 1113
#define ERROR_IO_DEVICE 1117
#define ERROR_MAPPED_ALIGNMENT 1132
#define ERROR_USER_MAPPED_FILE 1224
#define ERROR_INVALID_USER_BUFFER 1784
#define ERROR_RESOURCE_DATA_NOT_FOUND 1812
#define ERROR_RESOURCE_TYPE_NOT_FOUND 1813
#define ERROR_RESOURCE_NAME_NOT_FOUND 1814
#define ERROR_CANT_RESOLVE_FILENAME 1921

#define FORMAT_MESSAGE_ALLOCATE_BUFFER 0x00000100
#define FORMAT_MESSAGE_IGNORE_INSERTS 0x00000200
#define FORMAT_MESSAGE_FROM_SYSTEM 0x00001000

namespace winapi
{
// The calling thread's last error; 0 at first. Calls that succeed leave it alone but where they say
// otherwise.
WINAPI_EXPORT DWORD GetLastError();
WINAPI_EXPORT void SetLastError(DWORD dwErrCode);

// The socket error is the last error, as on the platform.
WINAPI_EXPORT int WSAGetLastError();
WINAPI_EXPORT void WSASetLastError(int iError);

// The system's text for a code, ending in CR LF. FORMAT_MESSAGE_FROM_SYSTEM, with or without
// FORMAT_MESSAGE_ALLOCATE_BUFFER (lpBuffer is then the address of a pointer, null on failure, to
// free with LocalFree; nSize the least room in units) and FORMAT_MESSAGE_IGNORE_INSERTS; source,
// language and arguments are ignored, for the texts are English and have no inserts. Result: units
// without the terminator. 0 with 317 for an unknown code, 122 for a short buffer, 87 for other
// flags or a null buffer (8 for the narrow call with a null address), 8 without memory.
WINAPI_EXPORT DWORD FormatMessageW(DWORD dwFlags, LPCVOID lpSource, DWORD dwMessageId,
                                   DWORD dwLanguageId, LPWSTR lpBuffer, DWORD nSize,
                                   va_list* Arguments);
WINAPI_EXPORT DWORD FormatMessageA(DWORD dwFlags, LPCVOID lpSource, DWORD dwMessageId,
                                   DWORD dwLanguageId, LPSTR lpBuffer, DWORD nSize,
                                   va_list* Arguments);

// Frees what FormatMessage allocated; null is allowed. Result: null.
WINAPI_EXPORT HLOCAL LocalFree(HLOCAL hMem);
} // namespace winapi
