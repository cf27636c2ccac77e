// tests/Ostra/File/FileTest.cpp
#include <Ostra/File/File.h>
#include <Ostra/File/WinFile.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "MemoryFile.h"
#include "Support/Directory.h"
#include "Support/Files.h"
#include "Support/Slots.h"

namespace fs = std::filesystem;

namespace
{
// A failure of the memory file's primitive, passed on by the named sources.
Failure Passed(std::vector<std::string> trail)
{
    trail.insert(trail.begin(), "MemoryFile");
    return {MemoryFile::CODE, "(4711): failed", trail};
}

const std::string FILE_SOURCE = "Ostra/File/File";
const std::string LINES_SOURCE = "Ostra/File/File";

std::vector<std::string> Parts(const CT_File& file)
{
    return {Get(*file.pcco_GetFullName()), Get(*file.pcco_GetDrive()),
            Get(*file.pcco_GetDirectory()), Get(*file.pcco_GetName()),
            Get(*file.pcco_GetExtension())};
}

typedef std::vector<std::string> Strings;

// Where an operation stands in the table of virtual functions. The destructor has two entries.
template <class Function>
unsigned Slot(Function function)
{
    return EntryOf(function) - 1;
}

template <class File>
std::vector<unsigned> Slots()
{
    return {
        Slot(static_cast<void (File::*)(const CT_File*)>(&File::vv_Set)),
        Slot(static_cast<void (File::*)(const CT_String*, unsigned)>(&File::vv_Set)),
        Slot(static_cast<void (File::*)()>(&File::vv_Set)),
        Slot(&File::vv_Open),
        Slot(&File::vv_Close),
        Slot(&File::vv_Flush),
        Slot(&File::vv_Remove),
        Slot(&File::vv_Rename),
        Slot(&File::vn_Read),
        Slot(&File::vn_Write),
        Slot(&File::vn_GetSize),
        Slot(&File::vn_GetOffset),
        Slot(&File::vv_SetOffset),
        Slot(&File::vb_IsEof),
    };
}

// The members in their order, seen from a derived class.
struct Members : MemoryFile
{
    std::vector<std::uintptr_t> Places() const
    {
        const void* places[] = {&co_FullName,   &co_Buffer,      &n_BufferOffset, &co_Drive,
                                &co_Directory,  &co_Name,        &co_Extension,   &n_BufferSize,
                                &ec_FileAccess, &b_Open,         &ec_OpenAccess,  &ec_OpenModi,
                                &ec_OpenShare,  &n_OpenAttribut, &n_OpenFlag};
        std::vector<std::uintptr_t> numbers;
        for (const void* place : places)
            numbers.push_back(reinterpret_cast<std::uintptr_t>(place));
        return numbers;
    }
};
} // namespace

TEST(File, VirtualOperationsStandInTheirOrder)
{
    const std::vector<unsigned> order = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14};
    EXPECT_EQ(Slots<CT_File>(), order);
    EXPECT_EQ(Slots<CT_WinFile>(), order);
}

TEST(File, MembersStandInTheirOrder)
{
    const std::vector<std::uintptr_t> places = Members().Places();
    EXPECT_TRUE(std::is_sorted(places.begin(), places.end()));
    EXPECT_EQ(sizeof(CT_File::et_Access) + sizeof(CT_File::et_Open) +
                  sizeof(CT_File::et_FileAccess),
              12u);
}

