// tests/Ostra/File/StdFileNamesTest.cpp: files of the stream library by name, beside those of the
// system, and names in every script.
#include <Ostra/File/StdFile.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <string>

#include <Ostra/File/WinFile.h>
#include <System/OS/OS.h>

#include "StdFileProbe.h"
#include "Support/Directory.h"

namespace fs = std::filesystem;

namespace
{
const Failure NONE;

const char* StatName()
{
    return CT_OS::sb_GetIsWindowsNT() ? "_wstat" : "_stat";
}
} // namespace

TEST(StdFileNames, RemovingAMissingFileIsNoFailure)
{
    StdFileProbe file("file");
    file.vv_Remove();
    EXPECT_EQ(TakeFailure(), NONE);
    WriteBytes("file", "abc");
    file.vv_Remove();
    EXPECT_FALSE(fs::exists("file"));
    EXPECT_EQ(Get(*file.pcco_GetFullName()), "file");
    StdFileProbe nowhere("none/file");
    nowhere.vv_Remove();
    EXPECT_EQ(TakeFailure(), NONE) << "neither is a missing directory";
    fs::create_directory("file");
    file.vv_Remove();
    EXPECT_EQ(TakeFailure(), StdFailure(13, "remove"));
    EXPECT_TRUE(fs::exists("file"));
}

TEST(StdFileNames, AnOpenFileIsNeitherRemovedNorRenamed)
{
    const CT_UString other = Name("other");
    StdFileProbe file("file", CT_File::e_OpenCreate);
    EXPECT_EQ(file.Write("abc"), 3u);
    file.vv_Remove();
    EXPECT_EQ(TakeFailure(), StdFailure(13, "remove"));
    file.vv_Rename(&other);
    EXPECT_EQ(TakeFailure(), StdFailure(13, "rename"));
    EXPECT_EQ(file.b_IsOpen(), 1);
    EXPECT_EQ(Get(*file.pcco_GetFullName()), "file");
    EXPECT_EQ(file.Write("de"), 2u);
    file.vv_Close();
    EXPECT_EQ(ReadBytes("file"), "abcde");
    EXPECT_FALSE(fs::exists("other"));
}

TEST(StdFileNames, RenamingTakesTheNewName)
{
    WriteBytes("file", "abc");
    const CT_CString other("d/other.txt");
    fs::create_directory("d");
    StdFileProbe file("file");
    file.vv_Rename(&other);
    EXPECT_EQ(TakeFailure(), NONE);
    EXPECT_EQ(ReadBytes("d/other.txt"), "abc");
    EXPECT_FALSE(fs::exists("file"));
    EXPECT_EQ(Get(*file.pcco_GetFullName()), "d/other.txt");
    EXPECT_EQ(Get(*file.pcco_GetName()), "other");
    EXPECT_EQ(file.n_GetBufferSize(), 16384u);
    EXPECT_EQ(file.b_IsOpen(), 0);
}

TEST(StdFileNames, RenamingNeverReplaces)
{
    WriteBytes("file", "abc");
    WriteBytes("other", "def");
    const CT_UString other = Name("other");
    const CT_UString nowhere = Name("none/other");
    StdFileProbe file("file");
    file.vv_Rename(&other);
    EXPECT_EQ(TakeFailure(), StdFailure(17, "rename"));
    EXPECT_EQ(ReadBytes("other"), "def");
    EXPECT_EQ(Get(*file.pcco_GetFullName()), "file");
    EXPECT_EQ(file.n_GetBufferSize(), 1024u);
    file.vv_Rename(&nowhere);
    EXPECT_EQ(TakeFailure(), StdFailure(2, "rename"));
    file.vv_Remove();
    file.vv_Rename(&nowhere);
    EXPECT_EQ(TakeFailure(), StdFailure(2, "rename")) << "a missing file is one here";
}

