// tests/Ostra/File/WinFileFailuresTest.cpp: reports with a bad handle, and with an error that
// stands.
#include <Ostra/File/WinFile.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "Support/Directory.h"
#include "WinFileProbe.h"

namespace
{
const SystemFailure NONE;

typedef std::vector<std::string> Trail;

struct Operation
{
    const char* name;
    std::function<void(WinFileProbe&)> run;
    Trail trail; // with a handle that the system doesn't know
};

const std::vector<Operation>& Operations()
{
    static const CT_CString line("line");
    static const std::vector<Operation> operations = {
        {"close", [](auto& file) { file.vv_Close(); }, {WINFILE_PLACE}},
        {"flush", [](auto& file) { file.vv_Flush(); }, {WINFILE_PLACE}},
        {"read",
         [](auto& file) { EXPECT_EQ(file.Read(3), ""); },
         {WINFILE_PLACE, FILE_PLACE, WINFILE_PLACE}},
        {"write",
         [](auto& file) { EXPECT_EQ(file.Write("abc"), 0u); },
         {WINFILE_PLACE, FILE_PLACE, WINFILE_PLACE}},
        {"seek", [](auto& file) { file.vv_SetOffset(CT_File::e_OriginBegin, 1); }, {WINFILE_PLACE}},
        {"seek from the end",
         [](auto& file) { file.vv_SetOffset(CT_File::e_OriginEnd, 1); },
         {WINFILE_PLACE}},
        {"information",
         [](auto& file) {
             BY_HANDLE_FILE_INFORMATION information;
             file.v_GetFileInfo(&information);
         },
         {WINFILE_PLACE}},
        {"lock", [](auto& file) { file.v_LockFile(0, 1); }, {WINFILE_PLACE}},
        {"unlock", [](auto& file) { file.v_UnlockFile(0, 1); }, {WINFILE_PLACE}},
        {"end of file", [](auto& file) { file.v_SetEndOfFile(); }, {WINFILE_PLACE}},
        {"write a line",
         [](auto& file) { file.v_WriteLineC(&line, 1); },
         {WINFILE_PLACE, FILE_PLACE, WINFILE_PLACE, "Ostra/File/File"}},
        {"read a line",
         [](auto& file) {
             CT_UString text;
             EXPECT_EQ(file.n_ReadLineU(&text, nullptr), 0u);
         },
         {WINFILE_PLACE, FILE_PLACE, "Ostra/File/File"}},
        {"read a buffer",
         [](auto& file) {
             CT_Buffer buffer;
             EXPECT_EQ(file.n_Read(&buffer, 10), 0u);
         },
         {WINFILE_PLACE, FILE_PLACE, WINFILE_PLACE, FILE_PLACE}},
    };
    return operations;
}
} // namespace

TEST(WinFileFailures, AClosedFileHasNoHandle)
{
    for (const Operation& operation : Operations()) {
        SCOPED_TRACE(operation.name);
        WinFileProbe file("file");
        operation.run(file);
        EXPECT_EQ(TakeSystem(), (SystemFailure{6, "file", operation.trail}));
        EXPECT_EQ(file.Access(), CT_File::e_FileAccessNone);
    }
}

TEST(WinFileFailures, AnOpenFileWhoseHandleIsGone)
{
    for (const Operation& operation : Operations()) {
        SCOPED_TRACE(operation.name);
        {
            WinFileProbe file("file", CT_File::e_OpenCreate);
            const HANDLE handle = file.h_GetHandle();
            ASSERT_TRUE(CloseHandle(handle));
            operation.run(file);
            EXPECT_EQ(TakeSystem(), (SystemFailure{6, "file", operation.trail}));
            EXPECT_EQ(file.b_IsOpen(), 1) << "also after a failed close";
            EXPECT_EQ(file.h_GetHandle(), handle);
            EXPECT_EQ(file.ec_GetOpenModi(), CT_File::e_OpenCreate);
        }
        EXPECT_EQ(TakeSystem(), (SystemFailure{6, "file", {WINFILE_PLACE, WINFILE_PLACE}}))
            << "the destructor adds its place";
    }
}

TEST(WinFileFailures, SizeAndEndOfAFileWhoseHandleIsGone)
{
    WinFileProbe file("file", CT_File::e_OpenCreate);
    ASSERT_TRUE(CloseHandle(file.h_GetHandle()));
    EXPECT_EQ(file.vn_GetSize(), 0u);
    EXPECT_EQ(TakeSystem(), (SystemFailure{6, "file", {WINFILE_PLACE}}));
    EXPECT_EQ(file.vb_IsEof(), 1);
    EXPECT_EQ(TakeSystem(), (SystemFailure{6, "file", {WINFILE_PLACE}}));
    file.vv_Set();
    EXPECT_EQ(TakeSystem(), (SystemFailure{6, "file", {WINFILE_PLACE, WINFILE_PLACE}}));
    EXPECT_EQ(file.b_IsOpen(), 0) << "made new all the same";
}

