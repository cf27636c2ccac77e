// tests/Ostra/File/WinFileTest.cpp
#include <Ostra/File/WinFile.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <string>

#include "Support/Directory.h"
#include "WinFileProbe.h"

namespace fs = std::filesystem;

namespace
{
const SystemFailure NONE;

// What a closed object looks like.
void ExpectClosed(const WinFileProbe& file)
{
    EXPECT_EQ(file.b_IsOpen(), 0);
    EXPECT_EQ(file.h_GetHandle(), nullptr);
    EXPECT_EQ(file.vn_GetOffset(), 0u);
    EXPECT_EQ(file.Access(), CT_File::e_FileAccessNone);
    EXPECT_EQ(file.ec_GetOpenAccess(), 0);
    EXPECT_EQ(file.ec_GetOpenModi(), 0);
    EXPECT_EQ(file.ec_GetOpenShare(), 0);
    EXPECT_EQ(file.n_GetOpenAttribut(), 0u);
    EXPECT_EQ(file.n_GetOpenFlag(), 0u);
    EXPECT_EQ(file.b_GetMapping(), 0);
    EXPECT_EQ(file.pv_GetMapping(), nullptr);
}
} // namespace

TEST(WinFile, ANewFileIsClosed)
{
    const CT_UString name = Name("d/n.e");
    ExpectClosed(WinFileProbe("x"));
    const CT_WinFile empty;
    EXPECT_EQ(empty.h_GetHandle(), nullptr);
    EXPECT_EQ(empty.b_IsOpen(), 0);
    const CT_WinFile named(&name, 100);
    EXPECT_EQ(named.n_GetBufferSize(), 1024u);
    EXPECT_EQ(Get(*named.pcco_GetName()), "n");
    const CT_WinFile copy(&named);
    EXPECT_EQ(copy.n_GetBufferSize(), 1024u);
    EXPECT_EQ(Get(*copy.pcco_GetFullName()), "d/n.e");
}

TEST(WinFile, ObjectsLiveOnTheHeapToo)
{
    const CT_UString name = Name("file");
    CT_File* file = new CT_WinFile(&name, 0);
    file->vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone, 1, 0);
    delete file;
    EXPECT_TRUE(fs::exists("file"));
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFile, OpenKeepsItsArguments)
{
    WinFileProbe file("file");
    file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareRead, 1, 8);
    EXPECT_EQ(file.b_IsOpen(), 1);
    EXPECT_NE(file.h_GetHandle(), nullptr);
    EXPECT_EQ(file.ec_GetOpenAccess(), CT_File::e_AccessWrite);
    EXPECT_EQ(file.ec_GetOpenModi(), CT_File::e_OpenCreate);
    EXPECT_EQ(file.ec_GetOpenShare(), CT_File::e_ShareRead);
    EXPECT_EQ(file.n_GetOpenAttribut(), 1u);
    EXPECT_EQ(file.n_GetOpenFlag(), 8u);
    file.vv_Close();
    ExpectClosed(file);
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFile, OpenExistingNeedsTheFile)
{
    WinFileProbe file("file");
    file.Open(CT_File::e_OpenExisting);
    EXPECT_EQ(TakeSystem(), (SystemFailure{2, "file", {WINFILE_PLACE}}));
    EXPECT_EQ(GetLastError(), 0u) << "the report takes it away";
    EXPECT_EQ(file.b_IsOpen(), 0);
    EXPECT_EQ(file.h_GetHandle(), INVALID_HANDLE_VALUE);
    EXPECT_EQ(file.n_GetOpenAttribut(), 0u) << "the record is as it was";
    WriteBytes("file", "abc");
    file.Open(CT_File::e_OpenExisting);
    EXPECT_EQ(file.b_IsOpen(), 1) << "a failed open can be repeated";
    EXPECT_EQ(file.Read(9), "abc");
}