TEST(File, EnumerationsHaveTheirNumbers)
{
    EXPECT_EQ(CT_File::e_AccessNone, 0);
    EXPECT_EQ(CT_File::e_AccessRead, 1);
    EXPECT_EQ(CT_File::e_AccessWrite, 2);
    EXPECT_EQ(CT_File::e_AccessReadWrite, 3);
    EXPECT_EQ(CT_File::e_OpenExisting, 1);
    EXPECT_EQ(CT_File::e_OpenCreate, 2);
    EXPECT_EQ(CT_File::e_OpenAppend, 3);
    EXPECT_EQ(CT_File::e_ShareNone, 0);
    EXPECT_EQ(CT_File::e_ShareRead, 1);
    EXPECT_EQ(CT_File::e_ShareWrite, 2);
    EXPECT_EQ(CT_File::e_ShareReadWrite, 3);
    EXPECT_EQ(CT_File::e_OriginBegin, 0);
    EXPECT_EQ(CT_File::e_OriginCurrent, 1);
    EXPECT_EQ(CT_File::e_OriginEnd, 2);
    EXPECT_EQ(CT_File::e_FileAccessNone, 0);
    EXPECT_EQ(CT_File::e_FileAccessRead, 1);
    EXPECT_EQ(CT_File::e_FileAccessWrite, 2);
}

TEST(File, ANewFileIsNamelessAndClosed)
{
    const MemoryFile file;
    EXPECT_EQ(Parts(file), (Strings{"", "", "", "", ""}));
    EXPECT_EQ(file.b_IsOpen(), 0);
    EXPECT_EQ(file.Access(), CT_File::e_FileAccessNone);
    EXPECT_EQ(file.ec_GetOpenAccess(), 0);
    EXPECT_EQ(file.ec_GetOpenModi(), 0);
    EXPECT_EQ(file.ec_GetOpenShare(), 0);
    EXPECT_EQ(file.n_GetOpenAttribut(), 0u);
    EXPECT_EQ(file.n_GetOpenFlag(), 0u);
    EXPECT_TRUE(file.calls.empty());
}

TEST(File, BufferSizesAreRoundedUpToThousandTwentyFour)
{
    const CT_UString name = Name("x");
    const struct
    {
        unsigned size, rounded;
    } cases[] = {{0, 0},       {1, 1024},    {1023, 1024},   {1024, 1024},
                 {1025, 2048}, {2048, 2048}, {16000, 16384}, {0xFFFFFC00, 0xFFFFFC00}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.size);
        EXPECT_EQ(MemoryFile(&name, row.size).n_GetBufferSize(), row.rounded);
        MemoryFile file;
        file.vv_Set(&name, row.size);
        EXPECT_EQ(file.n_GetBufferSize(), row.rounded);
    }
}

TEST(File, AFileMadeFromAnotherTakesNameAndBufferSize)
{
    const CT_CString name("c:\\d\\n.e");
    MemoryFile first(&name, 3000);
    first.v_SetOpen(1);
    const MemoryFile second(static_cast<const CT_File*>(&first));
    EXPECT_EQ(Parts(second), (Strings{"c:\\d\\n.e", "c:", "\\d\\", "n", ".e"}));
    EXPECT_EQ(second.n_GetBufferSize(), 3072u);
    EXPECT_EQ(second.b_IsOpen(), 0);
    MemoryFile third;
    third.vv_Set(&first);
    EXPECT_EQ(Parts(third), Parts(first));
    EXPECT_EQ(third.n_GetBufferSize(), 3072u);
    EXPECT_EQ(third.b_IsOpen(), 0);
}

TEST(File, SetWithoutArgumentsKeepsTheBufferSizeOnly)
{
    const CT_UString name = Name("c:\\d\\n.e");
    MemoryFile file(&name, 3000);
    file.vv_Open(CT_File::e_AccessReadWrite, CT_File::e_OpenCreate, CT_File::e_ShareRead, 1, 8);
    file.v_SetAccess(CT_File::e_FileAccessRead);
    file.vv_Set();
    EXPECT_EQ(Parts(file), (Strings{"", "", "", "", ""}));
    EXPECT_EQ(file.n_GetBufferSize(), 3072u);
    EXPECT_EQ(file.b_IsOpen(), 0);
    EXPECT_EQ(file.Access(), CT_File::e_FileAccessNone);
}

