// winapi/Errors/Failure.h: how a service tells its failure.
#pragma once

#include "winapi/Errors/LastError.h"

#include <exception>
#include <utility>

namespace winapi
{
// The system error that stands for an error number of the host.
DWORD CodeOf(int error);

// Sets the last error, 0 being none. Result: whether there is none, as the services return it.
inline BOOL Finish(DWORD code)
{
    if (code)
        SetLastError(code);
    return code == 0;
}

// What ends the body of a service from within, with the last error set.
struct Failed
{};

// Runs the body of a service. Nothing is thrown past it: when memory runs out, the last error is
// ERROR_NOT_ENOUGH_MEMORY (8), and the service returns what it returns on failure.
template <class Result, class Body>
Result Guarded(Result failure, Body body) noexcept
{
    try {
        return body();
    } catch (const Failed&) {
        return failure;
    } catch (const std::exception&) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return failure;
    }
}
} // namespace winapi
