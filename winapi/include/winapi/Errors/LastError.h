// winapi/Errors/LastError.h: last error of the thread.
#pragma once

#include "winapi/Base/Constants.h"
#include "winapi/Errors/Codes.h"

namespace winapi
{
// The calling thread's last error; 0 at first. Calls that succeed leave it alone but where they say
// otherwise.
WINAPI_EXPORT DWORD GetLastError();
WINAPI_EXPORT void SetLastError(DWORD dwErrCode);

// The socket error is the last error, as on the platform.
WINAPI_EXPORT int WSAGetLastError();
WINAPI_EXPORT void WSASetLastError(int iError);
} // namespace winapi