TEST(File, SetTakesItsOwnNameAndItself)
{
    const CT_UString name = Name("c:\\d\\n.e");
    const Strings parts = {"c:\\d\\n.e", "c:", "\\d\\", "n", ".e"};
    MemoryFile file(&name, 3000);
    file.vv_Set(file.pcco_GetFullName(), 5000);
    EXPECT_EQ(Parts(file), parts);
    EXPECT_EQ(file.n_GetBufferSize(), 5120u);
    file.vv_Set(&file);
    EXPECT_EQ(Parts(file), parts);
    EXPECT_EQ(file.n_GetBufferSize(), 5120u);
    EXPECT_EQ(file.pcco_GetFullName()->pcco_GetBuffer()->n_GetUseCount(), 2u) << "with name";
    file.vv_Set(file.pcco_GetName(), 0);
    EXPECT_EQ(Parts(file), (Strings{"n", "", "", "n", ""}));
    EXPECT_TRUE(file.calls.empty());
}

TEST(File, NameAndPartsAgree)
{
    const CT_UString name = Name("c:\\d\\n.e");
    MemoryFile file(&name, 0);
    const CT_CString drive("x:"), directory("sub"), part("other"), extension("txt");
    file.v_SetDrive(&drive);
    EXPECT_EQ(Parts(file), (Strings{"x:\\d\\n.e", "x:", "\\d\\", "n", ".e"}));
    file.v_SetDirectory(&directory);
    EXPECT_EQ(Parts(file), (Strings{"x:sub\\n.e", "x:", "sub", "n", ".e"}));
    file.v_SetName(&part);
    EXPECT_EQ(Parts(file), (Strings{"x:sub\\other.e", "x:", "sub", "other", ".e"}));
    file.v_SetExtension(&extension);
    EXPECT_EQ(Parts(file), (Strings{"x:sub\\other.txt", "x:", "sub", "other", "txt"}));
    file.v_SetFullName(&drive);
    EXPECT_EQ(Parts(file), (Strings{"x:", "x:", "", "", ""}));
    EXPECT_TRUE(file.calls.empty()) << "names touch no file";
}

TEST(File, FullPathMakesTheNameAbsolute)
{
    const CT_UString name = Name("n.e");
    MemoryFile file(&name, 0);
    file.v_FullPath();
    const std::string path = fs::current_path().string() + SEPARATOR + "n.e";
    EXPECT_EQ(Parts(file)[0], path);
    EXPECT_EQ(Parts(file)[1] + Parts(file)[2], path.substr(0, path.size() - 3));
    EXPECT_EQ(Parts(file)[3], "n");
    EXPECT_EQ(TakeFailure(), Failure());
}

TEST(File, AFullPathThatFailsLeavesTheName)
{
    const std::string text(300, 'x');
    const CT_UString name = Name(text);
    MemoryFile file(&name, 0);
    file.v_FullPath();
    EXPECT_EQ(Parts(file)[0], text);
    EXPECT_EQ(
        TakeFailure(),
        (Failure{60012, "(60012): Semantic error: ", {"Ostra/File/FileSystem", FILE_SOURCE}}));
}

TEST(File, ExistenceIsThatOfTheName)
{
    const CT_UString name = Name("file");
    const MemoryFile file(&name, 0);
    EXPECT_EQ(file.b_IsExistent(), 0);
    WriteBytes("file", "");
    EXPECT_EQ(file.b_IsExistent(), 1);
}

TEST(File, AChangeOfDirectionSeeksToWhereTheFileStands)
{
    MemoryFile file;
    file.offset = 5;
    file.v_SetAccess(CT_File::e_FileAccessWrite);
    EXPECT_EQ(file.TakeCalls(), (Calls{"offset", "seek 0 5"}));
    EXPECT_EQ(file.Access(), CT_File::e_FileAccessWrite);
    file.v_SetAccess(CT_File::e_FileAccessWrite);
    EXPECT_EQ(file.TakeCalls(), Calls());
    file.v_SetAccess(CT_File::e_FileAccessRead);
    EXPECT_EQ(file.TakeCalls(), (Calls{"offset", "seek 0 5"}));
}

