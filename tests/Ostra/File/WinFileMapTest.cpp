// tests/Ostra/File/WinFileMapTest.cpp
#include <Ostra/File/WinFile.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>
#include <filesystem>
#include <random>
#include <string>

#include "Support/Directory.h"
#include "WinFileProbe.h"

namespace fs = std::filesystem;

namespace
{
const SystemFailure NONE;

// A writer's file of some bytes with a map.
struct Mapped : WinFileProbe
{
    explicit Mapped(unsigned map, const std::string& text = "") : WinFileProbe("file")
    {
        WriteBytes("file", text);
        Open(e_OpenExisting);
        v_SetMapping(1, map);
    }
    std::string View() const
    {
        return std::string(static_cast<const char*>(pv_GetMapping()), vn_GetSize());
    }
};

std::string Padded(std::string text, unsigned size)
{
    text.resize(size);
    return text;
}
} // namespace

TEST(WinFileMap, AWritersMapIsLargerThanTheFile)
{
    const struct
    {
        unsigned file, asked, map;
    } cases[] = {{0, 16, 16},           {0, 1, 1},
                 {3, 16, 16},           {15, 16, 16},
                 {16, 16, 32},          {17, 16, 32},
                 {31, 16, 32},          {32, 16, 64},
                 {100, 1, 128},         {100, 3, 192},
                 {0, 0xFFFFF, 0xFFFFF}, {5, 5, 10},
                 {5, 0xFFFFFFFF, 5},    {4096, 0xFFFFFFFF, 4096}};
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.file << " bytes, map of " << row.asked);
        const std::string text(row.file, 'x');
        {
            Mapped file(row.asked, text);
            EXPECT_EQ(TakeSystem(), NONE);
            EXPECT_EQ(file.b_GetMapping(), 1);
            EXPECT_NE(file.pv_GetMapping(), nullptr);
            EXPECT_EQ(file.vn_GetSize(), row.map);
            EXPECT_EQ(file.View(), Padded(text, row.map)) << "zeros follow the text";
        }
        EXPECT_EQ(TakeSystem(), NONE);
        EXPECT_EQ(fs::file_size("file"), row.map) << "a close keeps the size of the map";
    }
}

TEST(WinFileMap, AReadersMapIsTheFile)
{
    WriteBytes("file", "abcdef");
    WinFileProbe file("file", CT_File::e_OpenExisting, CT_File::e_AccessRead);
    file.v_SetMapping(1, 0xFFFFF);
    EXPECT_EQ(file.b_GetMapping(), 1);
    EXPECT_EQ(file.vn_GetSize(), 6u);
    EXPECT_EQ(file.Read(4), "abcd");
    EXPECT_EQ(file.Read(4), "ef") << "clipped at the end";
    EXPECT_EQ(file.vb_IsEof(), 1);
    EXPECT_EQ(file.Read(4), "");
    file.vv_SetOffset(CT_File::e_OriginBegin, 100);
    EXPECT_EQ(file.Read(4), "");
    file.vv_SetOffset(CT_File::e_OriginEnd, -1);
    EXPECT_EQ(file.Read(4), "f");
    file.v_SetMapping(0, 3);
    EXPECT_EQ(file.b_GetMapping(), 0);
    file.vv_Close();
    EXPECT_EQ(TakeSystem(), NONE);
    EXPECT_EQ(ReadBytes("file"), "abcdef") << "a reader cuts nothing";
}

TEST(WinFileMap, TransfersAreCopiesToAndFromTheView)
{
    Mapped file(16, "abc");
    EXPECT_EQ(file.Read(16), Padded("abc", 16)) << "zeros behind what was written";
    file.vv_SetOffset(CT_File::e_OriginBegin, 2);
    EXPECT_EQ(file.Write("XYZ"), 3u);
    EXPECT_EQ(file.vn_GetOffset(), 5u);
    EXPECT_EQ(file.View(), Padded("abXYZ", 16));
    static_cast<char*>(file.pv_GetMapping())[0] = '!';
    file.vv_SetOffset(CT_File::e_OriginBegin, 0);
    EXPECT_EQ(file.Read(3), "!bX");
    file.v_FlushMap();
    file.v_SetMapping(0, 5);
    file.vv_Close();
    EXPECT_EQ(TakeSystem(), NONE);
    EXPECT_EQ(ReadBytes("file"), "!bXYZ");
}