TEST(WinFile, OpenCreateEmptiesTheFile)
{
    WriteBytes("file", "abc");
    WinFileProbe file("file", CT_File::e_OpenCreate);
    EXPECT_EQ(file.vn_GetSize(), 0u);
    EXPECT_EQ(GetLastError(), 0u);
    EXPECT_EQ(file.Write("x"), 1u);
    file.vv_Close();
    EXPECT_EQ(ReadBytes("file"), "x");
}

TEST(WinFile, OpenAppendStandsAtTheEnd)
{
    WriteBytes("file", "abc");
    WinFileProbe file("file", CT_File::e_OpenAppend);
    EXPECT_EQ(file.vn_GetOffset(), 3u);
    EXPECT_EQ(GetLastError(), 0u) << "the note of an existing file is taken away";
    EXPECT_EQ(file.Write("de"), 2u);
    file.vv_Close();
    EXPECT_EQ(ReadBytes("file"), "abcde");
    WinFileProbe other("new", CT_File::e_OpenAppend);
    EXPECT_EQ(other.vn_GetOffset(), 0u);
    EXPECT_EQ(other.b_IsOpen(), 1);
    EXPECT_EQ(TakeSystem(), NONE);
}

// Windows refuses the disposition of the second attempt, whatever was in the way of the first one.
TEST(WinFile, AnAppendThatFailsReportsItsSecondAttempt)
{
    {
        WinFileProbe file("missing/file", CT_File::e_OpenAppend);
        EXPECT_EQ(TakeSystem(),
                  (SystemFailure{HOST_PATHS ? 3u : 87u, "missing/file", {WINFILE_PLACE}}));
        EXPECT_EQ(file.h_GetHandle(), INVALID_HANDLE_VALUE);
    }
    fs::create_directory("directory");
    WinFileProbe directory("directory", CT_File::e_OpenAppend);
    EXPECT_EQ(TakeSystem(), (SystemFailure{HOST_PATHS ? 5u : 87u, "directory", {WINFILE_PLACE}}));
    WriteBytes("file", "abc");
    WinFileProbe reader("file", CT_File::e_OpenExisting);
    WinFileProbe file("file", CT_File::e_OpenAppend);
    EXPECT_EQ(TakeSystem(), (SystemFailure{HOST_PATHS ? 32u : 87u, "file", {WINFILE_PLACE}}));
    EXPECT_EQ(file.b_IsOpen(), 0);
}

TEST(WinFile, AnUnknownWayToOpenIsRefused)
{
    WinFileProbe file("file", CT_File::et_Open());
    EXPECT_EQ(TakeSystem(), (SystemFailure{87, "file", {WINFILE_PLACE}}));
    EXPECT_FALSE(fs::exists("file"));
}

TEST(WinFile, AnEmptyNameIsReportedAsSuch)
{
    WinFileProbe file("", CT_File::e_OpenExisting);
    EXPECT_EQ(TakeSystem(), (SystemFailure{3, "", {WINFILE_PLACE}}));
}

TEST(WinFile, TransfersNeedTheirAccess)
{
    const struct
    {
        CT_File::et_Access access;
        bool reads, writes;
    } cases[] = {{CT_File::e_AccessNone, false, false},
                 {CT_File::e_AccessRead, true, false},
                 {CT_File::e_AccessWrite, false, true},
                 {CT_File::e_AccessReadWrite, true, true}};
    const SystemFailure denied = {5, "file", {WINFILE_PLACE}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.access);
        WriteBytes("file", "abc");
        WinFileProbe file("file", CT_File::e_OpenExisting, row.access);
        ASSERT_EQ(TakeSystem(), NONE);
        EXPECT_EQ(file.Read(1), row.reads ? "a" : "");
        EXPECT_EQ(TakeSystem(), row.reads ? NONE : denied);
        EXPECT_EQ(file.Write("b"), row.writes ? 1u : 0u);
        EXPECT_EQ(TakeSystem(), row.writes ? NONE : denied);
    }
}

