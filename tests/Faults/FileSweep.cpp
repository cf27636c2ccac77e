// tests/Faults/FileSweep.cpp: files, paths and directory search with an exhausted heap.
#include <Ostra/File/FileSystem.h>
#include <Ostra/File/FindFile.h>
#include <Ostra/File/WinFile.h>

#include "Faults/Sweep.h"
#include "Support/Directory.h"
#include "Support/Files.h"

#include <filesystem>
#include <memory>
#include <string>

namespace fs = std::filesystem;

namespace
{
// Where a file's allocations fail: in its buffers, and in the scratch room of its strings.
const SweepReport report({"Ostra/Buffer/Buffer", "Ostra/String/CString", "Ostra/String/UString",
                          "Ostra/String/String"});

const char LINES[] = "first line\r\nsecond line";

struct State
{
    State() : name(Name("file.txt")), other("other.txt"), long_name(Name(std::string(60, 'x')))
    {
        fs::remove("other.txt");
        WriteBytes("file.txt", LINES);
        file.vv_Set(&name, 0);
    }

    CT_UString name;
    CT_CString other;
    CT_UString long_name;
    CT_WinFile file;
    CT_WinFile source;
    CT_UString line;
    CT_Buffer buffer;
    CT_UString parts[4];
    unsigned result = 0;
    unsigned attributes = 0;
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

// The object can be used: it takes a name, opens, reads and closes.
void ExpectUsable(State& state)
{
    WriteBytes("usable.txt", LINES);
    const CT_UString name = Name("usable.txt");
    state.file.vv_Set(&name, 0);
    state.file.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareNone, 1, 0);
    EXPECT_EQ(state.file.b_IsOpen(), 1);
    EXPECT_EQ(state.file.n_ReadLineC(&state.line, nullptr), 11U);
    EXPECT_EQ(Get(state.line), "first line");
    state.file.vv_Close();
    EXPECT_EQ(state.file.b_IsOpen(), 0);
}

// A sweep after whose failures the object is only asked to be of use.
template <typename T_Prepare, typename T_Operation, typename T_Done>
void SweepUse(T_Prepare prepare, T_Operation operation, T_Done done)
{
    Sweep(report, prepare, operation, [&](State& state, bool failed) {
        if (!failed)
            done(state);
        ExpectUsable(state);
    });
}
} // namespace

TEST(FileSweep, NewObjects)
{
    struct Pointers
    {
        ~Pointers()
        {
            delete file;
            delete find;
        }
        CT_WinFile* file = nullptr;
        CT_FindFile* find = nullptr;
    };
    Sweep(
        SweepReport("Ostra/File/WinFile"), [] { return std::make_unique<Pointers>(); },
        [](Pointers& state) { state.file = new CT_WinFile; },
        [](Pointers& state, bool failed) { EXPECT_EQ(state.file == nullptr, failed); });
    Sweep(
        SweepReport({"Ostra/File/FindFile", "Ostra/Buffer/Buffer"}),
        [] { return std::make_unique<Pointers>(); },
        [](Pointers& state) {
            CT_UString pattern;
            state.find = new CT_FindFile(&pattern, 0, 0, 0);
        },
        [](Pointers& state, bool failed) { EXPECT_EQ(state.find == nullptr, failed); });
}

TEST(FileSweep, NamesAndTheirParts)
{
    SweepUse(
        Closed, [](State& state) { state.file.v_SetFullName(&state.other); },
        [](State& state) {
            EXPECT_EQ(Get(*state.file.pcco_GetFullName()), "other.txt");
            EXPECT_EQ(Get(*state.file.pcco_GetExtension()), ".txt");
        });
    SweepUse(
        Closed, [](State& state) { state.file.v_SetDirectory(&state.other); },
        [](State& state) {
            EXPECT_EQ(Get(*state.file.pcco_GetFullName()), "other.txt\\file.txt");
        });
    SweepUse(
        Closed, [](State& state) { state.file.vv_Set(&state.other, 0); },
        [](State& state) { EXPECT_EQ(Get(*state.file.pcco_GetName()), "other"); });
    SweepUse(
        Closed, [](State& state) { state.file.v_FullPath(); },
        [](State& state) {
            EXPECT_EQ(Get(*state.file.pcco_GetFullName()),
                      (fs::current_path() / "file.txt").string());
        });
}

