// tests/Faults/StreamSweep.cpp: inputs and outputs with an exhausted heap.
#include <Ostra/Input/FileInput.h>
#include <Ostra/Input/MappedFileInput.h>
#include <Ostra/Input/MemoryInput.h>
#include <Ostra/Output/FileOutput.h>
#include <Ostra/Output/HugeOutput.h>
#include <Ostra/Output/MemoryOutput.h>
#include <Ostra/Output/StringOutput.h>

#include <windows.h>

#include "Faults/Sweep.h"
#include "Support/Directory.h"
#include "Support/Files.h"

#include <cstring>
#include <memory>
#include <string>

namespace
{
// Where streams' allocations fail: in buffers, in the scratch room of strings, and in their own
// objects.
const SweepReport report({"Ostra/Buffer/Buffer", "Ostra/String/CString", "Ostra/String/UString",
                          "Ostra/String/String", "Ostra/File/WinFile"});

const char TEXT[] = "0123456789abcdefghij";

struct State
{
    State() : name(Name("file")), other_name("other")
    {
        WriteBytes("file", TEXT);
        WriteBytes("other", TEXT);
    }

    CT_UString name;
    CT_CString other_name;
    std::unique_ptr<CT_FileInput> input;
    std::unique_ptr<CT_MappedFileInput> mapped;
    std::unique_ptr<CT_MemoryOutput> memory;
    std::unique_ptr<CT_FileOutput> file;
    std::unique_ptr<CT_FileOutput> other_file;
    CT_UString wide;
    std::unique_ptr<CT_StringOutput> string;
    const unsigned char* data = nullptr;
    unsigned size = 0;
    int result = 0;
};

std::unique_ptr<State> Inputs()
{
    auto state = std::make_unique<State>();
    state->input = std::make_unique<CT_FileInput>(8, &state->name);
    state->mapped = std::make_unique<CT_MappedFileInput>(8, &state->name);
    return state;
}

std::unique_ptr<State> OpenInput()
{
    auto state = Inputs();
    state->input->vv_Open();
    return state;
}

std::unique_ptr<State> Outputs()
{
    auto state = std::make_unique<State>();
    state->memory = std::make_unique<CT_MemoryOutput>();
    state->memory->vv_Append("abc", 3);
    state->file = std::make_unique<CT_FileOutput>(&state->name);
    state->file->vv_Append("abc", 3);
    state->other_file = std::make_unique<CT_FileOutput>(&state->other_name);
    state->other_file->vv_Append("xyz", 3);
    state->string = std::make_unique<CT_StringOutput>(state->wide);
    return state;
}

std::string Memory(const State& state)
{
    const CT_Buffer* memory = state.memory->pcco_GetMemory();
    return std::string(static_cast<const char*>(memory->qcv_Get()), memory->n_GetUsedSize());
}

// The objects can be used again, whatever happened to them.
void ExpectInputUsable(State& state)
{
    state.input->v_Set(8, &state.name);
    state.input->vv_Open();
    EXPECT_EQ(state.input->vb_GetNextBuffer(&state.data, &state.size), 1);
    EXPECT_EQ(std::memcmp(state.data, TEXT, 8), 0);
    state.input->vv_Close();
}

void ExpectOutputsUsable(State& state)
{
    state.memory->v_Set();
    state.memory->vv_Append("abc", 3);
    EXPECT_EQ(Memory(state), "abc");
    state.other_file.reset();
    state.file->v_Set(&state.other_name);
    state.file->vv_Append("abc", 3);
    state.file.reset();
    EXPECT_EQ(ReadBytes("other"), "abc");
}

template <typename T_Operation, typename T_Done>
void SweepOutputs(T_Operation operation, T_Done done)
{
    Sweep(report, Outputs, operation, [&](State& state, bool failed) {
        if (!failed)
            done(state);
        ExpectOutputsUsable(state);
    });
}
} // namespace

