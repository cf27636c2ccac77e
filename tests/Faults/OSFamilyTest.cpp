// tests/Faults/OSFamilyTest.cpp: the family that each platform id stands for.
//
// No system reports all of them, so the step that looks at the id is called by itself.
#include <System/OS/OS.h>

#include <gtest/gtest.h>

#include <windows.h>

#include "Support/Private.h"

OSTRA_PRIVATE(InitFamily, void (*)(unsigned), &CT_OS::sv_InitFamily);
OSTRA_PRIVATE(Family, CT_OS::et_OS*, &CT_OS::seo_Version);
OSTRA_PRIVATE(BuildNumber, unsigned*, &CT_OS::sn_OsBuildNo);
OSTRA_PRIVATE(WindowsNT, int*, &CT_OS::sb_IsWindowsNT);
OSTRA_PRIVATE(Windows95, int*, &CT_OS::sb_IsWindows95);
OSTRA_PRIVATE(Windows32s, int*, &CT_OS::sb_IsWindows32s);

namespace
{
// Puts the answers back that the program came up with.
class OSFamily : public testing::Test
{
protected:
    ~OSFamily() override
    {
        *Private(Family()) = family;
        *Private(BuildNumber()) = build;
        *Private(WindowsNT()) = nt;
        *Private(Windows95()) = nine_five;
        *Private(Windows32s()) = subset;
    }

private:
    const CT_OS::et_OS family = CT_OS::seo_GetVersion();
    const unsigned build = CT_OS::sn_GetOsVersionBuild();
    const int nt = CT_OS::sb_GetIsWindowsNT();
    const int nine_five = CT_OS::sb_GetIsWindows95();
    const int subset = CT_OS::sb_GetIsWindows32s();
};
} // namespace

TEST_F(OSFamily, EveryUnknownPlatformIsNT)
{
    const struct
    {
        unsigned platform;
        CT_OS::et_OS family;
        unsigned build;
    } cases[] = {
        {VER_PLATFORM_WIN32s, CT_OS::OS_WIN32S, 0x5678},
        {VER_PLATFORM_WIN32_WINDOWS, CT_OS::OS_WINDOWS95, 0x5678},
        {VER_PLATFORM_WIN32_NT, CT_OS::OS_WINDOWSNT, 0x12345678},
        {3, CT_OS::OS_WINDOWSNT, 0x12345678},
        {0xFFFFFFFF, CT_OS::OS_WINDOWSNT, 0x12345678},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.platform);
        *Private(WindowsNT()) = *Private(Windows95()) = *Private(Windows32s()) = 0;
        *Private(BuildNumber()) = 0x12345678;
        Private(InitFamily())(row.platform);
        EXPECT_EQ(CT_OS::seo_GetVersion(), row.family);
        EXPECT_EQ(CT_OS::sb_GetIsWindows32s(), row.family == CT_OS::OS_WIN32S);
        EXPECT_EQ(CT_OS::sb_GetIsWindows95(), row.family == CT_OS::OS_WINDOWS95);
        EXPECT_EQ(CT_OS::sb_GetIsWindowsNT(), row.family == CT_OS::OS_WINDOWSNT);
        EXPECT_EQ(CT_OS::sn_GetOsVersionBuild(), row.build);
    }
}
