// tests/Faults/FileCallSweep.cpp: files on a host whose calls fail, each in turn.
#ifndef _WIN32
#include <Database/RecordManager/RecordManager.h>
#include <Ostra/File/WinFile.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "Faults/FailingHost.h"
#include "RecordCheck.h"
#include "Support/Directory.h"
#include "Support/Files.h"

namespace fs = std::filesystem;

namespace
{
const std::string TEXT(100, 'x');

struct State
{
    State()
    {
        fs::remove("other");
        WriteBytes("file", TEXT);
        const CT_UString name = Name("file");
        file.vv_Set(&name, 0);
    }

    CT_WinFile file;
    CT_UString other = Name("other");
    char data[200] = {};
    unsigned result = 0;
};

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

void Nothing(State&) {}

struct Operation
{
    const char* name;
    std::function<void(State&)> prepare;
    std::function<void(State&)> run;
    std::function<void(State&)> done; // what holds if nothing was reported
    std::string names = "file";
};

const Operation OPERATIONS[] = {
    {"open", Nothing, Open,
     [](State& state) {
         EXPECT_EQ(state.file.b_IsOpen(), 1);
     }},
    {"create", Nothing,
     [](State& state) {
         state.file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone, 1,
                            0);
     },
     [](State& state) {
         EXPECT_EQ(state.file.vn_GetSize(), 0U);
     }},
    {"append", Nothing,
     [](State& state) {
         state.file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenAppend, CT_File::e_ShareNone, 1,
                            0);
     },
     [](State& state) {
         EXPECT_EQ(state.file.vn_GetOffset(), 100U);
     }},
    {"close", Open, [](State& state) { state.file.vv_Close(); },
     [](State& state) {
         EXPECT_EQ(state.file.b_IsOpen(), 0);
     }},
    {"read", Open, [](State& state) { state.result = state.file.vn_Read(state.data, 100); },
     [](State& state) {
         EXPECT_EQ(state.result, 100U);
         EXPECT_EQ(std::string(state.data, 100), TEXT);
     }},
    {"write", Open, [](State& state) { state.result = state.file.vn_Write("abc", 3); },
     [](State& state) {
         EXPECT_EQ(state.result, 3U);
         EXPECT_EQ(ReadBytes("file").substr(0, 4), "abcx");
     }},
    {"size", Nothing, [](State& state) { state.result = state.file.vn_GetSize(); },
     [](State& state) {
         EXPECT_EQ(state.result, 100U);
         EXPECT_EQ(state.file.b_IsOpen(), 0);
     }},
    {"flush", Open, [](State& state) { state.file.vv_Flush(); }, Nothing},
    {"end of file", Open, [](State& state) { state.file.v_SetEndOfFile(); },
     [](State& state) {
         EXPECT_EQ(state.file.vn_GetSize(), 0U);
     }},
    {"remove", Nothing, [](State& state) { state.file.vv_Remove(); },
     [](State&) {
         EXPECT_FALSE(fs::exists("file"));
     }},
    {"rename", Nothing, [](State& state) { state.file.vv_Rename(&state.other); },
     [](State&) { EXPECT_EQ(ReadBytes("other"), TEXT); }, "file : other"},
    {"copy", Nothing, [](State& state) { state.file.v_CopyFile(&state.other); },
     [](State&) { EXPECT_EQ(ReadBytes("other"), TEXT); }, "file : other"},
    {"attributes", Nothing, [](State& state) { state.result = state.file.n_GetAttributes(); },
     [](State& state) {
         EXPECT_EQ(state.result, 32U);
     }},
    {"map", Open, [](State& state) { state.file.v_SetMapping(1, 128); },
     [](State& state) {
         EXPECT_EQ(state.file.b_GetMapping(), 1);
         EXPECT_EQ(state.file.vn_GetSize(), 128U);
     }},
    {"write to the map", OpenMapped,
     [](State& state) { state.result = state.file.vn_Write(TEXT.data(), 100); },
     [](State& state) {
         EXPECT_EQ(state.result, 100U);
     }},
    {"grow the map",
     [](State& state) {
         OpenMapped(state);
         state.file.vv_SetOffset(CT_File::e_OriginBegin, 100);
     },
     [](State& state) { state.result = state.file.vn_Write(TEXT.data(), 100); },
     [](State& state) {
         EXPECT_EQ(state.result, 100U);
         EXPECT_EQ(state.file.vn_GetSize(), 256U);
     }},
    {"flush the map", OpenMapped, [](State& state) { state.file.v_FlushMap(); }, Nothing},
    {"leave the map", OpenMapped, [](State& state) { state.file.v_SetMapping(0, 100); },
     [](State& state) {
         EXPECT_EQ(state.file.b_GetMapping(), 0);
         EXPECT_EQ(state.file.vn_GetSize(), 100U);
     }},
    {"close with a map", OpenMapped, [](State& state) { state.file.vv_Close(); },
     [](State& state) {
         EXPECT_EQ(state.file.b_IsOpen(), 0);
     }},
};