TEST(FileSweep, LinesThatAreRead)
{
    const auto first = [](State& state) {
        EXPECT_EQ(Get(state.line), "first line");
        EXPECT_EQ(state.result, 11U);
    };
    SweepUse(
        Opened, [](State& state) { state.result = state.file.n_ReadLineC(&state.line, nullptr); },
        first);
    SweepUse(
        Opened,
        [](State& state) { state.result = state.file.n_ReadLineCSequential(&state.line, nullptr); },
        first);
    SweepUse(
        Opened, [](State& state) { state.result = state.file.n_ReadLineU(&state.line, nullptr); },
        [](State& state) { EXPECT_EQ(state.result, 22U) << "no unit is a line feed"; });
}

TEST(FileSweep, AFailedLineGivesNothing)
{
    Sweep(
        report, Opened,
        [](State& state) { state.result = state.file.n_ReadLineCSequential(&state.line, nullptr); },
        [](State& state, bool failed) { EXPECT_EQ(state.result, failed ? 0U : 11U); });
}

TEST(FileSweep, LinesThatAreWritten)
{
    SweepUse(
        Opened, [](State& state) { state.file.v_WriteLineC(&state.name, 1); },
        [](State& state) {
            state.file.vv_Close();
            EXPECT_EQ(ReadBytes("file.txt").substr(0, 10), "file.txt\r\n");
        });
    SweepUse(
        Opened, [](State& state) { state.file.v_WriteLineU(&state.other, 0); },
        [](State& state) {
            state.file.vv_Close();
            EXPECT_EQ(ReadBytes("file.txt").substr(0, 4), std::string("o\0t\0", 4));
        });
}

TEST(FileSweep, BuffersAndWholeFiles)
{
    Sweep(
        report, Opened, [](State& state) { state.result = state.file.n_Read(&state.buffer, 100); },
        [](State& state, bool failed) {
            EXPECT_EQ(state.result, failed ? 0U : 23U);
            EXPECT_EQ(state.buffer.n_GetUsedSize(), failed ? 0U : 23U);
            ExpectUsable(state);
        });
    SweepUse(
        [] {
            auto state = Closed();
            WriteBytes("other.txt", "abc");
            state->source.vv_Set(&state->other, 0);
            return state;
        },
        [](State& state) { state.file.v_Append(&state.source, 10); },
        [](State& state) {
            EXPECT_EQ(state.source.b_IsOpen(), 0);
            EXPECT_EQ(ReadBytes("file.txt"), std::string(LINES) + "abc");
        });
}

// The line is written into the string's own block, which is made larger beforehand if it can be.
TEST(FileSweep, ALineIsReadIntoTheBlockThatIsThere)
{
    Sweep(
        report,
        [] {
            auto state = Opened();
            state->other.v_Set(std::string(40, 'x').c_str(), 40, 0);
            return state;
        },
        [](State& state) {
            state.result = state.file.n_ReadLineCSequential(&state.other, nullptr);
        },
        [](State& state, bool failed) {
            EXPECT_EQ(state.result, failed ? 0U : 11U);
            if (!failed) {
                EXPECT_STREQ(state.other.qccz_Get(), "first line");
            }
        });
}

// There is room enough, but others hold it.
TEST(FileSweep, ABufferThatOthersHoldIsReadIntoWhereItCanBeCopied)
{
    struct Held : State
    {
        CT_Buffer holder;
    };
    Sweep(
        report,
        [] {
            auto state = std::make_unique<Held>();
            state->file.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting,
                                CT_File::e_ShareNone, 1, 0);
            state->buffer.v_Set(100, 32, 0);
            state->buffer.v_Append("held", 4);
            state->holder.v_Set(&state->buffer);
            return state;
        },
        [](Held& state) { state.result = state.file.n_Read(&state.buffer, 10); },
        [](Held& state, bool failed) {
            EXPECT_EQ(state.result, failed ? 0U : 10U);
            EXPECT_EQ(state.file.vn_GetOffset(), state.result);
            EXPECT_TRUE(state.buffer.b_IsEqual(failed ? "held" : "first line", failed ? 4 : 10, 0));
            EXPECT_TRUE(state.holder.b_IsEqual("held", 4, 0));
            EXPECT_EQ(state.holder.n_GetUsedSize(), 4U);
        });
}