TEST(WinFile, AttributesOfTheOpenReachTheFile)
{
    WinFileProbe file("file");
    file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone, 16, 0);
    file.vv_Close();
    EXPECT_EQ(file.n_GetAttributes() & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY),
              static_cast<unsigned>(FILE_ATTRIBUTE_READONLY));
    file.v_SetAttributes(FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(TakeSystem().code, 0u);
    file.vv_Remove();
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFile, FlagsOfTheOpenReachTheFile)
{
    WinFileProbe file("file");
    file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone, 1,
                 32 | 16 | 1);
    EXPECT_EQ(TakeSystem(), NONE);
    EXPECT_EQ(file.Write("x"), 1u);
    file.vv_Close();
    EXPECT_FALSE(fs::exists("file")) << "deleted on close";
}

TEST(WinFile, ShareModesHoldBetweenTwoFiles)
{
    WriteBytes("file", "");
    for (int number = 0; number < 256; ++number) {
        const int access1 = number & 3, share1 = number >> 2 & 3;
        const int access2 = number >> 4 & 3, share2 = number >> 6;
        SCOPED_TRACE(testing::Message() << "access " << access1 << " share " << share1
                                        << ", then access " << access2 << " share " << share2);
        // One without access to the data takes no part.
        const bool fits = !access1 || !access2 || (!(access1 & ~share2) && !(access2 & ~share1));
        WinFileProbe first("file"), second("file");
        first.Open(CT_File::e_OpenExisting, CT_File::et_Access(access1), CT_File::et_Share(share1));
        ASSERT_EQ(TakeSystem(), NONE);
        second.Open(CT_File::e_OpenExisting, CT_File::et_Access(access2),
                    CT_File::et_Share(share2));
        EXPECT_EQ(TakeSystem(), fits ? NONE : (SystemFailure{32, "file", {WINFILE_PLACE}}));
    }
}

TEST(WinFile, ReadAndWriteMoveTheOffset)
{
    WinFileProbe file("file", CT_File::e_OpenCreate);
    EXPECT_EQ(file.Write("abcdef"), 6u);
    EXPECT_EQ(file.vn_GetOffset(), 6u);
    file.vv_SetOffset(CT_File::e_OriginBegin, 1);
    EXPECT_EQ(file.Read(3), "bcd");
    EXPECT_EQ(file.vn_GetOffset(), 4u);
    EXPECT_EQ(file.Write("X"), 1u) << "goes where the read ended";
    EXPECT_EQ(file.Read(9), "f") << "a short read is none of an error";
    EXPECT_EQ(file.vn_GetOffset(), 6u);
    EXPECT_EQ(file.Read(9), "");
    EXPECT_EQ(file.vn_GetSize(), 6u);
    file.vv_Close();
    EXPECT_EQ(ReadBytes("file"), "abcdXf");
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFile, ATransferOfNothingNamesItsDirectionOnlyWhenWriting)
{
    WinFileProbe file("file", CT_File::e_OpenCreate);
    char none = 0;
    EXPECT_EQ(file.vn_Read(&none, 0), 0u);
    EXPECT_EQ(file.Access(), CT_File::e_FileAccessNone);
    EXPECT_EQ(file.vn_Write(&none, 0), 0u);
    EXPECT_EQ(file.Access(), CT_File::e_FileAccessWrite);
    EXPECT_EQ(file.vn_Read(&none, 0), 0u);
    EXPECT_EQ(file.Access(), CT_File::e_FileAccessWrite);
    EXPECT_EQ(file.Read(1), "");
    EXPECT_EQ(file.Access(), CT_File::e_FileAccessRead);
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFile, SeeksCountFromBeginCurrentAndEnd)
{
    WriteBytes("file", "abcdef");
    WinFileProbe file("file", CT_File::e_OpenExisting);
    const struct
    {
        CT_File::et_Origin origin;
        int distance;
        unsigned offset;
        int eof;
    } cases[] = {
        {CT_File::e_OriginBegin, 4, 4, 0},
        {CT_File::e_OriginCurrent, -3, 1, 0},
        {CT_File::e_OriginCurrent, 0, 1, 0},
        {CT_File::e_OriginEnd, -2, 4, 0},
        {CT_File::e_OriginCurrent, 2, 6, 1},
        {CT_File::e_OriginEnd, 0, 6, 1},
        {CT_File::e_OriginEnd, 10, 16, 1},
        {CT_File::e_OriginBegin, 0, 0, 0},
        {CT_File::e_OriginBegin, 0x7FFFFFFF, 0x7FFFFFFF, 1},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.origin << " " << row.distance);
        file.vv_SetOffset(row.origin, row.distance);
        EXPECT_EQ(file.vn_GetOffset(), row.offset);
        EXPECT_EQ(file.vb_IsEof(), row.eof);
    }
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFile, ASeekThatFailsLeavesTheOffset)
{
    WinFileProbe file("file", CT_File::e_OpenCreate);
    file.Write("abc");
    file.vv_SetOffset(CT_File::e_OriginCurrent, -4);
    EXPECT_EQ(TakeSystem(), (SystemFailure{131, "file", {WINFILE_PLACE}}));
    EXPECT_EQ(file.vn_GetOffset(), 3u);
    file.vv_SetOffset(CT_File::et_Origin(7), 0);
    EXPECT_EQ(TakeSystem(), (SystemFailure{87, "file", {WINFILE_PLACE}}));
    EXPECT_EQ(file.vn_GetOffset(), 3u);
}

