// tests/Faults/PathServices.cpp: paths, directories and their search where services fail. Most
// operations tell that by their result alone.
#include <Ostra/File/FileSystem.h>
#include <Ostra/File/FindFile.h>

#include "Faults/ServiceSweep.h"
#include "Support/Directory.h"
#include "Support/Files.h"

#include <filesystem>
#include <memory>
#include <string>

namespace fs = std::filesystem;

OSTRA_PRIVATE(SearchOf, INT_PTR CT_FindFile::*, &CT_FindFile::i_Handle);

namespace
{
const std::vector<std::string> BY_RESULT = {"SetCurrentDirectoryW",
                                            "SetCurrentDirectoryA",
                                            "GetCurrentDirectoryW",
                                            "GetCurrentDirectoryA",
                                            "GetFileAttributesW",
                                            "GetFileAttributesA",
                                            "SetEnvironmentVariableW",
                                            "SetEnvironmentVariableA",
                                            "CreateDirectoryW",
                                            "CreateDirectoryA",
                                            "RemoveDirectoryW",
                                            "RemoveDirectoryA",
                                            "GetTempPathW",
                                            "GetTempPathA",
                                            "FindFirstFileW",
                                            "FindFirstFileA",
                                            "FindNextFileW",
                                            "FindNextFileA"};

struct State
{
    State() : here(fs::current_path())
    {
        WriteBytes("file", "abc");
        fs::remove_all("directory");
        fs::create_directory("directory");
    }
    ~State() { fs::current_path(here); }

    const fs::path here;
    CT_UString file = Name("file");
    CT_UString directory = Name("directory");
    CT_UString fresh = Name("directory/fresh");
    CT_UString path = Name("as it was");
    int result = 0;
};

void Nothing(State&) {}

void NoResult(State& state)
{
    EXPECT_EQ(state.result, 0);
}

void Succeeded(State& state)
{
    EXPECT_EQ(state.result, 1);
}

void ExpectUsable(State& state)
{
    EXPECT_EQ(CT_FileSystem::sb_IsExistent(&state.file), fs::exists("file"));
}

const ServiceOperation<State> OPERATIONS[] = {
    {"existence", Nothing,
     [](State& state) { state.result = CT_FileSystem::sb_IsExistent(&state.file); }, Succeeded,
     NoResult, BY_RESULT},
    {"full path", Nothing, [](State& state) { CT_FileSystem::sv_FullPath(&state.path); },
     [](State& state) { EXPECT_GT(state.path.vn_GetLength(), 9U); },
     [](State& state) {
         EXPECT_EQ(Get(state.path), "as it was");
     }},
    {"enter", Nothing,
     [](State& state) { state.result = CT_FileSystem::sb_ChangePath(&state.directory); }, Succeeded,
     NoResult, BY_RESULT},
    {"make", Nothing, [](State& state) { state.result = CT_FileSystem::sb_MakePath(&state.fresh); },
     Succeeded,
     [](State& state) {
         NoResult(state);
         EXPECT_FALSE(fs::exists("directory/fresh"));
     },
     BY_RESULT},
    {"remove", Nothing,
     [](State& state) { state.result = CT_FileSystem::sb_RemovePath(&state.directory); }, Succeeded,
     [](State& state) {
         NoResult(state);
         EXPECT_TRUE(fs::exists("directory"));
     },
     BY_RESULT},
    {"temporary name", Nothing,
     [](State& state) {
         CT_FileSystem::sv_MakeTemporaryName(&state.path, &state.file, &state.file, nullptr);
     },
     [](State& state) { EXPECT_FALSE(fs::exists(Get(state.path))); }, nullptr, BY_RESULT},
};

const ServiceOperation<State> CURRENT_PATH[] = {
    {"current path", Nothing,
     [](State& state) { CT_FileSystem::sv_GetCurrentPath(&state.path, 0); },
     [](State& state) { EXPECT_EQ(Get(state.path), state.here.string()); },
     [](State& state) {
         EXPECT_EQ(state.path.vn_GetLength(), 0U);
     }},
};

UINT WINAPI WideDriveIsThere(LPCWSTR)
{
    return DRIVE_FIXED;
}

UINT WINAPI DriveIsThere(LPCSTR)
{
    return DRIVE_FIXED;
}

// The current drive. Where there are none, drive C is taken for one.
struct DriveState : State
{
    DriveState()
    {
        const std::string name = here.root_name().string();
        if (!name.empty()) {
            drive = static_cast<unsigned>((name[0] | 0x20) - 'a' + 1);
            return;
        }
        service::GetDriveTypeWService::place.replacement = WideDriveIsThere;
        service::GetDriveTypeAService::place.replacement = DriveIsThere;
    }
    ~DriveState()
    {
        service::GetDriveTypeWService::place.replacement = nullptr;
        service::GetDriveTypeAService::place.replacement = nullptr;
    }