TEST(File, AChangeOfDirectionThatFailsKeepsTheOldOne)
{
    MemoryFile file;
    file.good = 1;
    file.v_SetAccess(CT_File::e_FileAccessWrite);
    EXPECT_EQ(file.Access(), CT_File::e_FileAccessNone);
    EXPECT_EQ(TakeFailure(), Passed({FILE_SOURCE}));
}

TEST(File, OnlyTheTwoBytesOfTheMarkMakeItUnicode)
{
    const struct
    {
        std::string data;
        int unicode;
    } cases[] = {{"\xFF\xFE", 1}, {"\xFF\xFE\x41", 1}, {"\xFE\xFF", 0},
                 {"\xFF\xFF", 0}, {"\xFE\xFE", 0},     {"\xFF", 0},
                 {"", 0},         {"ab", 0},           {"\xEF\xBB\xBF", 0}};
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::PrintToString(row.data));
        MemoryFile file;
        file.data = row.data;
        EXPECT_EQ(file.b_IsUnicode(), row.unicode);
        EXPECT_EQ(file.offset, 0u);
        if (row.data.size() < 2)
            EXPECT_EQ(file.TakeCalls(), (Calls{"offset", "seek 0 0", "size"}));
        else
            EXPECT_EQ(file.TakeCalls(),
                      (Calls{"offset", "seek 0 0", "size", "read 2", "seek 0 0"}));
    }
}

TEST(File, TheUnicodeTestLooksAtTheOffsetAndRewinds)
{
    MemoryFile file;
    file.data = "ab\xFF\xFEz";
    file.offset = 2;
    EXPECT_EQ(file.b_IsUnicode(), 1);
    EXPECT_EQ(file.offset, 0u);
    file.offset = 4;
    EXPECT_EQ(file.b_IsUnicode(), 0) << "one byte is left";
    EXPECT_EQ(file.offset, 0u);
    file.data = "x";
    file.offset = 1;
    EXPECT_EQ(file.b_IsUnicode(), 0);
    EXPECT_EQ(file.offset, 1u) << "a short file doesn't move";
}

TEST(File, AFailureInTheUnicodeTestGivesUp)
{
    const struct
    {
        int good;
        std::vector<std::string> trail;
    } cases[] = {{0, {FILE_SOURCE, LINES_SOURCE}},
                 {1, {FILE_SOURCE, LINES_SOURCE}},
                 {2, {LINES_SOURCE}},
                 {3, {LINES_SOURCE}},
                 {4, {LINES_SOURCE}}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.good);
        MemoryFile file;
        file.data = "\xFF\xFE";
        file.good = row.good;
        EXPECT_EQ(file.b_IsUnicode(), 0);
        EXPECT_EQ(file.TakeCalls().size(), row.good + 1u) << "the failing call is the last";
        EXPECT_EQ(TakeFailure(), Passed(row.trail));
    }
}

TEST(File, ReadReplacesTheContentOfABuffer)
{
    MemoryFile file;
    file.data = "abcdef";
    CT_Buffer buffer("old content", 11, 32);
    EXPECT_EQ(file.n_Read(&buffer, 4), 4u);
    EXPECT_EQ(buffer.n_GetUsedSize(), 4u);
    EXPECT_EQ(std::memcmp(buffer.qcv_Get(), "abcd", 4), 0);
    EXPECT_EQ(file.TakeCalls(), (Calls{"read 4"}));
    EXPECT_EQ(file.n_Read(&buffer, 100), 2u);
    EXPECT_EQ(buffer.n_GetUsedSize(), 2u);
    EXPECT_GE(buffer.n_GetMaximumSize(), 100u);
    EXPECT_EQ(file.n_Read(&buffer, 5), 0u);
    EXPECT_EQ(buffer.n_GetUsedSize(), 0u);
    CT_Buffer empty;
    file.offset = 0;
    EXPECT_EQ(file.n_Read(&empty, 6), 6u);
    EXPECT_EQ(std::memcmp(empty.qcv_Get(), "abcdef", 6), 0);
}

