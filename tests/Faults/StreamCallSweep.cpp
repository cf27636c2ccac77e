// tests/Faults/StreamCallSweep.cpp: inputs and outputs on a host whose calls fail, each in turn.
#ifndef _WIN32
#include <Ostra/Input/FileInput.h>
#include <Ostra/Input/MappedFileInput.h>
#include <Ostra/Output/FileOutput.h>
#include <Ostra/Output/MemoryOutput.h>

#include <gtest/gtest.h>

#include <windows.h>

#include "Faults/FailingHost.h"
#include "Support/Directory.h"
#include "Support/Files.h"

#include <cstdio>
#include <memory>
#include <string>

namespace
{
const std::string TEXT(100, 'x');

struct State
{
    State()
    {
        WriteBytes(Path("file"), TEXT);
        WriteBytes(Path("other"), TEXT);
    }

    // Other names each time: what has lost a handle isn't in the way of what follows.
    std::string Path(const std::string& of) const { return of + std::to_string(number); }
    std::string Bytes() const { return ReadBytes(Path("file")); }

    static inline unsigned made;
    const unsigned number = ++made;
    CT_UString name = Name(Path("file"));
    CT_UString other_name = Name(Path("other"));
    CT_FileInput input{40, &name};
    CT_MappedFileInput mapped{40, &name};
    CT_WinFile file{&name, 0};
    CT_WinFile other{&other_name, 0};
    std::unique_ptr<CT_FileOutput> output;
    std::unique_ptr<CT_FileOutput> second;
    CT_MemoryOutput memory;
    const unsigned char* data = nullptr;
    unsigned size = 0;
    unsigned char bytes[100] = {};
    int result = 0;
};

void OpenInput(State& state)
{
    state.input.vv_Open();
}

void OpenOutputs(State& state)
{
    state.file.vv_Open(CT_File::e_AccessReadWrite, CT_File::e_OpenExisting, CT_File::e_ShareNone, 1,
                       0);
    state.other.vv_Open(CT_File::e_AccessReadWrite, CT_File::e_OpenExisting, CT_File::e_ShareNone,
                        1, 0);
    state.output = std::make_unique<CT_FileOutput>(&state.file);
    state.second = std::make_unique<CT_FileOutput>(&state.other);
    state.memory.vv_Append("abc", 3);
}

void Nothing(State&) {}

struct Operation
{
    const char* name;
    void (*prepare)(State&);
    void (*run)(State&);
    void (*done)(State&);   // what holds if nothing was reported
    void (*failed)(State&); // and if something was
};

const Operation OPERATIONS[] = {
    {"open an input", Nothing, OpenInput,
     [](State& state) {
         EXPECT_EQ(state.input.vn_GetSize(), 100U);
         EXPECT_EQ(state.input.pcco_GetFile()->b_IsOpen(), 1);
     },
     Nothing},
    {"close an input", OpenInput, [](State& state) { state.input.vv_Close(); },
     [](State& state) { EXPECT_EQ(state.input.pcco_GetFile()->b_IsOpen(), 0); }, Nothing},
    {"a block", OpenInput,
     [](State& state) { state.result = state.input.vb_GetNextBuffer(&state.data, &state.size); },
     [](State& state) {
         EXPECT_EQ(state.result, 1);
         EXPECT_EQ(state.input.vn_GetOffset(), 40U);
     },
     [](State& state) {
         EXPECT_EQ(state.result, 0);
         EXPECT_EQ(state.size, 0U);
         EXPECT_EQ(state.input.vn_GetOffset(), 0U);
     }},
    {"a copy", OpenInput,
     [](State& state) { state.result = state.input.vb_CopyNextBuffer(state.bytes, 50); },
     [](State& state) {
         EXPECT_EQ(state.result, 1);
         EXPECT_EQ(state.bytes[49], 'x');
     },
     [](State& state) {
         EXPECT_EQ(state.result, 0);
     }},
    {"a mark", OpenInput, [](State& state) { state.result = state.input.vb_IsUnicode(); },
     [](State& state) { EXPECT_EQ(state.result, 0); }, Nothing},
    {"open a mapped input", Nothing, [](State& state) { state.mapped.vv_Open(); },
     [](State& state) {
         EXPECT_EQ(state.mapped.vb_GetNextBuffer(&state.data, &state.size), 1);
         EXPECT_EQ(state.size, 40U);
     },
     [](State& state) {
         // A measuring close that failed has left it open under a view all the same.
         if (!state.mapped.vn_GetSize()) {
             EXPECT_EQ(state.mapped.vb_GetNextBuffer(&state.data, &state.size), 0);
         }
     }},
    {"close a mapped input", [](State& state) { state.mapped.vv_Open(); },
     [](State& state) { state.mapped.vv_Close(); },
     [](State& state) { EXPECT_EQ(state.mapped.pcco_GetFile()->b_IsOpen(), 0); }, Nothing},
    {"make a file", Nothing,
     [](State& state) { state.output = std::make_unique<CT_FileOutput>(&state.name); },
     [](State& state) { EXPECT_EQ(state.output->vn_GetSize(), 0U); }, Nothing},
    {"go on with a file",
     [](State& state) {
         state.file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenExisting, CT_File::e_ShareNone,
                            1, 0);
     },
     [](State& state) { state.output = std::make_unique<CT_FileOutput>(&state.file); },
     [](State& state) { EXPECT_EQ(state.file.vn_GetOffset(), 100U); }, Nothing},
    {"append", OpenOutputs, [](State& state) { state.output->vv_Append("abc", 3); },
     [](State& state) { EXPECT_EQ(state.Bytes(), TEXT + "abc"); },
     [](State& state) {
         EXPECT_EQ(state.Bytes(), TEXT);
     }},
    {"a run", OpenOutputs, [](State& state) { state.output->vv_Append('y', 3); },
     [](State& state) { EXPECT_EQ(state.Bytes(), TEXT + "yyy"); },
     [](State& state) {
         EXPECT_EQ(state.Bytes(), TEXT);
     }},
    {"memory", OpenOutputs, [](State& state) { state.output->vv_Append(state.memory); },
     [](State& state) { EXPECT_EQ(state.Bytes(), TEXT + "abc"); },
     [](State& state) {
         EXPECT_EQ(state.Bytes(), TEXT);
     }},
    {"replace", OpenOutputs, [](State& state) { state.output->vv_Replace("abc", 3, 10); },
     [](State& state) {
         EXPECT_EQ(state.Bytes().substr(9, 5), "xabcx");
         EXPECT_EQ(state.file.vn_GetOffset(), 100U);
     },
     Nothing},
    {"take a file in", OpenOutputs, [](State& state) { state.memory.vv_Append(*state.output); },
     [](State& state) {
         EXPECT_EQ(state.memory.vn_GetSize(), 103U);
         EXPECT_EQ(state.file.b_IsOpen(), 0);
     },
     Nothing},
    {"join", OpenOutputs, [](State& state) { state.output->vv_Append(*state.second); },
     [](State& state) {
         EXPECT_EQ(state.file.vn_GetSize(), 200U);
         EXPECT_EQ(state.other.vn_GetOffset(), 100U);
     },
     Nothing},
    {"give away", OpenOutputs, [](State& state) { state.output->pco_GiveFile(); },
     [](State& state) { EXPECT_EQ(state.file.b_IsOpen(), 0); },
     [](State& state) {
         EXPECT_EQ(state.output->pcco_GetFile(), nullptr);
     }},
};