TEST(FileSweep, FilesByName)
{
    SweepUse(
        Closed, [](State& state) { state.file.v_CopyFile(&state.other); },
        [](State&) { EXPECT_EQ(ReadBytes("other.txt"), LINES); });
    SweepUse(
        Closed, [](State& state) { state.file.vv_Rename(&state.other); },
        [](State& state) {
            EXPECT_EQ(Get(*state.file.pcco_GetFullName()), "other.txt");
            EXPECT_FALSE(fs::exists("file.txt"));
        });
}

TEST(FileSweep, PathsAreSplitAndJoined)
{
    SweepUse(
        Closed,
        [](State& state) {
            CT_FileSystem::sv_SplitPath(&state.other, &state.parts[0], &state.parts[1],
                                        &state.parts[2], &state.parts[3]);
        },
        [](State& state) {
            EXPECT_EQ(Get(state.parts[2]), "other");
            EXPECT_EQ(Get(state.parts[3]), ".txt");
        });
    SweepUse(
        Closed,
        [](State& state) {
            CT_FileSystem::sv_MakePath(&state.line, &state.name, &state.other, &state.name,
                                       nullptr);
        },
        [](State& state) { EXPECT_EQ(Get(state.line), "f:other.txt\\file.txt"); });
    SweepUse(
        Closed, [](State& state) { CT_FileSystem::sv_GetCurrentPath(&state.line, 0); },
        [](State& state) { EXPECT_EQ(Get(state.line), fs::current_path().string()); });
    SweepUse(
        Closed,
        [](State& state) {
            CT_FileSystem::sv_MakeTemporaryName(&state.line, &state.name, &state.other, nullptr);
        },
        [](State& state) { EXPECT_FALSE(fs::exists(Get(state.line))); });
}

TEST(FileSweep, AFullPathThatCannotBeMadeLeavesThePath)
{
    Sweep(
        report,
        [] {
            auto state = Closed();
            state->other.v_Set("d/n", -1, 0);
            return state;
        },
        [](State& state) { CT_FileSystem::sv_FullPath(&state.other); },
        [](State& state, bool failed) {
            const std::string full = (fs::current_path() / "d" / "n").string();
            EXPECT_EQ(Get(state.other), failed ? "d/n" : full);
        });
}

TEST(FileSweep, DirectoriesAreSearched)
{
    struct Search
    {
        Search() : pattern(Name("*.txt"))
        {
            WriteBytes("file.txt", LINES);
            find = std::make_unique<CT_FindFile>(&pattern, 0, 0, 1);
        }
        CT_UString pattern;
        CT_CString other{"f*.txt"};
        CT_UString name;
        std::unique_ptr<CT_FindFile> find;
        unsigned attributes = 0;
        int found = 0;
    };
    const auto usable = [](Search& state) {
        state.find->v_Set(&state.pattern, 0, 0, 0);
        EXPECT_EQ(state.find->b_FindFirst(&state.name, &state.attributes), 1);
        EXPECT_EQ(Get(state.name), "file.txt");
    };
    Sweep(
        report, [] { return std::make_unique<Search>(); },
        [](Search& state) { state.find->v_Set(&state.other, 0, 0, 1); },
        [&](Search& state, bool) { usable(state); });
    Sweep(
        report, [] { return std::make_unique<Search>(); },
        [](Search& state) {
            state.found = state.find->b_FindFirst(&state.name, &state.attributes);
        },
        [&](Search& state, bool failed) {
            if (!failed) {
                EXPECT_EQ(state.found, 1);
                EXPECT_EQ(Get(state.name), "file.txt");
            }
            usable(state);
        });
}