TEST(File, ReadOfNothingLeavesTheBufferAlone)
{
    MemoryFile file;
    CT_Buffer buffer("old", 3, 32);
    EXPECT_EQ(file.n_Read(&buffer, 0), 0u);
    EXPECT_EQ(buffer.n_GetUsedSize(), 3u);
    EXPECT_TRUE(file.calls.empty());
}

TEST(File, ReadLeavesOtherHoldersOfTheBlockAlone)
{
    MemoryFile file;
    file.data = "abc";
    CT_Buffer first("old", 3, 32);
    CT_Buffer second(&first);
    EXPECT_EQ(file.n_Read(&first, 3), 3u);
    EXPECT_EQ(std::memcmp(second.qcv_Get(), "old", 3), 0);
    EXPECT_EQ(std::memcmp(first.qcv_Get(), "abc", 3), 0);
    EXPECT_EQ(second.n_GetUseCount(), 1u);
}

TEST(File, AFailureOfReadOrWriteIsPassedOn)
{
    MemoryFile file;
    CT_Buffer buffer("old", 3, 32);
    file.good = 0;
    EXPECT_EQ(file.n_Read(&buffer, 3), 0u);
    EXPECT_EQ(TakeFailure(), Passed({FILE_SOURCE}));
    CT_Buffer other("old", 3, 32);
    file.good = 0;
    EXPECT_EQ(file.n_Write(&other, -1), 0u);
    EXPECT_EQ(TakeFailure(), Passed({FILE_SOURCE}));
}

TEST(File, WriteTakesTheUsedSizeOrAnyOther)
{
    MemoryFile file;
    CT_Buffer buffer("abcdef", 6, 32);
    buffer.v_SetUsedSize(4);
    EXPECT_EQ(file.n_Write(&buffer, -1), 4u);
    EXPECT_EQ(file.n_Write(&buffer, 2), 2u);
    EXPECT_EQ(file.n_Write(&buffer, 6), 6u) << "not cut to the used size";
    EXPECT_EQ(file.data, "abcdababcdef");
    EXPECT_EQ(file.TakeCalls(), (Calls{"write 4", "write 2", "write 6"}));
}

TEST(File, NothingToWriteCallsNothing)
{
    MemoryFile file;
    CT_Buffer buffer("abc", 3, 32);
    EXPECT_EQ(file.n_Write(&buffer, 0), 0u);
    buffer.v_SetUsedSize(0);
    EXPECT_EQ(file.n_Write(&buffer, 3), 0u);
    EXPECT_EQ(file.n_Write(&buffer, -1), 0u);
    const CT_Buffer none;
    EXPECT_EQ(file.n_Write(&none, 5), 0u);
    EXPECT_TRUE(file.calls.empty());
}

TEST(File, WriteStopsAtTheRoomOfTheBuffer)
{
    MemoryFile file;
    const CT_Buffer buffer("abc", 3, 32);
    EXPECT_EQ(file.n_Write(&buffer, 1000), buffer.n_GetMaximumSize());
    EXPECT_EQ(file.data.substr(0, 3), "abc");
}

TEST(File, LinesAreWrittenInBothWidths)
{
    MemoryFile file;
    const CT_UString wide = Name("ab");
    const CT_CString narrow("cd");
    file.v_WriteLineC(&wide, 1);
    file.v_WriteLineC(&narrow, 0);
    EXPECT_EQ(file.data, "ab\r\ncd");
    EXPECT_EQ(file.TakeCalls(), (Calls{"write 2", "write 2", "write 2"}));
    MemoryFile other;
    other.v_WriteLineU(&wide, 1);
    other.v_WriteLineU(&narrow, 0);
    EXPECT_EQ(other.data, std::string("a\0b\0\r\0\n\0c\0d\0", 12));
    EXPECT_EQ(other.TakeCalls(), (Calls{"write 4", "write 4", "write 4"}));
}