TEST(StdFileNames, PermissionsAreOneBit)
{
    WriteBytes("file", "abc");
    StdFileProbe file("file");
    for (const int permission : {0, 0x100, 0x7F, 0x12F, -0x81}) {
        SCOPED_TRACE(permission);
        file.v_Chmod(CT_StdFile::et_Permission(permission));
        EXPECT_EQ(TakeFailure(), NONE);
        EXPECT_EQ(GetFileAttributesA("file") & FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_READONLY);
        file.vv_Remove();
        EXPECT_EQ(TakeFailure(), StdFailure(13, "remove"));
    }
    for (const int permission : {0x80, 0x180, -1}) {
        SCOPED_TRACE(permission);
        file.v_Chmod(CT_StdFile::e_PermissionNone);
        file.v_Chmod(CT_StdFile::et_Permission(permission));
        EXPECT_EQ(TakeFailure(), NONE);
        EXPECT_EQ(GetFileAttributesA("file") & FILE_ATTRIBUTE_READONLY, 0u);
        file.Open(CT_File::e_OpenExisting);
        EXPECT_EQ(file.Write("x"), 1u);
        file.vv_Close();
    }
    EXPECT_EQ(CT_StdFile::e_PermissionReadWrite, 0x180);
    EXPECT_EQ(CT_StdFile::e_PermissionWrite, 0x80);
    EXPECT_EQ(CT_StdFile::e_PermissionRead, 0x100);
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFileNames, PermissionsOfAMissingFileAreNoFailure)
{
    StdFileProbe file("file");
    file.v_Chmod(CT_StdFile::e_PermissionWrite);
    EXPECT_EQ(TakeFailure(), NONE);
    StdFileProbe invalid("none/file");
    invalid.v_Chmod(CT_StdFile::e_PermissionNone);
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFileNames, FactsOfAFileAndOfADirectory)
{
    WriteBytes("file", "abc");
    fs::create_directory("directory");
    StdFileProbe file("file");
    struct _stat facts = {};
    file.v_GetFileInformation(&facts);
    EXPECT_EQ(TakeFailure(), NONE);
    EXPECT_EQ(facts.st_size, 3);
    EXPECT_EQ(facts.st_mode & 0xF180u, 0x8180u) << "a file, to be read and written";
    EXPECT_EQ(facts.st_nlink, 1u);
    EXPECT_GT(facts.st_mtime, 1700000000);
    EXPECT_GT(facts.st_atime, 1700000000);
    EXPECT_GT(facts.st_ctime, 1700000000);
    file.v_Chmod(CT_StdFile::e_PermissionNone);
    file.v_GetFileInformation(&facts);
    EXPECT_EQ(facts.st_mode & 0xF180u, 0x8100u);
    file.v_Chmod(CT_StdFile::e_PermissionWrite);
    StdFileProbe directory("directory");
    directory.v_GetFileInformation(&facts);
    EXPECT_EQ(facts.st_mode & 0xF000u, 0x4000u);
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFileNames, FactsOfAMissingFileAreAFailure)
{
    StdFileProbe file("file");
    struct _stat facts;
    file.v_GetFileInformation(&facts);
    EXPECT_EQ(TakeFailure(), StdFailure(2, StatName()));
}

TEST(StdFileNames, TheSystemsShareModesHold)
{
    const CT_UString name = Name("file");
    WriteBytes("file", "abc");
    CT_WinFile system(&name, 0);
    for (const unsigned share : {0u, 1u, 2u, 3u}) {
        SCOPED_TRACE(share);
        system.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::et_Share(share), 1,
                       0);
        StdFileProbe reader("file", CT_File::e_OpenExisting, CT_File::e_AccessRead);
        EXPECT_EQ(TakeFailure(), share & 1 ? NONE : StdFailure(13, "fopen"));
        StdFileProbe writer("file", CT_File::e_OpenExisting, CT_File::e_AccessReadWrite);
        EXPECT_EQ(TakeFailure(), share == 3 ? NONE : StdFailure(13, "fopen"));
        system.vv_Close();
    }
    StdFileProbe first("file", CT_File::e_OpenExisting, CT_File::e_AccessReadWrite);
    StdFileProbe second("file", CT_File::e_OpenExisting, CT_File::e_AccessReadWrite);
    EXPECT_EQ(first.Write("x"), 1u);
    first.vv_Flush();
    EXPECT_EQ(second.Read(3), "xbc") << "streams share all";
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFileNames, NamesInEveryScript)
{
    const bool wide = CT_OS::sb_GetIsWindowsNT();
    const char16_t* const names[] = {
        u"\u00DCbung.txt",
        u"\u0427\u0435\u0440\u043D\u043E\u0432\u0438\u043A",
        u"\u03B1\u03C1\u03C7\u03B5\u03AF\u03BF",
        u"\u05E9\u05DC\u05D5\u05DD",
        u"\u0645\u0644\u0641",
        u"\u092B\u093C\u093E\u0907\u0932",
        u"\u0E41\u0E1F\u0E49\u0E21",
        u"\u6587\u4EF6",
        u"\u30D5\u30A1\u30A4\u30EB",
        u"\uD30C\uC77C",
        u"\U0001F600 smile",
    };
    const CT_CString renamed("renamed");
    for (const char16_t* text : names) {
        SCOPED_TRACE(Narrow(text));
        const CT_UString name(Units(text));
        CT_StdFile file(&name, 1024);
        file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone, 1, 0);
        if (!wide) {
            // The 8-bit road has the letters of its code page alone.
            TakeFailure();
            continue;
        }
        EXPECT_EQ(file.vn_Write("abc", 3), 3u);
        file.vv_Close();
        EXPECT_EQ(ReadBytes(fs::path(text)), "abc");
        EXPECT_EQ(file.vn_GetSize(), 3u);
        struct _stat facts = {};
        file.v_GetFileInformation(&facts);
        EXPECT_EQ(facts.st_size, 3);
        file.v_Chmod(CT_StdFile::e_PermissionNone);
        file.v_Chmod(CT_StdFile::e_PermissionWrite);
        file.vv_Rename(&renamed);
        EXPECT_FALSE(fs::exists(fs::path(text)));
        file.vv_Rename(&name);
        EXPECT_TRUE(fs::exists(fs::path(text)));
        file.vv_Remove();
        EXPECT_FALSE(fs::exists(fs::path(text)));
        EXPECT_EQ(TakeFailure(), NONE);
    }
}