// The object can be used again, whatever happened to it.
void ExpectUsable(State& state)
{
    const CT_UString name = Name("usable");
    WriteBytes("usable", "abc");
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

// An append whose seek to the end fails leaves its handle to nobody.
void CloseLostHandle(const CT_WinFile& file)
{
    const HANDLE handle = file.h_GetHandle();
    if (!file.b_IsOpen() && handle && handle != INVALID_HANDLE_VALUE) {
        EXPECT_TRUE(CloseHandle(handle));
    }
}

// One run: true if a call has failed.
bool RunFailing(const Operation& operation, unsigned number, int error, unsigned system_code)
{
    const unsigned descriptors = Descriptors();
    std::string call;
    {
        State state;
        operation.prepare(state);
        EXPECT_EQ(TakeSystem(), SystemFailure());
        FailingHost::Arm(number, error);
        operation.run(state);
        call = FailingHost::Disarm();
        SCOPED_TRACE(call);
        const SystemFailure failure = TakeSystem();
        if (failure == SystemFailure())
            operation.done(state);
        else {
            EXPECT_FALSE(call.empty()) << "reported without a failing call";
            EXPECT_EQ(failure.code, system_code);
            EXPECT_EQ(failure.names, operation.names);
            EXPECT_EQ(failure.trail.at(0).substr(0, 18), "Ostra/File/WinFile");
        }
        CloseLostHandle(state.file);
        ExpectUsable(state);
    }
    EXPECT_EQ(TakeSystem(), SystemFailure());
    EXPECT_EQ(Descriptors(), descriptors) << "descriptors leak after " << call;
    return !call.empty();
}

const struct
{
    int error;
    unsigned code;
} ERRORS[] = {{EIO, 1117}, {EACCES, 5}, {ENOSPC, 112}, {EMFILE, 4}};
} // namespace

TEST(FileCallSweep, EveryCallFails)
{
    unsigned failures = 0;
    for (const Operation& operation : OPERATIONS) {
        for (const auto& row : ERRORS) {
            unsigned number = 1;
            for (bool failing = true; failing; ++number) {
                SCOPED_TRACE(testing::Message()
                             << operation.name << ", call " << number << ", error " << row.error);
                failing = RunFailing(operation, number, row.error, row.code);
                failures += failing;
            }
        }
    }
    EXPECT_GT(failures, 200U);
    std::printf("call sweep: %u operations, %u failures\n",
                static_cast<unsigned>(std::size(OPERATIONS)), failures);
}

// The record needs a larger map: whatever fails on the way, the file and its map are as they were,
// and take the record a second time.
TEST(FileCallSweep, ARecordIsAddedWholeOrNotAtAll)
{
    const std::string text(3000000, 'x');
    const CT_Buffer large(text.data(), 3000000, 32);
    const CT_Buffer small("a record with a body", 20, 32);
    const CT_UString name = Name("test.rec");
    const CT_WinFile file(&name, 1024);
    unsigned failures = 0;
    for (const auto& row : ERRORS) {
        for (unsigned number = 1;; ++number) {
            SCOPED_TRACE(testing::Message() << "call " << number << ", error " << row.error);
            CT_RecordManager manager(&file);
            manager.v_Create(8, 64, 1);
            const unsigned kept = manager.n_AddRecord(&small);
            const unsigned end = manager.n_GetSize();
            FailingHost::Arm(number, row.error);
            const unsigned added = manager.n_AddRecord(&large);
            const std::string call = FailingHost::Disarm();
            SCOPED_TRACE(call);
            EXPECT_EQ(TakeSystem().code, added ? 0xFFFFFFFF : row.code);
            if (!added) {
                EXPECT_EQ(manager.n_GetSize(), end);
                EXPECT_EQ(manager.pcco_GetFile()->vn_GetSize(), 0xFFFFFU);
                EXPECT_EQ(manager.pcco_GetFile()->b_GetMapping(), 1);
                EXPECT_NE(manager.n_AddRecord(&large), 0U);
            }
            CT_Buffer buffer;
            manager.v_GetRecord(kept, &buffer);
            EXPECT_EQ(buffer.n_GetUsedSize(), 20U);
            manager.v_Close(1);
            EXPECT_EQ(TakeSystem(), SystemFailure());
            const RecordVerdict verdict = CheckRecordFile(ReadBytes("test.rec"));
            EXPECT_TRUE(verdict.sound && verdict.notes.empty()) << DescribeRecordVerdict(verdict);
            if (call.empty())
                break;
            ++failures;
        }
    }
    EXPECT_GT(failures, 12U);
}

TEST(FileCallSweep, AnInterruptedCallIsRepeated)
{
    unsigned failures = 0;
    for (const Operation& operation : OPERATIONS) {
        unsigned number = 1;
        for (bool failing = true; failing; ++number) {
            SCOPED_TRACE(testing::Message() << operation.name << ", call " << number);
            failing = RunFailing(operation, number, EINTR, 0);
            failures += failing;
        }
    }
    EXPECT_GT(failures, 20U);
}
#endif
