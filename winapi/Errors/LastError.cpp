// winapi/Errors/LastError.cpp: the last error of each thread.
#include "winapi/Errors/LastError.h"

namespace winapi
{
namespace
{
thread_local DWORD lastError;
}

DWORD GetLastError()
{
    return lastError;
}

void SetLastError(DWORD dwErrCode)
{
    lastError = dwErrCode;
}

int WSAGetLastError()
{
    return static_cast<int>(lastError);
}

void WSASetLastError(int iError)
{
    lastError = static_cast<DWORD>(iError);
}
} // namespace winapi
