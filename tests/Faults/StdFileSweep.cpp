// tests/Faults/StdFileSweep.cpp: files of the stream library with an exhausted heap.
#include <Ostra/File/StdFile.h>

#include "Faults/Sweep.h"
#include "Support/Directory.h"
#include "Support/Files.h"

#include <filesystem>
#include <memory>
#include <string>

namespace fs = std::filesystem;

namespace
{
const SweepReport report({"Ostra/Buffer/Buffer", "Ostra/String/CString", "Ostra/String/UString",
                          "Ostra/String/String"});

struct State
{
    State() : name(Name("file.txt")), other(std::string(60, 'y').c_str())
    {
        fs::remove(std::string(60, 'y'));
        WriteBytes("file.txt", "abc");
        file.vv_Set(&name, 1024);
    }

    CT_UString name;
    CT_CString other;
    CT_StdFile file;
    CT_Buffer buffer;
    struct _stat facts = {};
    unsigned result = 0;
};

std::unique_ptr<State> Closed()
{
    return std::make_unique<State>();
}

std::unique_ptr<State> Opened()
{
    auto state = Closed();
    state->file.vv_Open(CT_File::e_AccessReadWrite, CT_File::e_OpenExisting, CT_File::e_ShareNone,
                        1, 0);
    return state;
}

void ExpectUsable(State& state)
{
    WriteBytes("usable.txt", "abc");
    const CT_UString name = Name("usable.txt");
    state.file.vv_Set(&name, 1024);
    EXPECT_EQ(state.file.vn_GetSize(), 3U);
    EXPECT_EQ(state.file.b_IsOpen(), 0);
}

template <typename T_Operation, typename T_Done>
void SweepUse(std::unique_ptr<State> (*prepare)(), T_Operation operation, T_Done done)
{
    Sweep(report, prepare, operation, [&](State& state, bool failed) {
        if (!failed)
            done(state);
        ExpectUsable(state);
    });
}
} // namespace

TEST(StdFileSweep, NewObjects)
{
    struct Pointer
    {
        ~Pointer() { delete file; }
        CT_StdFile* file = nullptr;
    };
    Sweep(
        SweepReport("Ostra/File/StdFile"), [] { return std::make_unique<Pointer>(); },
        [](Pointer& state) { state.file = new CT_StdFile; },
        [](Pointer& state, bool failed) { EXPECT_EQ(state.file == nullptr, failed); });
}

TEST(StdFileSweep, NamesAndBuffers)
{
    SweepUse(
        Closed, [](State& state) { state.file.vv_Set(&state.other, 0); },
        [](State& state) { EXPECT_EQ(Get(*state.file.pcco_GetFullName()), std::string(60, 'y')); });
    SweepUse(
        Opened, [](State& state) { state.result = state.file.n_Read(&state.buffer, 100); },
        [](State& state) { EXPECT_EQ(state.result, 3U); });
    SweepUse(
        Closed, [](State& state) { state.file.vv_Rename(&state.other); },
        [](State&) { EXPECT_TRUE(fs::exists(std::string(60, 'y'))); });
}

#ifndef _WIN32
// Here the buffer comes from the heap that fails, and the library tells that by its number.
TEST(StdFileSweep, ABufferThatCannotBeMade)
{
    WriteBytes("file.txt", "abc");
    const CT_UString name = Name("file.txt");
    CT_StdFile file(&name, 1024);
    bool refused = false;
    for (unsigned number = 1, failing = 1; failing > 0; ++number) {
        SCOPED_TRACE(number);
        FailingHeap::Arm(number, FailingHeap::ONCE);
        file.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareNone, 1, 0);
        failing = FailingHeap::Disarm();
        const Failure failure = TakeFailure();
        EXPECT_EQ(file.b_IsOpen(), failure == Failure());
        if (failing) {
            EXPECT_EQ(failure.text, "(12): File \"file.txt\": setvbuf returned error 12");
            refused = true;
        }
        file.vv_Close();
        EXPECT_EQ(TakeFailure(), Failure());
    }
    EXPECT_TRUE(refused);
}
#endif
