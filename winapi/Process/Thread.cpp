// winapi/Process/Thread.cpp
#include "winapi/Process/Thread.h"

#include <ctime>
#include <unistd.h>

namespace winapi
{
DWORD GetCurrentThreadId()
{
    return static_cast<DWORD>(gettid());
}

DWORD GetTickCount()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<DWORD>(static_cast<std::uint64_t>(now.tv_sec) * 1000 +
                              static_cast<std::uint64_t>(now.tv_nsec) / 1000000);
}
} // namespace winapi
