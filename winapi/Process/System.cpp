// winapi/Process/System.cpp
#include "winapi/Process/System.h"

#include <unistd.h>
#include <cstring>

#include "Base/Posix.h"
#include "winapi/Errors/LastError.h"

namespace winapi
{
namespace
{
constexpr DWORD PLAIN_SIZE = 148;
constexpr DWORD EXTENDED_SIZE = 156; // the same fields with more behind them
constexpr DWORD GRANULARITY = 65536;
constexpr WORD ARCHITECTURE_AMD64 = 9;
constexpr DWORD PROCESSOR_AMD64 = 8664;

DWORD ProcessorCount()
{
    cpu_set_t set;
    const int count = posix.sched_getaffinity(0, sizeof(set), &set) == 0 ? CPU_COUNT(&set) : 1;
    return count > 0 ? static_cast<DWORD>(count) : 1;
}
} // namespace

BOOL GetVersionExA(LPOSVERSIONINFOA info)
{
    if (info->dwOSVersionInfoSize != PLAIN_SIZE && info->dwOSVersionInfoSize != EXTENDED_SIZE) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    info->dwMajorVersion = 6;
    info->dwMinorVersion = 1;
    info->dwBuildNumber = 7601;
    info->dwPlatformId = winapi_TestPlatformId ? winapi_TestPlatformId() : VER_PLATFORM_WIN32_NT;
    std::strcpy(info->szCSDVersion, "Service Pack 1");
    return TRUE;
}

void GetSystemInfo(LPSYSTEM_INFO info)
{
    *info = {};
    info->wProcessorArchitecture = ARCHITECTURE_AMD64;
    info->dwPageSize = static_cast<DWORD>(posix.sysconf(_SC_PAGESIZE));
    info->lpMinimumApplicationAddress = reinterpret_cast<LPVOID>(GRANULARITY);
    info->lpMaximumApplicationAddress = reinterpret_cast<LPVOID>(0x7FFFFFFEFFFF);
    info->dwNumberOfProcessors = ProcessorCount();
    info->dwActiveProcessorMask = info->dwNumberOfProcessors < 64
                                      ? (DWORD_PTR(1) << info->dwNumberOfProcessors) - 1
                                      : ~DWORD_PTR(0);
    info->dwProcessorType = PROCESSOR_AMD64;
    info->dwAllocationGranularity = GRANULARITY;
}
} // namespace winapi