TEST(WinFile, TheSizeOfAClosedFileIsMeasured)
{
    WriteBytes("file", "abc");
    WinFileProbe file("file");
    EXPECT_EQ(file.vn_GetSize(), 3u);
    ExpectClosed(file);
    EXPECT_EQ(file.vb_IsEof(), 0);
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFile, TheSizeOfAMissingFileIsAFailedOpen)
{
    WinFileProbe file("file");
    EXPECT_EQ(file.vn_GetSize(), 0u);
    EXPECT_EQ(TakeSystem(), (SystemFailure{2, "file", {WINFILE_PLACE, WINFILE_PLACE}}));
    EXPECT_EQ(file.b_IsOpen(), 0);
}

TEST(WinFile, TheSizeOfAFileInUseIsAFailedOpen)
{
    WinFileProbe user("file", CT_File::e_OpenCreate, CT_File::e_AccessRead,
                      CT_File::e_ShareReadWrite);
    WinFileProbe file("file");
    EXPECT_EQ(file.vn_GetSize(), 0u) << "it would be opened without sharing";
    EXPECT_EQ(TakeSystem(), (SystemFailure{32, "file", {WINFILE_PLACE, WINFILE_PLACE}}));
}

TEST(WinFile, RenamingTakesTheNewName)
{
    WriteBytes("file", "abc");
    WinFileProbe file("file");
    const CT_CString name("other.txt");
    file.vv_Rename(&name);
    EXPECT_EQ(TakeSystem(), NONE);
    EXPECT_EQ(Get(*file.pcco_GetFullName()), "other.txt");
    EXPECT_EQ(Get(*file.pcco_GetExtension()), ".txt");
    EXPECT_EQ(file.n_GetBufferSize(), 16384u);
    EXPECT_FALSE(fs::exists("file"));
    EXPECT_EQ(ReadBytes("other.txt"), "abc");
}

TEST(WinFile, RenamingClosesAnOpenFile)
{
    const CT_UString name = Name("other");
    for (const auto access : {CT_File::e_AccessNone, CT_File::e_AccessRead, CT_File::e_AccessWrite,
                              CT_File::e_AccessReadWrite}) {
        SCOPED_TRACE(access);
        fs::remove("other");
        WriteBytes("file", "abc");
        WinFileProbe file("file", CT_File::e_OpenExisting, access);
        file.vv_Rename(&name);
        EXPECT_EQ(TakeSystem(), NONE);
        ExpectClosed(file);
        EXPECT_EQ(file.n_GetBufferSize(), 16384u);
        EXPECT_EQ(Get(*file.pcco_GetFullName()), "other");
        EXPECT_FALSE(fs::exists("file"));
        EXPECT_EQ(ReadBytes("other"), "abc");
    }
}

