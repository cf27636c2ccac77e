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

TEST(WinFileFailures, AnErrorThatStandsStopsTransfersAndStays)
{
    WriteBytes("file", "abc");
    WinFileProbe file("file", CT_File::e_OpenExisting);
    EXPECT_EQ(file.Read(1), "a");
    Errors().v_SetError(1234, Units(u"first"));
    char c = '?';
    CT_CString line("left over");
    EXPECT_EQ(file.vn_Read(&c, 1), 0u);
    EXPECT_EQ(file.vn_Write("x", 1), 0u);
    EXPECT_EQ(file.n_ReadLineC(&line, nullptr), 0u);
    EXPECT_EQ(c, '?');
    EXPECT_EQ(Get(line), "left over");
    EXPECT_EQ(TakeFailure(),
              (Failure{1234,
                       "(1234): first",
                       {WINFILE_PLACE, FILE_PLACE, WINFILE_PLACE, "Ostra/File/File"}}));
    EXPECT_EQ(file.vn_GetOffset(), 1u);
    file.vv_Close();
    EXPECT_EQ(ReadBytes("file"), "abc");
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