// The first place is that of the file; the code is the host's error as the system says it.
bool RunFailing(const Operation& operation, unsigned number, int error, unsigned code)
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
            EXPECT_EQ(failure.code, code);
            EXPECT_TRUE(failure.names == state.Path("file") || failure.names == state.Path("other"))
                << failure.names;
            EXPECT_EQ(failure.trail.at(0), "Ostra/File/WinFile");
            operation.failed(state);
        }
    }
    TakeSystem(); // of a close that is tried once more
    // An append whose seek to the end fails leaves its handle to nobody.
    const bool lost = call == "lseek" && operation.name == std::string("join");
    EXPECT_LE(Descriptors(), descriptors + lost) << "descriptors leak after " << call;
    return !call.empty();
}
} // namespace

TEST(StreamCallSweep, EveryCallFails)
{
    const struct
    {
        int error;
        unsigned code;
    } errors[] = {{EIO, 1117}, {EACCES, 5}, {ENOSPC, 112}, {EMFILE, 4}};
    unsigned failures = 0;
    for (const Operation& operation : OPERATIONS) {
        for (const auto& row : errors) {
            bool failing = true;
            for (unsigned number = 1; failing; ++number) {
                SCOPED_TRACE(testing::Message()
                             << operation.name << ", call " << number << ", error " << row.error);
                failing = RunFailing(operation, number, row.error, row.code);
                failures += failing;
            }
        }
    }
    EXPECT_GT(failures, 200U);
    std::printf("call sweep of streams: %u operations, %u failures\n",
                static_cast<unsigned>(std::size(OPERATIONS)), failures);
}
#endif