    unsigned drive = 3;
};

const ServiceOperation<DriveState> DRIVE_PATH[] = {
    {"current path of a drive", [](DriveState&) {},
     [](DriveState& state) { CT_FileSystem::sv_GetCurrentPath(&state.path, state.drive); },
     [](DriveState& state) {
         const bool has_drives = state.here.has_root_name();
         EXPECT_EQ(Get(state.path),
                   has_drives ? state.here.string() : (state.here / "C:.").string());
     },
     [](DriveState& state) {
         EXPECT_EQ(state.path.vn_GetLength(), 0U);
     }},
};

struct SearchState
{
    SearchState() : pattern(Name("file*"))
    {
        WriteBytes("file1", "abc");
        WriteBytes("file2", "abc");
        find = std::make_unique<CT_FindFile>(&pattern, 0, 0, 0);
    }
    // The class closes no search.
    ~SearchState()
    {
        const INT_PTR handle = (*find).*Private(SearchOf());
        if (handle != -1)
            FindClose(reinterpret_cast<HANDLE>(handle));
    }

    CT_UString pattern;
    CT_UString name;
    std::unique_ptr<CT_FindFile> find;
    unsigned attributes = 0;
    int result = 0;
};

void FindFirst(SearchState& state)
{
    state.result = state.find->b_FindFirst(&state.name, &state.attributes);
}

void FindNext(SearchState& state)
{
    state.result = state.find->b_FindNext(&state.name, &state.attributes);
}

void NotFound(SearchState& state)
{
    EXPECT_EQ(state.result, 0);
}

void ExpectUsable(SearchState& state)
{
    const INT_PTR handle = (*state.find).*Private(SearchOf());
    if (handle != -1)
        FindClose(reinterpret_cast<HANDLE>(handle));
    FindFirst(state);
    EXPECT_EQ(state.result, 1);
    EXPECT_EQ(Get(state.name), "file1");
}

const ServiceOperation<SearchState> SEARCHES[] = {
    {"first", [](SearchState&) {}, FindFirst,
     [](SearchState& state) { EXPECT_EQ(Get(state.name), "file1"); }, NotFound, BY_RESULT},
    {"next", FindFirst, FindNext, [](SearchState& state) { EXPECT_EQ(Get(state.name), "file2"); },
     NotFound, BY_RESULT},
};

// What is reported has a number of the class's own.
JudgeReport Reports(unsigned code)
{
    return [=](const ServiceReport& report) {
        EXPECT_EQ(report.failure.code, code);
        EXPECT_FALSE(report.failure.trail.empty());
        for (const std::string& place : report.failure.trail)
            EXPECT_EQ(place, "Ostra/File/FileSystem");
    };
}
} // namespace

TEST(ServiceSweep, FileSystem)
{
    SweepServices(Reports(60012), OPERATIONS);
}

TEST(ServiceSweep, FileSystemTellsTheCurrentPath)
{
    SweepServices(Reports(13), CURRENT_PATH, 0);
}

TEST(ServiceSweep, FileSystemTellsTheCurrentPathOfADrive)
{
    SweepServices(Reports(13), DRIVE_PATH, 0);
}

TEST(ServiceSweep, FindFile)
{
    SweepServices(Reports(0), SEARCHES);
}
