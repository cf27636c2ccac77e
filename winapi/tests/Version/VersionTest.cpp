// winapi/tests/Version/VersionTest.cpp: version records as files hold them.
#include "../Support/Calls.h"

#include "Support/Directory.h"
#include "Support/VersionFiles.h"

namespace
{
const Pairs PAIRS = {{"Comments", "text"}, {"ProductName", "name"}};

DWORD SizeOf(const char* name)
{
    DWORD handle = 77;
    const DWORD size = GetFileVersionInfoSizeA(name, &handle);
    EXPECT_EQ(handle, 0U);
    return size;
}

std::string RecordOf(const char* name, DWORD size)
{
    std::string data(size, '\xEE');
    EXPECT_TRUE(GetFileVersionInfoA(name, 0, size, data.data()));
    return data;
}

void ExpectRecord(const std::string& file, const std::string& record)
{
    WriteBytes("a.dll", file);
    const auto size = static_cast<DWORD>(record.size());
    EXPECT_EQ(SizeOf(".\\a.dll"), 2 * size + 4);
    EXPECT_EQ(RecordOf(".\\a.dll", 2 * size + 4).substr(0, size + 4), record + "FE2X");
}
} // namespace

TEST(Version, FilesForAllWidthsGiveTheirRecord)
{
    const std::string wide = SimpleRecord(Layout::WIDE, PAIRS);
    ExpectRecord(PortableFile(wide), wide);
    ExpectRecord(PortableFile(wide, true), wide);
}

TEST(Version, BothWidthsOfCallsAnswerTheSame)
{
    const std::string record = SimpleRecord(Layout::WIDE, PAIRS);
    WriteBytes("a.dll", PortableFile(record));
    DWORD handle = 77;
    const WideString name = Wide(".\\a.dll");
    const DWORD size = GetFileVersionInfoSizeW(name.c_str(), &handle);
    EXPECT_EQ(handle, 0U);
    EXPECT_EQ(size, SizeOf(".\\a.dll"));
    std::string data(size, 0);
    EXPECT_TRUE(GetFileVersionInfoW(name.c_str(), 0, size, data.data()));
    EXPECT_EQ(data.substr(0, record.size()), record);
    EXPECT_EQ(GetFileVersionInfoSizeW(name.c_str(), nullptr), size);
}

TEST(Version, WhatHasTooLittleRoomIsCut)
{
    const std::string record = SimpleRecord(Layout::WIDE, PAIRS);
    WriteBytes("a.dll", PortableFile(record));
    const auto size = static_cast<DWORD>(record.size());
    for (const DWORD room : {DWORD(2), DWORD(60), size - 1, size}) {
        std::string data(size + 1, '\xEE');
        EXPECT_TRUE(GetFileVersionInfoA(".\\a.dll", 0, room, data.data()));
        EXPECT_EQ(data.substr(0, room), record.substr(0, room));
        EXPECT_EQ(data.substr(room), std::string(size + 1 - room, '\xEE'));
    }
}

TEST(Version, WhatHasNoRecordIsTold)
{
    char data[100];
    WriteBytes("text", "MZ, but not much more");
    WriteBytes("empty", "");
    CreateDirectoryA(".\\dir", nullptr);
    std::string other = PortableFile(SimpleRecord(Layout::WIDE, PAIRS));
    other[PE_RESOURCES + 16] = 15; // another type of resource
    WriteBytes("other", other);
    RunRows({
        CALL(SizeOf(".\\text"), 0, ERROR_RESOURCE_DATA_NOT_FOUND),
        CALL(SizeOf(".\\empty"), 0, ERROR_RESOURCE_DATA_NOT_FOUND),
        CALL(SizeOf(".\\dir"), 0, ERROR_ACCESS_DENIED),
        CALL(SizeOf(".\\missing"), 0, ERROR_FILE_NOT_FOUND),
        CALL(SizeOf(".\\none\\missing"), 0, ERROR_PATH_NOT_FOUND),
        CALL(GetFileVersionInfoA(".\\text", 0, 100, data), 0, ERROR_RESOURCE_DATA_NOT_FOUND),
        CALL(GetFileVersionInfoA(".\\missing", 0, 100, data), 0, ERROR_FILE_NOT_FOUND),
        CALL(GetFileVersionInfoA(".\\missing", 0, 100, nullptr), 0, ERROR_INVALID_DATA),
    });
    EXPECT_EQ(SizeOf(".\\other"), 0U);
    EXPECT_NE(GetLastError(), 0U);
}
