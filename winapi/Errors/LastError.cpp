// winapi/Errors/LastError.cpp: the last error of each thread.
#include "winapi/Errors/LastError.h"

namespace winapi
{
namespace
{
thread_local DWORD last_error;
}

DWORD GetLastError()
{
    return last_error;
}

void SetLastError(DWORD dwErrCode)
{
    last_error = dwErrCode;
}

int WSAGetLastError()
{
    return static_cast<int>(last_error);
}

void WSASetLastError(int iError)
{
    last_error = static_cast<DWORD>(iError);
}
} // namespace winapi
