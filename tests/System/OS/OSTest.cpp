// tests/System/OS/OSTest.cpp
#include <System/OS/OS.h>

#include <gtest/gtest.h>

#include <windows.h>

namespace
{
OSVERSIONINFOA Version()
{
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof(version);
    EXPECT_TRUE(GetVersionExA(&version));
    return version;
}
} // namespace

TEST(OS, FamiliesHaveTheirNumbers)
{
    EXPECT_EQ(CT_OS::OS_WIN32S, 1);
    EXPECT_EQ(CT_OS::OS_WINDOWS95, 2);
    EXPECT_EQ(CT_OS::OS_WINDOWSNT, 4);
}

TEST(OS, FamilyIsThatOfTheSystem)
{
    const DWORD platform = Version().dwPlatformId;
    const CT_OS::et_OS expected = platform == 0   ? CT_OS::OS_WIN32S
                                  : platform == 1 ? CT_OS::OS_WINDOWS95
                                                  : CT_OS::OS_WINDOWSNT;
    EXPECT_EQ(CT_OS::seo_GetVersion(), expected);
    EXPECT_EQ(CT_OS::sb_GetIsWindows32s(), expected == CT_OS::OS_WIN32S);
    EXPECT_EQ(CT_OS::sb_GetIsWindows95(), expected == CT_OS::OS_WINDOWS95);
    EXPECT_EQ(CT_OS::sb_GetIsWindowsNT(), expected == CT_OS::OS_WINDOWSNT);
}

TEST(OS, SecondReleaseOfWindows95IsNeverSeen)
{
    EXPECT_EQ(CT_OS::sb_GetIsWindows95OSR2(), 0);
}

TEST(OS, VersionNumbersAreThoseOfTheSystem)
{
    const OSVERSIONINFOA version = Version();
    EXPECT_EQ(CT_OS::sn_GetOsVersionMajor(), version.dwMajorVersion);
    EXPECT_EQ(CT_OS::sn_GetOsVersionMinor(), version.dwMinorVersion);
    const DWORD mask = version.dwPlatformId <= 1 ? 0xFFFF : 0xFFFFFFFF;
    EXPECT_EQ(CT_OS::sn_GetOsVersionBuild(), version.dwBuildNumber & mask);
    EXPECT_STREQ(CT_OS::sqccz_GetOsVersionString(), version.szCSDVersion);
}

TEST(OS, ProcessorsAreThoseOfTheSystem)
{
    SYSTEM_INFO system = {};
    GetSystemInfo(&system);
    EXPECT_EQ(CT_OS::sn_GetNumCPU(), system.dwNumberOfProcessors);
    EXPECT_GE(CT_OS::sn_GetNumCPU(), 1U);
}