TEST(File, WithoutALineOnlyTheLineEndIsWritten)
{
    MemoryFile file;
    const CT_CString empty("");
    file.v_WriteLineC(nullptr, 1);
    file.v_WriteLineC(&empty, 1);
    file.v_WriteLineC(nullptr, 0);
    EXPECT_EQ(file.data, "\r\n\r\n");
    EXPECT_EQ(file.TakeCalls(), (Calls{"write 2", "write 2"}));
    MemoryFile other;
    other.v_WriteLineU(nullptr, 1);
    EXPECT_EQ(other.data, std::string("\r\0\n\0", 4));
}

TEST(File, ALineThatFailsHasNoLineEnd)
{
    const CT_CString line("ab");
    MemoryFile file;
    file.good = 0;
    file.v_WriteLineC(&line, 1);
    EXPECT_EQ(file.TakeCalls(), (Calls{"write 2"}));
    EXPECT_EQ(TakeFailure(), Passed({LINES_SOURCE}));
    file.good = 1;
    file.v_WriteLineU(&line, 1);
    EXPECT_EQ(file.TakeCalls(), (Calls{"write 4", "write 4"}));
    EXPECT_EQ(TakeFailure(), Passed({LINES_SOURCE}));
}

TEST(File, AFileIsAppendedInPieces)
{
    MemoryFile source, target;
    source.data = "abcdefg";
    target.data = "xyz";
    target.v_Append(&source, 3);
    EXPECT_EQ(target.data, "xyzabcdefg");
    EXPECT_EQ(source.TakeCalls(),
              (Calls{"open 1 1 0 1 0", "read 3", "read 3", "read 3", "read 3", "close"}));
    EXPECT_EQ(target.TakeCalls(),
              (Calls{"open 2 3 0 1 0", "write 3", "write 3", "write 1", "close"}));
    EXPECT_EQ(source.b_IsOpen(), 0);
    EXPECT_EQ(target.b_IsOpen(), 0);
    target.v_Append(&source, 0);
    EXPECT_EQ(target.data, "xyzabcdefg");
    EXPECT_EQ(target.TakeCalls(), (Calls{"open 2 3 0 1 0", "close"}));
}

TEST(File, AFailedAppendLeavesOpenWhatWasOpened)
{
    MemoryFile source, target;
    source.data = "abc";
    source.good = 0;
    target.v_Append(&source, 2);
    EXPECT_EQ(TakeFailure(), Passed({FILE_SOURCE}));
    EXPECT_TRUE(target.calls.empty());

    target.good = 0;
    target.v_Append(&source, 2);
    EXPECT_EQ(TakeFailure(), Passed({FILE_SOURCE}));
    EXPECT_EQ(source.b_IsOpen(), 1);
    EXPECT_EQ(target.b_IsOpen(), 0);

    target.good = 1;
    target.v_Append(&source, 2);
    EXPECT_EQ(TakeFailure(), Passed({FILE_SOURCE, FILE_SOURCE}));
    EXPECT_EQ(source.b_IsOpen(), 1);
    EXPECT_EQ(target.b_IsOpen(), 1);
}

TEST(File, AnAppendWhoseSourceCannotBeReadClosesBothFiles)
{
    MemoryFile source, target;
    source.data = "abc";
    source.good = 1;
    target.v_Append(&source, 2);
    EXPECT_EQ(TakeFailure(), Passed({FILE_SOURCE, FILE_SOURCE}));
    EXPECT_EQ(source.b_IsOpen(), 0);
    EXPECT_EQ(target.b_IsOpen(), 0);
}