TEST(WinFileMap, AWriteThatFitsDoesNotGrow)
{
    Mapped file(16);
    EXPECT_EQ(file.Write(std::string(16, 'a')), 16u);
    EXPECT_EQ(file.vn_GetSize(), 16u);
    EXPECT_EQ(file.Write("b"), 1u);
    EXPECT_EQ(file.vn_GetSize(), 32u);
    EXPECT_EQ(file.View(), Padded(std::string(16, 'a') + "b", 32));
    file.vv_SetOffset(CT_File::e_OriginBegin, 30);
    EXPECT_EQ(file.Write("cc"), 2u);
    EXPECT_EQ(file.vn_GetSize(), 32u);
    EXPECT_EQ(file.vn_Write(nullptr, 0), 0u);
    EXPECT_EQ(file.vn_GetSize(), 32u);
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFileMap, TheMapGrowsToTwiceItsSize)
{
    Mapped file(16);
    EXPECT_EQ(file.Write(std::string(32, 'a')), 32u);
    EXPECT_EQ(file.vn_GetSize(), 32u);
    EXPECT_EQ(file.vn_GetOffset(), 32u);
    EXPECT_EQ(file.Write("b"), 1u);
    EXPECT_EQ(file.vn_GetSize(), 64u);
    EXPECT_EQ(file.View(), Padded(std::string(32, 'a') + "b", 64));
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFileMap, AMapOfTheWholeFileGrowsToo)
{
    Mapped file(0xFFFFFFFF, "abc");
    file.vv_SetOffset(CT_File::e_OriginEnd, 0);
    EXPECT_EQ(file.Write("d"), 1u);
    EXPECT_EQ(file.View(), Padded("abcd", 6));
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFileMap, AWriteOfMoreThanTwiceTheMapIsRefused)
{
    Mapped file(16);
    EXPECT_EQ(file.Write(std::string(33, 'a')), 0u);
    EXPECT_EQ(TakeSystem(), (SystemFailure{8, "file", {WINFILE_PLACE, WINFILE_PLACE}}));
    EXPECT_EQ(file.vn_GetOffset(), 0u);
    EXPECT_EQ(file.View(), std::string(32, '\0')) << "it has grown once";
    EXPECT_EQ(file.Write(std::string(32, 'a')), 32u);
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFileMap, AWriteBeyondThirtyTwoBitsIsRefused)
{
    Mapped file(16);
    file.vv_SetOffset(CT_File::e_OriginBegin, 0x7FFFFFFF);
    EXPECT_EQ(file.vn_Write("never looked at", 0x80000010), 0u);
    EXPECT_EQ(TakeSystem(), (SystemFailure{8, "file", {WINFILE_PLACE, WINFILE_PLACE}}));
}

TEST(WinFileMap, AReaderDoesNotWriteToItsMap)
{
    WriteBytes("file", "abc");
    WinFileProbe file("file", CT_File::e_OpenExisting, CT_File::e_AccessRead);
    file.v_SetMapping(1, 16);
    EXPECT_EQ(file.Write("x"), 0u);
    EXPECT_EQ(TakeSystem(), (SystemFailure{5, "file", {WINFILE_PLACE, WINFILE_PLACE}}));
    EXPECT_EQ(file.b_GetMapping(), 1);
    EXPECT_EQ(file.Read(3), "abc");
}

TEST(WinFileMap, LeavingMappedModeCutsTheFile)
{
    Mapped file(16, "abc");
    file.v_SetMapping(0, 2);
    EXPECT_EQ(file.b_GetMapping(), 0);
    EXPECT_EQ(file.vn_GetSize(), 2u);
    EXPECT_EQ(file.vn_GetOffset(), 2u) << "the offset stays at the cut";
    EXPECT_EQ(file.Write("XY"), 2u);
    file.vv_Close();
    EXPECT_EQ(TakeSystem(), NONE);
    EXPECT_EQ(ReadBytes("file"), "abXY");
}

