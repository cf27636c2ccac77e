// winapi/Process/Clock.cpp
#include "winapi/Process/Clock.h"

#include "Base/Posix.h"

#include <ctime>

namespace winapi
{
DWORD GetTickCount()
{
    timespec now{};
    posix.clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<DWORD>(static_cast<std::uint64_t>(now.tv_sec) * 1000 +
                              static_cast<std::uint64_t>(now.tv_nsec) / 1000000);
}
} // namespace winapi