TEST(WinFile, RenamingAMappedFileKeepsTheSizeOfTheMap)
{
    WriteBytes("file", "abc");
    WinFileProbe file("file", CT_File::e_OpenExisting);
    file.v_SetMapping(1, 16);
    EXPECT_EQ(file.Write("xyz"), 3u);
    const CT_UString name = Name("other");
    file.vv_Rename(&name);
    EXPECT_EQ(TakeSystem(), NONE);
    ExpectClosed(file);
    EXPECT_EQ(ReadBytes("other"), std::string("xyz") + std::string(13, '\0'));
}

// Another object's handle stands in the way, too: the own one was closed for nothing.
TEST(WinFile, RenamingThatFailsLeavesTheFileOpenAsItWas)
{
    WriteBytes("file", "abcdef");
    WinFileProbe file("file", CT_File::e_OpenAppend, CT_File::e_AccessReadWrite,
                      CT_File::e_ShareReadWrite);
    WinFileProbe other("file", CT_File::e_OpenExisting, CT_File::e_AccessRead,
                       CT_File::e_ShareReadWrite);
    EXPECT_EQ(file.Write("gh"), 2u);
    const CT_UString name = Name("other");
    file.vv_Rename(&name);
    EXPECT_EQ(TakeSystem(), (SystemFailure{32, "file : other", {WINFILE_PLACE}}));
    EXPECT_EQ(file.b_IsOpen(), 1);
    EXPECT_EQ(file.ec_GetOpenAccess(), CT_File::e_AccessReadWrite);
    EXPECT_EQ(file.ec_GetOpenModi(), CT_File::e_OpenAppend);
    EXPECT_EQ(file.ec_GetOpenShare(), CT_File::e_ShareReadWrite);
    EXPECT_EQ(file.n_GetOpenAttribut(), 1u);
    EXPECT_EQ(file.Access(), CT_File::e_FileAccessWrite);
    EXPECT_EQ(file.vn_GetOffset(), 8u);
    EXPECT_EQ(file.Write("ij"), 2u);
    other.vv_Close();
    file.vv_Rename(&name);
    EXPECT_EQ(TakeSystem(), NONE);
    EXPECT_EQ(ReadBytes("other"), "abcdefghij");
}

// As it was also means: with its content, and with its map.
TEST(WinFile, RenamingThatFailsLeavesANewFileItsContentAndItsMap)
{
    WinFileProbe file("file", CT_File::e_OpenCreate, CT_File::e_AccessReadWrite,
                      CT_File::e_ShareReadWrite);
    WinFileProbe other("file", CT_File::e_OpenExisting, CT_File::e_AccessRead,
                       CT_File::e_ShareReadWrite);
    file.v_SetMapping(1, 16);
    EXPECT_EQ(file.Write("abc"), 3u);
    const CT_UString name = Name("other");
    file.vv_Rename(&name);
    EXPECT_EQ(TakeSystem(), (SystemFailure{32, "file : other", {WINFILE_PLACE}}));
    EXPECT_EQ(file.ec_GetOpenModi(), CT_File::e_OpenCreate);
    EXPECT_EQ(file.b_GetMapping(), 1);
    EXPECT_EQ(file.vn_GetSize(), 16u);
    EXPECT_EQ(file.Write("def"), 3u);
    file.v_SetMapping(0, 6);
    file.vv_Close();
    EXPECT_EQ(TakeSystem(), NONE);
    EXPECT_EQ(ReadBytes("file"), "abcdef");
}

