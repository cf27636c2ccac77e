// winapi/Process/System.h: version of the system and facts about the machine.
#pragma once

#include "winapi/Base/Constants.h"

struct OSVERSIONINFOA
{
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    CHAR szCSDVersion[128];
};
using LPOSVERSIONINFOA = OSVERSIONINFOA*;

struct SYSTEM_INFO
{
    WORD wProcessorArchitecture;
    WORD wReserved;
    DWORD dwPageSize;
    LPVOID lpMinimumApplicationAddress;
    LPVOID lpMaximumApplicationAddress;
    DWORD_PTR dwActiveProcessorMask;
    DWORD dwNumberOfProcessors;
    DWORD dwProcessorType;
    DWORD dwAllocationGranularity;
    WORD wProcessorLevel;
    WORD wProcessorRevision;
};
using LPSYSTEM_INFO = SYSTEM_INFO*;

// A test program may define this: its answer becomes dwPlatformId, so that the library takes the
// road of another family of systems. Nothing else defines it.
extern "C" WINAPI_EXPORT DWORD winapi_TestPlatformId() __attribute__((weak));

namespace winapi
{
constexpr DWORD VER_PLATFORM_WIN32s = 0;
constexpr DWORD VER_PLATFORM_WIN32_WINDOWS = 1;
constexpr DWORD VER_PLATFORM_WIN32_NT = 2;

WINAPI_EXPORT BOOL GetVersionExA(LPOSVERSIONINFOA lpVersionInformation);
WINAPI_EXPORT void GetSystemInfo(LPSYSTEM_INFO lpSystemInfo);
} // namespace winapi