TEST(StreamSweep, NewObjects)
{
    struct Pointers
    {
        ~Pointers()
        {
            delete input;
            delete output;
        }
        CT_UString name = Name("file");
        CT_CString string;
        CT_Input* input = nullptr;
        CT_Output* output = nullptr;
    };
    const auto sweep = [](const char* source, auto operation) {
        Sweep(
            SweepReport(
                {source, "Ostra/Buffer/Buffer", "Ostra/String/UString", "Ostra/File/WinFile"}),
            [] { return std::make_unique<Pointers>(); }, operation,
            [](Pointers& state, bool failed) {
                EXPECT_TRUE(failed || state.input || state.output);
            });
    };
    sweep("Ostra/Input/MemoryInput",
          [](Pointers& state) { state.input = new CT_MemoryInput(8, nullptr, 0); });
    sweep("Ostra/Input/FileInput",
          [](Pointers& state) { state.input = new CT_FileInput(8, &state.name); });
    sweep("Ostra/Input/MappedFileInput",
          [](Pointers& state) { state.input = new CT_MappedFileInput(8, &state.name); });
    sweep("Ostra/Output/MemoryOutput", [](Pointers& state) { state.output = new CT_MemoryOutput; });
    sweep("Ostra/Output/MemoryOutput",
          [](Pointers& state) { state.output = new CT_MemoryOutput(state.name.pcco_GetBuffer()); });
    sweep("Ostra/Output/FileOutput",
          [](Pointers& state) { state.output = new CT_FileOutput(&state.name); });
    sweep("Ostra/Output/StringOutput",
          [](Pointers& state) { state.output = new CT_StringOutput(state.string); });
    sweep("Ostra/Output/HugeOutput",
          [](Pointers& state) { state.output = new CT_HugeOutput(nullptr, 0, 32); });
}

TEST(StreamSweep, InputsAreOpened)
{
    Sweep(
        report, Inputs, [](State& state) { state.input->vv_Open(); },
        [](State& state, bool failed) {
            EXPECT_EQ(state.input->pcco_GetFile()->b_IsOpen(), !failed);
            EXPECT_EQ(state.input->vn_GetSize(), failed ? 0U : 20U);
            ExpectInputUsable(state);
        });
}

TEST(StreamSweep, InputsTakeAnotherFile)
{
    Sweep(
        report, OpenInput, [](State& state) { state.input->v_Set(4, &state.other_name); },
        [](State& state, bool failed) {
            EXPECT_EQ(state.input->pcco_GetFile()->b_IsOpen(), 0);
            EXPECT_EQ(state.input->n_GetBuffer(), 4U);
            if (!failed) {
                EXPECT_EQ(Get(*state.input->pcco_GetFile()->pcco_GetFullName()), "other");
            }
            ExpectInputUsable(state);
        });
    Sweep(
        report, Inputs, [](State& state) { state.mapped->v_Set(4, &state.other_name); },
        [](State& state, bool failed) {
            EXPECT_EQ(state.mapped->n_GetBuffer(), 4U);
            if (!failed) {
                EXPECT_EQ(Get(*state.mapped->pcco_GetFile()->pcco_GetFullName()), "other");
            }
        });
}

TEST(StreamSweep, ALargerBlockIsReadOrTheFileIsClosed)
{
    Sweep(
        report, OpenInput,
        [](State& state) {
            state.result = state.input->vb_GetNextBuffer(100000, &state.data, &state.size);
        },
        [](State& state, bool failed) {
            EXPECT_EQ(state.result, !failed);
            EXPECT_EQ(state.size, failed ? 0U : 20U);
            EXPECT_EQ(state.input->vn_GetOffset(), failed ? 0U : 20U);
            EXPECT_EQ(state.input->pcco_GetFile()->b_IsOpen(), !failed);
            ExpectInputUsable(state);
        });
}

TEST(StreamSweep, MemoryIsAppendedTo)
{
    const std::string large(1000, 'x');
    SweepOutputs([&](State& state) { state.memory->vv_Append(large.data(), 1000); },
                 [&](State& state) { EXPECT_EQ(Memory(state), "abc" + large); });
    SweepOutputs([](State& state) { state.memory->vv_Append('x', 1000); },
                 [&](State& state) { EXPECT_EQ(Memory(state), "abc" + large); });
    SweepOutputs([&](State& state) { state.memory->vv_Replace(large.data(), 1000, 1); },
                 [&](State& state) { EXPECT_EQ(Memory(state), "a" + large); });
    SweepOutputs([](State& state) { state.memory->vv_Append(*state.file); },
                 [](State& state) { EXPECT_EQ(Memory(state), "abcabc"); });
}

