// System/OS/OS.cpp
#include <System/OS/OS.h>

#include <windows.h>

#include <cstring>

CT_OS::et_OS CT_OS::seo_Version;
unsigned CT_OS::sn_OsVersionMajor;
unsigned CT_OS::sn_OsVersionMinor;
unsigned CT_OS::sn_OsBuildNo;
unsigned CT_OS::sn_NumCPU;
int CT_OS::sb_IsWindowsNT;
int CT_OS::sb_IsWindows95;
int CT_OS::sb_IsWindows95OSR2; // Kept: nothing sets it.
int CT_OS::sb_IsWindows32s;
char CT_OS::sqcz_OsVersionString[128];

CT_OS::et_OS CT_OS::seo_GetVersion()
{
    return seo_Version;
}

int CT_OS::sb_GetIsWindowsNT()
{
    return sb_IsWindowsNT;
}

int CT_OS::sb_GetIsWindows95()
{
    return sb_IsWindows95;
}

int CT_OS::sb_GetIsWindows95OSR2()
{
    return sb_IsWindows95OSR2;
}

int CT_OS::sb_GetIsWindows32s()
{
    return sb_IsWindows32s;
}

unsigned int CT_OS::sn_GetOsVersionMajor()
{
    return sn_OsVersionMajor;
}

unsigned int CT_OS::sn_GetOsVersionMinor()
{
    return sn_OsVersionMinor;
}

unsigned int CT_OS::sn_GetOsVersionBuild()
{
    return sn_OsBuildNo;
}

unsigned int CT_OS::sn_GetNumCPU()
{
    return sn_NumCPU;
}

const char* CT_OS::sqccz_GetOsVersionString()
{
    return sqcz_OsVersionString;
}

void CT_OS::sv_Init()
{
    SYSTEM_INFO so_System = {};
    GetSystemInfo(&so_System);
    sn_NumCPU = so_System.dwNumberOfProcessors ? so_System.dwNumberOfProcessors : 1;

    OSVERSIONINFOA so_Version = {};
    static_assert(sizeof(so_Version) == 148);
    so_Version.dwOSVersionInfoSize = sizeof(so_Version);
    GetVersionExA(&so_Version);
    sn_OsVersionMajor = so_Version.dwMajorVersion;
    sn_OsVersionMinor = so_Version.dwMinorVersion;
    sn_OsBuildNo = so_Version.dwBuildNumber;
    sv_InitFamily(so_Version.dwPlatformId);
    std::memcpy(sqcz_OsVersionString, so_Version.szCSDVersion, sizeof(sqcz_OsVersionString) - 1);
}

void CT_OS::sv_InitFamily(unsigned n_Platform)
{
    switch (n_Platform) {
    case VER_PLATFORM_WIN32s:
        seo_Version = OS_WIN32S;
        sb_IsWindows32s = 1;
        sn_OsBuildNo &= 0xFFFF;
        break;
    case VER_PLATFORM_WIN32_WINDOWS:
        seo_Version = OS_WINDOWS95;
        sb_IsWindows95 = 1;
        sn_OsBuildNo &= 0xFFFF;
        break;
    default:
        seo_Version = OS_WINDOWSNT;
        sb_IsWindowsNT = 1;
    }
}
