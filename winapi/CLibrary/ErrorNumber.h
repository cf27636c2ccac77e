// winapi/CLibrary/ErrorNumber.h: how the C library tells its failures.
#pragma once

#include "Errors/Failure.h"

#include <cerrno>

namespace winapi
{
// The error number that stands for a system error.
int ErrorNumberOf(DWORD code);

// Runs a function of the C library on top of services. What its body tells by the last error is
// told by errno, and the last error stays as it was.
template <class Result, class Body>
Result ToldByErrno(Result failure, Body body)
{
    const DWORD before = GetLastError();
    const Result result = Guarded(failure, body);
    if (result == failure)
        errno = ErrorNumberOf(GetLastError());
    SetLastError(before);
    return result;
}

// The same over a service that answers with a truth value: 0 or -1.
template <class Service>
int ToldBySuccess(Service service)
{
    return ToldByErrno(-1, [&] { return service() ? 0 : -1; });
}
} // namespace winapi