TEST(WinFileMap, LeavingMappedModeWithoutASizeKeepsTheMapsSize)
{
    Mapped file(16, "abc");
    file.vv_SetOffset(CT_File::e_OriginBegin, 1);
    EXPECT_EQ(file.Read(1), "b");
    file.v_SetMapping(0, 0);
    EXPECT_EQ(file.vn_GetOffset(), 2u);
    EXPECT_EQ(file.vn_GetSize(), 16u);
    EXPECT_EQ(file.b_GetMapping(), 0);
    file.v_SetMapping(1, 16);
    EXPECT_EQ(file.vn_GetSize(), 32u) << "as large as the map asked for: twice that";
    EXPECT_EQ(TakeSystem(), NONE);
}

// The system's pointer is moved by seeks alone: what counts from it counts from the last seek.
TEST(WinFileMap, MappedTransfersLeaveTheSystemsPointer)
{
    Mapped file(64);
    EXPECT_EQ(file.Write("abcdefghij"), 10u);
    file.vv_SetOffset(CT_File::e_OriginCurrent, -1);
    EXPECT_EQ(TakeSystem(), (SystemFailure{131, "file", {WINFILE_PLACE}}));
    EXPECT_EQ(file.vn_GetOffset(), 10u);
    file.vv_SetOffset(CT_File::e_OriginCurrent, 5);
    EXPECT_EQ(file.vn_GetOffset(), 15u);
    EXPECT_EQ(SetFilePointer(file.h_GetHandle(), 0, nullptr, FILE_CURRENT), 5u);
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFileMap, LeavingMappedModeGoesOnAtTheOffset)
{
    Mapped file(16);
    EXPECT_EQ(file.Write("twelve bytes"), 12u);
    file.v_SetMapping(0, 0);
    EXPECT_EQ(file.Write("body"), 4u);
    EXPECT_EQ(file.vn_GetOffset(), 16u);
    file.v_SetEndOfFile();
    file.vv_Close();
    EXPECT_EQ(TakeSystem(), NONE);
    EXPECT_EQ(ReadBytes("file"), "twelve bytesbody");
    WinFileProbe reader("file", CT_File::e_OpenExisting, CT_File::e_AccessRead);
    reader.v_SetMapping(1, 0);
    EXPECT_EQ(reader.Read(7), "twelve ");
    reader.v_SetMapping(0, 5);
    EXPECT_EQ(reader.Read(5), "bytes");
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFileMap, AnEmptyFileHasNoReadersMap)
{
    WriteBytes("file", "");
    WinFileProbe file("file", CT_File::e_OpenExisting, CT_File::e_AccessRead);
    file.v_SetMapping(1, 16);
    EXPECT_EQ(TakeSystem(), (SystemFailure{1006, "file", {WINFILE_PLACE, WINFILE_PLACE}}));
    EXPECT_EQ(file.b_GetMapping(), 0);
    EXPECT_EQ(file.Read(1), "") << "transfers go on without a map";
    file.vv_Close();
    EXPECT_EQ(TakeSystem(), NONE);
    WinFileProbe writer("file", CT_File::e_OpenExisting);
    writer.v_SetMapping(1, 0xFFFFFFFF);
    EXPECT_EQ(TakeSystem(), (SystemFailure{1006, "file", {WINFILE_PLACE, WINFILE_PLACE}}));
}

TEST(WinFileMap, AMapNeedsReadAccess)
{
    WinFileProbe file("file", CT_File::e_OpenCreate, CT_File::e_AccessWrite);
    file.v_SetMapping(1, 16);
    EXPECT_EQ(TakeSystem(), (SystemFailure{5, "file", {WINFILE_PLACE, WINFILE_PLACE}}));
    EXPECT_EQ(file.b_GetMapping(), 0);
    EXPECT_EQ(file.Write("abc"), 3u);
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFileMap, AMapOfNothingIsRefusedInsteadOfDoubledForEver)
{
    Mapped file(0, "abc");
    EXPECT_EQ(TakeSystem(), (SystemFailure{87, "file", {WINFILE_PLACE, WINFILE_PLACE}}));
    EXPECT_EQ(file.b_GetMapping(), 0);
    EXPECT_EQ(file.vn_GetSize(), 3u);
}

