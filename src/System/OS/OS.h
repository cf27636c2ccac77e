// System/OS/OS.h: facts about the operating system.
#pragma once

#include <Ostra/Frame/Export.h>
#include <Ostra/Frame/Init.h>

// What is asked again and again of the system and never changes: its family, its version, the
// processors.
//
// The answers are collected once while the library is loaded; before that all of them are 0, so
// that code which runs earlier takes the road without wide calls.
//
// Reports: nothing.
// Threads: any number.
class OSTRA_API CT_OS
{
public:
    enum et_OS
    {
        OS_WIN32S = 1,
        OS_WINDOWS95 = 2,
        OS_WINDOWSNT = 4
    };

    // The family; none of the enumerators, 0, before the answers are there.
    static et_OS seo_GetVersion();
    // True where the system's wide calls are to be used.
    static int sb_GetIsWindowsNT();
    static int sb_GetIsWindows95();
    // Always false.
    static int sb_GetIsWindows95OSR2();
    static int sb_GetIsWindows32s();
    static unsigned int sn_GetOsVersionMajor();
    static unsigned int sn_GetOsVersionMinor();
    // The build number; its low 16 bits only on Win32s and Windows 95.
    static unsigned int sn_GetOsVersionBuild();
    // At least 1.
    static unsigned int sn_GetNumCPU();
    // The system's own additional text, such as the name of a service pack.
    static const char* sqccz_GetOsVersionString();

private:
    static void sv_Init();
    static void sv_InitFamily(unsigned n_Platform);

    static et_OS seo_Version;
    static unsigned sn_OsVersionMajor;
    static unsigned sn_OsVersionMinor;
    static unsigned sn_OsBuildNo;
    static unsigned sn_NumCPU;
    static int sb_IsWindowsNT;
    static int sb_IsWindows95;
    static int sb_IsWindows95OSR2;
    static int sb_IsWindows32s;
    static char sqcz_OsVersionString[128];
    static CT_Init sco_Init;
};