TEST(WinFileFailures, AnErrorThatStandsStopsNoTransfer)
{
    for (const int map : {0, 1}) {
        SCOPED_TRACE(map);
        WriteBytes("file", "abc");
        WinFileProbe file("file", CT_File::e_OpenExisting);
        if (map)
            file.v_SetMapping(1, 5);
        Errors().v_SetError(1234, Units(u"first"));
        EXPECT_EQ(file.Read(1), "a");
        EXPECT_EQ(file.Write("xyz"), 3u);
        EXPECT_EQ(file.Write("grown"), 5u);
        file.vv_SetOffset(CT_File::e_OriginBegin, 2);
        EXPECT_EQ(file.Read(4), "yzgr");
        if (map)
            file.v_SetMapping(0, 9);
        EXPECT_EQ(TakeFailure(), (Failure{1234, "(1234): first", {}}));
        file.vv_Close();
        EXPECT_EQ(ReadBytes("file"), "axyzgrown");
    }
}

// v_SetAttributes leaves one after each call.
TEST(WinFileFailures, AWriteBehindASetOfAttributesWrites)
{
    WinFileProbe file("file", CT_File::e_OpenCreate);
    file.v_SetAttributes(FILE_ATTRIBUTE_ARCHIVE);
    EXPECT_EQ(file.Write("abc"), 3u);
    file.vv_Close();
    EXPECT_EQ(Errors().b_IsSetError(), 1);
    Errors().v_ClearError();
    EXPECT_EQ(ReadBytes("file"), "abc");
}

// Its own failure stops a transfer also behind an older error, which stays.
TEST(WinFileFailures, ATransferFailsBehindAnErrorThatStands)
{
    for (const bool reads : {false, true}) {
        WinFileProbe file("file", CT_File::e_OpenCreate);
        const HANDLE handle = file.h_GetHandle();
        ASSERT_TRUE(CloseHandle(handle));
        Errors().v_SetError(1234, Units(u"first"));
        EXPECT_EQ(reads ? file.vn_Read(&file, 1) : file.vn_Write("x", 1), 0u);
        EXPECT_EQ(TakeFailure(),
                  (Failure{1234, "(1234): first", {WINFILE_PLACE, FILE_PLACE, WINFILE_PLACE}}));
        EXPECT_EQ(file.Access(), CT_File::e_FileAccessNone);
        EXPECT_EQ(file.vn_GetOffset(), 0u);
        file.vv_Set();
        TakeFailure();
    }
}

// What is written on the primitives asks behind each of them.
TEST(WinFileFailures, AnErrorThatStandsEndsALineAndABuffer)
{
    WriteBytes("file", "abc");
    WinFileProbe file("file", CT_File::e_OpenExisting);
    EXPECT_EQ(file.Read(1), "a");
    Errors().v_SetError(1234, Units(u"first"));
    CT_CString line("left over");
    EXPECT_EQ(file.n_ReadLineC(&line, nullptr), 0u);
    EXPECT_EQ(Get(line), "left over");
    EXPECT_EQ(file.vn_GetOffset(), 1u);
    const CT_Buffer buffer("xy", 2, 32);
    EXPECT_EQ(file.n_Write(&buffer, -1), 0u) << "written, but not told";
    const CT_CString text("z");
    file.v_WriteLineC(&text, 1);
    EXPECT_EQ(TakeFailure(),
              (Failure{1234, "(1234): first", {FILE_PLACE, FILE_PLACE, FILE_PLACE}}));
    file.vv_Close();
    EXPECT_EQ(ReadBytes("file"), "axyz") << "the line has no end";
}

TEST(WinFileFailures, ASecondFailureAddsItsPlaceToTheFirst)
{
    WinFileProbe file("file");
    file.Open(CT_File::e_OpenExisting);
    file.vv_Remove();
    EXPECT_EQ(file.n_GetAttributes(), 0xFFFFFFFFu);
    const Failure failure = TakeFailure();
    EXPECT_EQ(failure.code, 2u);
    EXPECT_EQ(failure.trail, (Trail{WINFILE_PLACE, WINFILE_PLACE, WINFILE_PLACE}));
}

TEST(WinFileFailures, FilesAreClosedAndMeasuredWhileAnErrorStands)
{
    WriteBytes("file", "abc");
    WinFileProbe open("file", CT_File::e_OpenExisting, CT_File::e_AccessRead);
    Errors().v_SetError(1234, Units(u"first"));
    EXPECT_EQ(open.vn_GetSize(), 3u);
    open.vv_Close();
    EXPECT_EQ(open.b_IsOpen(), 0);
    EXPECT_EQ(open.vn_GetSize(), 3u);
    EXPECT_EQ(open.b_IsOpen(), 0);
    EXPECT_EQ(TakeFailure(), (Failure{1234, "(1234): first", {}}));
}

TEST(WinFileFailures, AReaderFlushesNothing)
{
    WriteBytes("file", "");
    WinFileProbe file("file", CT_File::e_OpenExisting, CT_File::e_AccessRead);
    file.vv_Flush();
    EXPECT_EQ(TakeSystem(), (SystemFailure{5, "file", {WINFILE_PLACE}}));
    file.v_SetEndOfFile();
    const SystemFailure failure = TakeSystem();
    EXPECT_NE(failure.code, 0xFFFFFFFFu);
    EXPECT_EQ(failure.trail, (Trail{WINFILE_PLACE}));
}