TEST(StreamSweep, AFileOfManyPiecesIsAppendedToMemoryAsFarAsItGoes)
{
    const std::string all = "abcabc" + std::string(1000, 'x');
    Sweep(
        report,
        [] {
            auto state = Outputs();
            state->file->vv_Append('x', 1000);
            return state;
        },
        [](State& state) { state.memory->vv_Append(*state.file); },
        [&](State& state, bool failed) {
            EXPECT_TRUE(failed ? all.starts_with(Memory(state)) : Memory(state) == all);
            ExpectOutputsUsable(state);
        });
}

TEST(StreamSweep, AMemoryOutputWithoutABufferSaysSo)
{
    const CT_Buffer begin("abc", 3, 32);
    const auto without = [](State& state, bool failed) {
        EXPECT_EQ(state.memory->pcco_GetMemory() == nullptr, failed);
        EXPECT_EQ(state.memory->vn_GetSize(), 0U + (failed ? 0 : state.size));
        state.memory->vv_Append("abc", 3);
        EXPECT_EQ(TakeFailure().code, failed ? unsigned(ERROR_INVALID_HANDLE) : 0xFFFFFFFF);
        ExpectOutputsUsable(state);
    };
    Sweep(
        report, Outputs, [](State& state) { state.memory->v_Set(); }, without);
    Sweep(
        report,
        [] {
            auto state = Outputs();
            state->size = 3;
            return state;
        },
        [&](State& state) { state.memory->v_Set(&begin); }, without);
}

TEST(StreamSweep, FilesAreAppendedTo)
{
    SweepOutputs([](State& state) { state.file->vv_Append('x', 1000); },
                 [](State& state) { EXPECT_EQ(state.file->vn_GetSize(), 1003U); });
    SweepOutputs([](State& state) { state.file->v_Set(&state.name); },
                 [](State& state) { EXPECT_EQ(state.file->vn_GetSize(), 0U); });
    SweepOutputs([](State& state) { state.file->vv_Append(*state.other_file); },
                 [](State& state) {
                     EXPECT_EQ(state.file->vn_GetSize(), 6U);
                     EXPECT_EQ(state.other_file->vn_GetSize(), 3U);
                 });
}

TEST(StreamSweep, StringsAreAppendedTo)
{
    const std::string large(1000, 'x');
    SweepOutputs([&](State& state) { state.string->vv_Append(large.data(), 1000); },
                 [](State& state) { EXPECT_EQ(state.wide.vn_GetLength(), 1000U); });
    SweepOutputs([](State& state) { state.string->vv_Append('x', 1000); },
                 [](State& state) { EXPECT_EQ(state.wide.vn_GetLength(), 1000U); });
}

#ifndef _WIN32
// Windows has its blocks from elsewhere.
TEST(StreamSweep, GlobalMemoryIsAppendedTo)
{
    struct Huge
    {
        CT_HugeOutput output{nullptr, 0, 16};
    };
    const std::string text(100, 'x');
    Sweep(
        SweepReport("Ostra/Output/HugeOutput"),
        [] {
            auto state = std::make_unique<Huge>();
            state->output.vv_Append("abc", 3);
            return state;
        },
        [&](Huge& state) { state.output.vv_Append(text.data(), 100); },
        [&](Huge& state, bool failed) {
            EXPECT_EQ(state.output.vn_GetSize(), failed ? 3U : 103U);
            // The block is as it was: what no longer fits makes it grow.
            state.output.vv_Append(text.data(), 100);
            const unsigned used = failed ? 103 : 203;
            EXPECT_EQ(state.output.vn_GetSize(), used);
            const HGLOBAL handle = state.output.h_GiveBuffer();
            EXPECT_GE(GlobalSize(handle), used);
            EXPECT_EQ(std::string(static_cast<const char*>(GlobalLock(handle)), used),
                      "abc" + std::string(used - 3, 'x'));
            GlobalUnlock(handle);
            GlobalFree(handle);
        });
}
#endif