TEST(StdFileNames, LettersOfTheCodePageGoBothRoads)
{
    const char16_t* const text = u"\u00E9t\u00E9";
    const CT_UString name(Units(text));
    CT_StdFile file(&name, 1024);
    file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone, 1, 0);
    EXPECT_EQ(file.vn_Write("abc", 3), 3u);
    file.vv_Close();
    EXPECT_EQ(TakeFailure(), NONE);
    EXPECT_EQ(ReadBytes(fs::path(text)), "abc");
}

TEST(StdFileNames, FilesOfBothKindsAppendEachOther)
{
    WriteBytes("first", "abc");
    WriteBytes("second", std::string(5000, 'x'));
    const CT_UString first_name = Name("first");
    const CT_UString second_name = Name("second");
    CT_StdFile first(&first_name, 1024);
    const CT_WinFile second(&second_name, 0);
    first.v_Append(&second, 700);
    EXPECT_EQ(ReadBytes("first"), "abc" + std::string(5000, 'x'));
    CT_WinFile third(&second_name, 0);
    third.v_Append(&first, 700);
    EXPECT_EQ(fs::file_size("second"), 10003u);
    EXPECT_EQ(first.b_IsOpen(), 0);
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFileNames, LinesOfBothWidths)
{
    StdFileProbe file("file", CT_File::e_OpenCreate);
    const CT_CString line("a line");
    EXPECT_EQ(file.Write("\xFF\xFE"), 2u);
    file.v_WriteLineU(&line, 1);
    file.v_WriteLineU(nullptr, 1);
    file.v_WriteLineU(&line, 0);
    EXPECT_EQ(file.vn_GetSize(), 2u + 16 + 4 + 12);
    file.vv_SetOffset(CT_File::e_OriginBegin, 0);
    EXPECT_EQ(file.b_IsUnicode(), 1);
    CT_UString text;
    EXPECT_EQ(file.n_ReadLineU(&text, nullptr), 14u);
    EXPECT_EQ(Get(text), "a line");
    EXPECT_EQ(file.n_ReadLineU(&text, nullptr), 2u);
    EXPECT_EQ(file.n_ReadLineU(&text, nullptr), 12u);
    EXPECT_EQ(file.n_ReadLineU(&text, nullptr), 0u);
    EXPECT_EQ(TakeFailure(), NONE);
}

#ifndef _WIN32
TEST(StdFileNames, LinksLeadToTheirTargets)
{
    WriteBytes("file", "abc");
    fs::create_symlink("file", "link");
    fs::create_symlink("missing", "dangling");
    StdFileProbe link("link", CT_File::e_OpenExisting);
    EXPECT_EQ(link.Read(3), "abc");
    link.vv_Close();
    struct _stat facts = {};
    link.v_GetFileInformation(&facts);
    EXPECT_EQ(facts.st_mode & 0xF000u, 0x8000u);
    link.vv_Remove();
    EXPECT_FALSE(fs::is_symlink("link"));
    EXPECT_EQ(ReadBytes("file"), "abc") << "the link alone goes";
    StdFileProbe dangling("dangling", CT_File::e_OpenCreate, CT_File::e_AccessWrite);
    EXPECT_EQ(dangling.Write("new"), 3u);
    dangling.vv_Close();
    EXPECT_EQ(ReadBytes("missing"), "new");
    EXPECT_EQ(TakeFailure(), NONE);
}

TEST(StdFileNames, ReadAndExecuteBitsStay)
{
    WriteBytes("file", "abc");
    const auto mode = [] {
        return static_cast<unsigned>(fs::status("file").permissions());
    };
    fs::permissions("file", fs::perms(0754));
    StdFileProbe file("file");
    file.v_Chmod(CT_StdFile::e_PermissionWrite);
    EXPECT_EQ(mode(), 0754u);
    file.v_Chmod(CT_StdFile::e_PermissionNone);
    EXPECT_EQ(mode(), 0554u);
    file.v_Chmod(CT_StdFile::e_PermissionReadWrite);
    EXPECT_EQ(mode(), 0754u);
    fs::permissions("file", fs::perms(0464));
    file.v_Chmod(CT_StdFile::e_PermissionWrite);
    EXPECT_EQ(mode(), 0664u);
    file.v_Chmod(CT_StdFile::e_PermissionRead);
    EXPECT_EQ(mode(), 0444u);
    fs::create_directory("directory");
    StdFileProbe directory("directory");
    directory.v_Chmod(CT_StdFile::e_PermissionNone);
    WriteBytes("directory/file", "x");
    EXPECT_EQ(TakeFailure(), NONE);
}
#endif
