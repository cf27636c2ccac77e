// winapi/tests/Process/SystemTest.cpp
#include "../Support/Calls.h"

#include <cstring>

namespace
{
// Room for the longer form of the version record, too.
struct VersionRecord
{
    OSVERSIONINFOA info;
    unsigned char more[8];
};
} // namespace

TEST(System, VersionIsOfTheFamilyThatIsAskedFor)
{
    VersionRecord record{};
    record.info.dwOSVersionInfoSize = sizeof(OSVERSIONINFOA);
    ASSERT_EQ(148u, sizeof(OSVERSIONINFOA));
    EXPECT_EQ(TRUE, GetVersionExA(&record.info));
    EXPECT_EQ(6u, record.info.dwMajorVersion);
    EXPECT_EQ(1u, record.info.dwMinorVersion);
    EXPECT_EQ(7601u, record.info.dwBuildNumber & 0xFFFF);
    EXPECT_EQ(DWORD(VER_PLATFORM_WIN32_NT), record.info.dwPlatformId);
    EXPECT_STREQ("Service Pack 1", record.info.szCSDVersion);
}

TEST(System, VersionRecordHasOneOfTwoSizes)
{
    VersionRecord record{};
    const auto ask = [&record](DWORD size) {
        record.info.dwOSVersionInfoSize = size;
        return GetVersionExA(&record.info);
    };
    RunRows({
        CALL(ask(148), 1, 0),
        CALL(ask(156), 1, 0),
        CALL(ask(147), 0, ERROR_INSUFFICIENT_BUFFER),
        CALL(ask(149), 0, ERROR_INSUFFICIENT_BUFFER),
        CALL(ask(0), 0, ERROR_INSUFFICIENT_BUFFER),
    });
}

TEST(System, RefusedRecordStaysAsItIs)
{
    VersionRecord record{};
    record.info.dwMajorVersion = 77;
    EXPECT_EQ(FALSE, GetVersionExA(&record.info));
    EXPECT_EQ(77u, record.info.dwMajorVersion);
}

TEST(System, FactsAboutTheMachine)
{
    SYSTEM_INFO info;
    std::memset(&info, 0xFF, sizeof info);
    GetSystemInfo(&info);
    EXPECT_EQ(4096u, info.dwPageSize);
    EXPECT_EQ(65536u, info.dwAllocationGranularity);
    EXPECT_GE(info.dwNumberOfProcessors, 1u);
    EXPECT_LE(info.dwNumberOfProcessors, 4096u);
    EXPECT_NE(0u, info.dwActiveProcessorMask);
}
