// tests/Faults/WinFileServices.cpp: files of the system whose services fail.
#include <Ostra/File/WinFile.h>

#include "Faults/ServiceSweep.h"
#include "Support/Directory.h"
#include "Support/Files.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace
{
const std::string CONTENT(100, 'x');

struct State
{
    State()
    {
        fs::remove("other");
        WriteBytes("file", CONTENT);
        const CT_UString name = Name("file");
        file.vv_Set(&name, 0);
    }

    CT_WinFile file;
    CT_UString other = Name("other");
    CT_UString line;
    std::vector<unsigned> lengths;
    char data[200] = {};
    unsigned result = 0;
};

void Nothing(State&) {}

void Open(State& state)
{
    state.file.vv_Open(CT_File::e_AccessReadWrite, CT_File::e_OpenExisting, CT_File::e_ShareNone, 1,
                       0);
}

void OpenMapped(State& state)
{
    Open(state);
    state.file.v_SetMapping(1, 128);
}

// Longer than what is read at once.
const std::string LONG_LINE(9000, 'x');

void OpenLines(State& state)
{
    WriteBytes("file", "first\r\n" + LONG_LINE + "\r\nlast\r\nno end");
    Open(state);
}

void OpenWideLines(State& state)
{
    std::string bytes("\xFF\xFE", 2);
    for (const char c : "first\r\n" + LONG_LINE + "\r\nlast\r\n")
        bytes.append({c, '\0'});
    WriteBytes("file", bytes);
    Open(state);
}

template <unsigned (CT_File::*READ)(CT_String*, const CT_String*)>
void ReadLines(State& state)
{
    while (state.lengths.size() < 100 && (state.file.*READ)(&state.line, nullptr))
        state.lengths.push_back(state.line.vn_GetLength());
}

const std::vector<unsigned> LENGTHS = {5, 9000, 4};

void AllLines(State& state)
{
    EXPECT_EQ(state.lengths, LENGTHS);
}

// Those in front of what couldn't be read.
void FirstLines(State& state)
{
    ASSERT_LE(state.lengths.size(), LENGTHS.size());
    EXPECT_TRUE(std::equal(state.lengths.begin(), state.lengths.end(), LENGTHS.begin()));
}

void IsOpen(State& state)
{
    EXPECT_EQ(state.file.b_IsOpen(), 1);
}

void IsClosed(State& state)
{
    EXPECT_EQ(state.file.b_IsOpen(), 0);
}

void NoResult(State& state)
{
    EXPECT_EQ(state.result, 0U);
}

// An append whose seek to the end fails leaves its handle to nobody.
void CloseLost(State& state)
{
    const HANDLE handle = state.file.h_GetHandle();
    if (!state.file.b_IsOpen() && handle && handle != INVALID_HANDLE_VALUE)
        CloseHandle(handle);
}

void ExpectUsable(State& state)
{
    const CT_UString name = Name("usable");
    WriteBytes("usable", "abc");
    CloseLost(state);
    state.file.vv_Set(&name, 0);
    // A close may have failed before, and is tried again here.
    TakeFailure();
    Open(state);
    EXPECT_EQ(state.file.vn_Read(state.data, 10), 3U);
    state.file.v_SetMapping(1, 10);
    EXPECT_EQ(state.file.vn_Read(state.data, 10), 7U);
    state.file.vv_Close();
    EXPECT_EQ(TakeSystem(), SystemFailure());
}

const ServiceOperation<State> OPERATIONS[] = {
    {"open", Nothing, Open, IsOpen, IsClosed},
    {"create", Nothing,
     [](State& state) {
         state.file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone, 1,
                            0);
     },
     [](State& state) { EXPECT_EQ(state.file.vn_GetSize(), 0U); }, IsClosed},
    // The first attempt may fail: there is a second one.
    {"append",
     Nothing,
     [](State& state) {
         state.file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenAppend, CT_File::e_ShareNone, 1,
                            0);
         CloseLost(state);
     },
     [](State& state) { EXPECT_EQ(state.file.vn_GetOffset(), 100U); },
     nullptr,
     {"CreateFileW", "CreateFileA", "CloseHandle"}},
    {"close", Open, [](State& state) { state.file.vv_Close(); }, IsClosed, IsOpen},
    {"close for another name", Open,
     [](State& state) {
         const CT_WinFile another(&state.other, 0);
         state.file.vv_Set(&another);
     },
     IsClosed, nullptr},
    {"close for no name", Open, [](State& state) { state.file.vv_Set(); }, IsClosed, nullptr},
    {"read", Open, [](State& state) { state.result = state.file.vn_Read(state.data, 100); },
     [](State& state) { EXPECT_EQ(std::string(state.data, 100), CONTENT); }, NoResult},
    {"write", Open, [](State& state) { state.result = state.file.vn_Write("abc", 3); },
     [](State& state) { EXPECT_EQ(state.result, 3U); }, NoResult},
    {"read a line", Open,
     [](State& state) { state.result = state.file.n_ReadLineC(&state.line, nullptr); },
     [](State& state) { EXPECT_EQ(Get(state.line), CONTENT); }, NoResult},
    {"read a wide line", Open,
     [](State& state) { state.result = state.file.n_ReadLineU(&state.line, nullptr); },
     [](State& state) { EXPECT_EQ(state.line.vn_GetLength(), 50U); }, NoResult},
    {"read lines in turn", OpenLines, ReadLines<&CT_File::n_ReadLineCSequential>, AllLines,
     FirstLines},
    {"read wide lines in turn", OpenWideLines, ReadLines<&CT_File::n_ReadLineUSequential>, AllLines,
     FirstLines},
    {"write a line", Open, [](State& state) { state.file.v_WriteLineC(&state.other, 1); },
     [](State& state) {
         state.file.vv_Close();
         EXPECT_EQ(ReadBytes("file").substr(0, 8), "other\r\nx");
     },
     IsOpen},
    {"write a wide line", Open, [](State& state) { state.file.v_WriteLineU(&state.other, 1); },
     [](State& state) {
         state.file.vv_Close();
         EXPECT_EQ(ReadBytes("file").substr(0, 3), std::string("o\0t", 3));
     },
     IsOpen},
    {"size", Nothing, [](State& state) { state.result = state.file.vn_GetSize(); },
     [](State& state) { EXPECT_EQ(state.result, 100U); }, NoResult},
    {"size of an open file", Open, [](State& state) { state.result = state.file.vn_GetSize(); },
     [](State& state) { EXPECT_EQ(state.result, 100U); }, IsOpen},
    {"seek", Open, [](State& state) { state.file.vv_SetOffset(CT_File::e_OriginEnd, -1); },
     [](State& state) { EXPECT_EQ(state.file.vn_GetOffset(), 99U); }, IsOpen},
    {"end of the file", Open, [](State& state) { state.result = state.file.vb_IsEof(); }, NoResult,
     IsOpen},
    {"flush", Open, [](State& state) { state.file.vv_Flush(); }, IsOpen, IsOpen},
    {"cut", Open, [](State& state) { state.file.v_SetEndOfFile(); },
     [](State& state) { EXPECT_EQ(state.file.vn_GetSize(), 0U); },
     [](State& state) {
         EXPECT_EQ(state.file.vn_GetSize(), 100U);
     }},
    {"remove", Nothing, [](State& state) { state.file.vv_Remove(); },
     [](State&) { EXPECT_FALSE(fs::exists("file")); },
     [](State&) {
         EXPECT_TRUE(fs::exists("file"));
     }},
    {"rename",
     Nothing,
     [](State& state) { state.file.vv_Rename(&state.other); },
     [](State&) { EXPECT_EQ(ReadBytes("other"), CONTENT); },
     [](State& state) {
         EXPECT_EQ(ReadBytes("file"), CONTENT);
         EXPECT_EQ(Get(*state.file.pcco_GetFullName()), "file");
     },
     {},
     "file : other"},
    {"copy",
     Nothing,
     [](State& state) { state.file.v_CopyFile(&state.other); },
     [](State&) { EXPECT_EQ(ReadBytes("other"), CONTENT); },
     nullptr,
     {},
     "file : other"},
    {"attributes", Nothing, [](State& state) { state.result = state.file.n_GetAttributes(); },
     [](State& state) { EXPECT_EQ(state.result & 16, 0U); },
     [](State& state) {
         EXPECT_EQ(state.result, 0xFFFFFFFF);
     }},
    {"information", Open,
     [](State& state) {
         BY_HANDLE_FILE_INFORMATION information = {};
         state.file.v_GetFileInfo(&information);
         state.result = information.nFileSizeLow;
     },
     [](State& state) { EXPECT_EQ(state.result, 100U); }, NoResult},
    {"lock", Open, [](State& state) { state.file.v_LockFile(0, 10); },
     [](State& state) { state.file.v_UnlockFile(0, 10); }, IsOpen},
    {"unlock",
     [](State& state) {
         Open(state);
         state.file.v_LockFile(0, 10);
     },
     [](State& state) { state.file.v_UnlockFile(0, 10); }, IsOpen,
     [](State& state) {
         state.file.v_UnlockFile(0, 10);
     }},
    {"map", Open, [](State& state) { state.file.v_SetMapping(1, 128); },
     [](State& state) { EXPECT_EQ(state.file.vn_GetSize(), 128U); },
     [](State& state) {
         EXPECT_EQ(state.file.b_GetMapping(), 0);
     }},
    {"write to the map",
     OpenMapped,
     [](State& state) { state.result = state.file.vn_Write(CONTENT.data(), 100); },
     [](State& state) { EXPECT_EQ(state.result, 100U); },
     NoResult,
     {},
     "file",
     false},
    {"grow the map",
     [](State& state) {
         OpenMapped(state);
         state.file.vv_SetOffset(CT_File::e_OriginBegin, 100);
     },
     [](State& state) { state.result = state.file.vn_Write(CONTENT.data(), 100); },
     [](State& state) { EXPECT_EQ(state.file.vn_GetSize(), 256U); }, NoResult},
    {"flush the map", OpenMapped, [](State& state) { state.file.v_FlushMap(); }, IsOpen, IsOpen},
    {"leave the map", OpenMapped, [](State& state) { state.file.v_SetMapping(0, 100); },
     [](State& state) { EXPECT_EQ(state.file.vn_GetSize(), 100U); }, IsOpen},
    {"close with a map", OpenMapped, [](State& state) { state.file.vv_Close(); }, IsClosed,
     nullptr},
};
} // namespace