// Closing it for the renaming would be its end.
TEST(WinFile, AFileThatGoesWithItsHandleIsNotRenamedWhileItIsOpen)
{
    WriteBytes("file", "abc");
    const CT_UString name = Name("other");
    {
        WinFileProbe file("file");
        file.vv_Open(CT_File::e_AccessReadWrite, CT_File::e_OpenExisting, CT_File::e_ShareNone, 1,
                     CT_File::e_FlagDeleteOnClose);
        file.vv_Rename(&name);
        EXPECT_EQ(TakeSystem(), (SystemFailure{32, "file : other", {WINFILE_PLACE}}));
        EXPECT_EQ(file.b_IsOpen(), 1);
        EXPECT_EQ(file.Read(3), "abc");
        EXPECT_FALSE(fs::exists("other"));
    }
    EXPECT_FALSE(fs::exists("file"));
    EXPECT_FALSE(fs::exists("other"));
}

TEST(WinFile, RenamingAnOpenFileReplacesNothing)
{
    WriteBytes("file", "abc");
    WriteBytes("other", "def");
    WinFileProbe file("file", CT_File::e_OpenExisting);
    EXPECT_EQ(file.Read(1), "a");
    const CT_UString name = Name("other");
    file.vv_Rename(&name);
    const SystemFailure failure = TakeSystem();
    EXPECT_TRUE(failure.code == 183 || failure.code == 32) << failure.code;
    EXPECT_EQ(failure.names, "file : other");
    EXPECT_EQ(file.b_IsOpen(), 1);
    EXPECT_EQ(file.Read(9), "bc");
    EXPECT_EQ(ReadBytes("other"), "def");
}

TEST(WinFile, RenamingReplacesNothing)
{
    WriteBytes("file", "abc");
    WriteBytes("other", "def");
    WinFileProbe file("file");
    const CT_UString name = Name("other");
    file.vv_Rename(&name);
    EXPECT_EQ(TakeSystem(), (SystemFailure{183, "file : other", {WINFILE_PLACE}}));
    EXPECT_EQ(Get(*file.pcco_GetFullName()), "file");
    EXPECT_EQ(file.n_GetBufferSize(), 0u);
    EXPECT_EQ(ReadBytes("other"), "def");
    WinFileProbe missing("missing");
    const CT_CString unused("unused");
    missing.vv_Rename(&unused);
    EXPECT_EQ(TakeSystem(), (SystemFailure{2, "missing : unused", {WINFILE_PLACE}}));
}

TEST(WinFile, RemovingKeepsTheName)
{
    WriteBytes("file", "abc");
    WinFileProbe file("file");
    file.vv_Remove();
    EXPECT_EQ(TakeSystem(), NONE);
    EXPECT_FALSE(fs::exists("file"));
    EXPECT_EQ(Get(*file.pcco_GetFullName()), "file");
    file.vv_Remove();
    EXPECT_EQ(TakeSystem(), (SystemFailure{2, "file", {WINFILE_PLACE}}));
    file.Open(CT_File::e_OpenCreate);
    file.vv_Remove();
    EXPECT_EQ(TakeSystem(), (SystemFailure{32, "file", {WINFILE_PLACE}}));
    EXPECT_EQ(file.b_IsOpen(), 1);
}

TEST(WinFile, CopyingReplacesTheTarget)
{
    WriteBytes("file", "abc");
    WriteBytes("old", "longer than that");
    const WinFileProbe file("file");
    const CT_CString fresh("new"), old("old"), missing("missing/x");
    file.v_CopyFile(&fresh);
    file.v_CopyFile(&old);
    EXPECT_EQ(TakeSystem(), NONE);
    EXPECT_EQ(ReadBytes("new"), "abc");
    EXPECT_EQ(ReadBytes("old"), "abc");
    file.v_CopyFile(&missing);
    EXPECT_EQ(TakeSystem(), (SystemFailure{3, "file : missing/x", {WINFILE_PLACE}}));
    WinFileProbe("nothing").v_CopyFile(&fresh);
    EXPECT_EQ(TakeSystem(), (SystemFailure{2, "nothing : new", {WINFILE_PLACE}}));
    EXPECT_EQ(ReadBytes("new"), "abc");
}