TEST(WinFileMap, AMapOfMoreThanThirtyTwoBitsIsRefused)
{
    WriteBytes("file", "");
    fs::resize_file("file", 0x80000000);
    WinFileProbe file("file", CT_File::e_OpenExisting);
    for (const unsigned size : {0x80000000u, 0x40000000u, 1u}) {
        SCOPED_TRACE(size);
        file.v_SetMapping(1, size);
        EXPECT_EQ(TakeSystem(), (SystemFailure{8, "file", {WINFILE_PLACE, WINFILE_PLACE}}));
        EXPECT_EQ(file.vn_GetSize(), 0x80000000u);
    }
}

TEST(WinFileMap, AClosedFileHasNoMap)
{
    WinFileProbe file("file");
    file.v_SetMapping(1, 16);
    EXPECT_EQ(
        TakeSystem(),
        (SystemFailure{2, "file", {WINFILE_PLACE, WINFILE_PLACE, WINFILE_PLACE, WINFILE_PLACE}}));
    WriteBytes("file", "abc");
    file.v_SetMapping(1, 16);
    EXPECT_EQ(TakeSystem(), (SystemFailure{6, "file", {WINFILE_PLACE, WINFILE_PLACE}}));
    EXPECT_EQ(file.b_GetMapping(), 0);
    EXPECT_EQ(ReadBytes("file"), "abc");
}

TEST(WinFileMap, LeavingAModeThatWasNotEnteredIsReported)
{
    WinFileProbe file("file", CT_File::e_OpenCreate);
    file.v_SetMapping(0, 0);
    EXPECT_EQ(TakeSystem(),
              (SystemFailure{487, "file", {WINFILE_PLACE, WINFILE_PLACE, WINFILE_PLACE}}));
    file.v_FlushMap();
    EXPECT_EQ(TakeSystem(), (SystemFailure{87, "file", {WINFILE_PLACE}}));
}

TEST(WinFileMap, AReaderAndAnotherReaderSeeTheSameFile)
{
    WriteBytes("file", "abc");
    WinFileProbe first("file", CT_File::e_OpenExisting, CT_File::e_AccessRead,
                       CT_File::e_ShareRead);
    WinFileProbe second("file", CT_File::e_OpenExisting, CT_File::e_AccessRead,
                        CT_File::e_ShareRead);
    first.v_SetMapping(1, 0);
    second.v_SetMapping(1, 0);
    EXPECT_EQ(first.Read(9), "abc");
    first.vv_Close();
    EXPECT_EQ(second.Read(9), "abc");
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFileMapModel, RandomTransfers)
{
    const unsigned seed = Seed(19970102);
    SCOPED_TRACE("OSTRA_SEED=" + std::to_string(seed));
    std::mt19937 random(seed);
    const auto below = [&](unsigned limit) {
        return static_cast<unsigned>(random() % limit);
    };
    for (int round = 0; round < 8; ++round) {
        std::string model(below(40), 'x');
        unsigned map = 16 + below(16);
        Mapped file(map, model);
        while (map <= model.size())
            map *= 2;
        model.resize(map);
        for (int step = 0; step < 60; ++step) {
            SCOPED_TRACE(testing::Message() << "round " << round << " step " << step);
            const unsigned offset = below(map + 4);
            const unsigned size = below(map);
            file.vv_SetOffset(CT_File::e_OriginBegin, static_cast<int>(offset));
            if (below(2)) {
                const std::string wanted = offset < map ? model.substr(offset, size) : "";
                ASSERT_EQ(file.Read(size), wanted);
                ASSERT_EQ(file.vn_GetOffset(), offset + wanted.size());
            } else if (map < 3000 || offset + size <= map) {
                const std::string text(size, static_cast<char>('a' + below(26)));
                if (offset + size > map)
                    map *= 2;
                model.resize(map);
                model.replace(offset, size, text);
                ASSERT_EQ(file.Write(text), size);
            }
            ASSERT_EQ(file.vn_GetSize(), map);
            ASSERT_EQ(std::memcmp(file.pv_GetMapping(), model.data(), map), 0);
        }
        file.v_SetMapping(0, 7);
        file.vv_Close();
        EXPECT_EQ(ReadBytes("file"), model.substr(0, 7));
        EXPECT_EQ(TakeSystem(), NONE);
    }
}