TEST(ServiceSweep, WinFile)
{
    SweepServices(SystemReport("Ostra/File/WinFile"), OPERATIONS);
}

// Another object's handle stands in the way, so the renaming fails with and without the own one.
TEST(ServiceSweep, WinFileIsOpenAgainBehindARenamingThatFailsOrStaysClosed)
{
    const CT_UString name = Name("other");
    for (const bool wide : {true, false}) {
        const RoadSwitch road(wide);
        const unsigned handles = Services::OpenHandles();
        bool reopened = false, closed = false;
        std::string call = "none yet";
        for (unsigned number = 1; !call.empty(); ++number) {
            State state, blocker;
            for (State* each : {&state, &blocker})
                each->file.vv_Open(CT_File::e_AccessReadWrite, CT_File::e_OpenExisting,
                                   CT_File::e_ShareReadWrite, 1, 0);
            Services::Arm(number, 0);
            state.file.vv_Rename(&name);
            call = Services::Disarm().name;
            SCOPED_TRACE(call);
            EXPECT_NE(TakeFailure().code, 0xFFFFFFFF);
            reopened |= call.rfind("CreateFile", 0) == 0;
            closed |= call == "CloseHandle";
            if (call.rfind("CreateFile", 0) == 0) {
                EXPECT_EQ(state.file.b_IsOpen(), 0);
            } else if (call == "CloseHandle" || call.rfind("MoveFile", 0) == 0 || call.empty()) {
                EXPECT_EQ(state.file.b_IsOpen(), 1);
            }
            EXPECT_FALSE(fs::exists("other"));
            ExpectUsable(state);
            TakeFailure();
        }
        EXPECT_TRUE(reopened && closed);
        Services::CloseRest();
        EXPECT_EQ(Services::OpenHandles(), handles);
    }
}