TEST(WinFile, SettingAttributesAlwaysLeavesAnError)
{
    WriteBytes("file", "");
    WinFileProbe file("file");
    SetLastError(0);
    file.v_SetAttributes(FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(TakeSystem(), (SystemFailure{0, "file", {WINFILE_PLACE}}));
    EXPECT_EQ(file.n_GetAttributes() & FILE_ATTRIBUTE_READONLY, 1u);
    SetLastError(ERROR_WRITE_PROTECT);
    file.v_SetAttributes(FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(TakeSystem().code, 19u) << "whatever the last error was";
    EXPECT_EQ(file.n_GetAttributes() & FILE_ATTRIBUTE_READONLY, 0u);
    WinFileProbe missing("missing");
    missing.v_SetAttributes(FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(TakeSystem(), (SystemFailure{2, "missing", {WINFILE_PLACE}}));
}

TEST(WinFile, AttributesAreThoseOfTheSystem)
{
    WriteBytes("file", "");
    fs::create_directory("directory");
    EXPECT_EQ(WinFileProbe("file").n_GetAttributes(),
              static_cast<unsigned>(FILE_ATTRIBUTE_ARCHIVE));
    EXPECT_EQ(WinFileProbe("directory").n_GetAttributes(),
              static_cast<unsigned>(FILE_ATTRIBUTE_DIRECTORY));
    EXPECT_EQ(TakeSystem(), NONE);
    EXPECT_EQ(WinFileProbe("missing").n_GetAttributes(), 0xFFFFFFFFu);
    EXPECT_EQ(TakeSystem(), (SystemFailure{2, "missing", {WINFILE_PLACE}}));
}

TEST(WinFile, FileInformationComesFromTheHandle)
{
    WinFileProbe file("file", CT_File::e_OpenCreate);
    file.Write("abc");
    BY_HANDLE_FILE_INFORMATION information;
    file.v_GetFileInfo(&information);
    EXPECT_EQ(TakeSystem(), NONE);
    EXPECT_EQ(information.nFileSizeLow, 3u);
    EXPECT_EQ(information.nNumberOfLinks, 1u);
}

TEST(WinFile, LocksHoldBetweenTwoFiles)
{
    WinFileProbe first("file", CT_File::e_OpenCreate, CT_File::e_AccessReadWrite,
                       CT_File::e_ShareReadWrite);
    WinFileProbe second("file", CT_File::e_OpenExisting, CT_File::e_AccessReadWrite,
                        CT_File::e_ShareReadWrite);
    const SystemFailure locked = {33, "file", {WINFILE_PLACE}};
    first.v_LockFile(10, 5);
    EXPECT_EQ(TakeSystem(), NONE);
    const struct
    {
        unsigned from, length;
        bool fits;
    } cases[] = {{10, 5, false}, {12, 1, false}, {0, 11, false}, {14, 100, false},
                 {0, 10, true},  {15, 5, true},  {100, 7, true}};
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.from << " " << row.length);
        second.v_LockFile(row.from, row.length);
        EXPECT_EQ(TakeSystem(), row.fits ? NONE : locked);
    }
    first.v_UnlockFile(10, 5);
    second.v_LockFile(10, 5);
    EXPECT_EQ(TakeSystem(), NONE);
    second.vv_Close();
    first.v_LockFile(0, 200);
    EXPECT_EQ(TakeSystem(), NONE) << "a close lets go of the locks";
}

TEST(WinFile, OnlyALockedRangeIsUnlocked)
{
    WinFileProbe file("file", CT_File::e_OpenCreate);
    file.v_LockFile(10, 5);
    file.v_UnlockFile(10, 4);
    const SystemFailure failure = TakeSystem();
    EXPECT_TRUE(failure.code == ERROR_NOT_LOCKED || failure.code == ERROR_LOCK_VIOLATION)
        << failure.code;
    EXPECT_EQ(failure.names, "file");
    file.v_UnlockFile(10, 5);
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFile, TheEndOfFileGoesWhereTheFileStands)
{
    WinFileProbe file("file", CT_File::e_OpenCreate);
    file.Write("abcdef");
    file.vv_SetOffset(CT_File::e_OriginBegin, 2);
    file.v_SetEndOfFile();
    EXPECT_EQ(file.vn_GetSize(), 2u);
    file.vv_SetOffset(CT_File::e_OriginBegin, 4);
    file.v_SetEndOfFile();
    file.vv_Flush();
    file.vv_Close();
    EXPECT_EQ(ReadBytes("file"), std::string("ab\0\0", 4));
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFile, SetClosesAnOpenFile)
{
    const CT_UString name = Name("other");
    const CT_WinFile source(&name, 5000);
    for (int form = 0; form < 3; ++form) {
        SCOPED_TRACE(form);
        WinFileProbe file("file", CT_File::e_OpenCreate);
        file.Write("abc");
        if (form == 0)
            file.vv_Set();
        else if (form == 1)
            file.vv_Set(&name, 1);
        else
            file.vv_Set(&source);
        ExpectClosed(file);
        EXPECT_EQ(Get(*file.pcco_GetFullName()), form ? "other" : "");
        EXPECT_EQ(file.n_GetBufferSize(), form == 2 ? 5120u : form * 1024u);
        WinFileProbe("file", CT_File::e_OpenExisting);
        EXPECT_EQ(TakeSystem(), NONE) << "nobody has the file open";
    }
}

TEST(WinFile, ADestroyedFileIsClosed)
{
    {
        WinFileProbe file("file", CT_File::e_OpenCreate);
    }
    WinFileProbe file("file", CT_File::e_OpenExisting);
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFile, ASecondOpenReplacesTheHandle)
{
    WinFileProbe file("file", CT_File::e_OpenCreate, CT_File::e_AccessReadWrite,
                      CT_File::e_ShareReadWrite);
    const HANDLE lost = file.h_GetHandle();
    file.Open(CT_File::e_OpenExisting, CT_File::e_AccessReadWrite, CT_File::e_ShareReadWrite);
    EXPECT_NE(file.h_GetHandle(), lost);
    EXPECT_TRUE(CloseHandle(lost)) << "the first one is still open";
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFile, TheHandleCountIsPassedOn)
{
    CT_WinFile::sv_SetHandleCount(100);
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFile, NamesBeyondAsciiReachTheSystem)
{
    // Characters that both roads can name.
    const CT_UString name(Units(u"gr\u00FC\u00DF.txt"));
    CT_WinFile file(&name, 0);
    file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone, 1, 0);
    file.vv_Close();
    EXPECT_EQ(TakeSystem(), NONE);
    EXPECT_TRUE(fs::exists(fs::path(u"gr\u00FC\u00DF.txt")));
    EXPECT_EQ(file.b_IsExistent(), 1);
    file.vv_Remove();
    EXPECT_EQ(TakeSystem(), NONE);
}

TEST(WinFile, FilesAreAppended)
{
    WriteBytes("source", "abcdefg");
    WriteBytes("target", "xyz");
    WinFileProbe target("target");
    const WinFileProbe source("source");
    target.v_Append(&source, 3);
    EXPECT_EQ(TakeSystem(), NONE);
    EXPECT_EQ(ReadBytes("target"), "xyzabcdefg");
    ExpectClosed(target);
    ExpectClosed(source);
    const WinFileProbe missing("missing");
    target.v_Append(&missing, 3);
    EXPECT_EQ(TakeSystem(), (SystemFailure{2, "missing", {WINFILE_PLACE, FILE_PLACE}}));
}
