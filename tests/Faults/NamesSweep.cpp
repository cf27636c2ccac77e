// tests/Faults/NamesSweep.cpp: names of files that are converted on the way to the system, with an
// exhausted heap. What couldn't be converted must not reach the system as another name.
#include <Ostra/File/FileSystem.h>
#include <Ostra/File/FindFile.h>
#include <Ostra/File/StdFile.h>
#include <Ostra/File/WinFile.h>
#include <Ostra/Input/MappedFileInput.h>
#include <Ostra/Output/FileOutput.h>
#include <System/OS/OS.h>

#include "Faults/Forms.h"
#include "Faults/ServiceSweep.h"
#include "Support/Directory.h"
#include "Support/Files.h"
#include "Support/Private.h"

#include <cerrno>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

namespace fs = std::filesystem;

OSTRA_PRIVATE(NamedSearch, INT_PTR CT_FindFile::*, &CT_FindFile::i_Handle);

namespace
{
const char FILE_NAME[] = "file-with-a-name-that-takes-some-room.txt";
const char DIRECTORY[] = "directory-with-a-name-that-takes-some-room";
const std::string CONTENT(100, 'x');

// A name in the class that the system's road has to convert.
class OtherName
{
public:
    explicit OtherName(const char* name) : bytes(name), units(Name(name)) {}
    const CT_String* Get() const
    {
        return CT_OS::sb_GetIsWindowsNT() ? static_cast<const CT_String*>(&bytes) : &units;
    }

private:
    const CT_CString bytes;
    const CT_UString units;
};

const char SPARE[] = "spare.txt";

// What lies in the directory of the test: the content of files, of directories whether they are
// empty. The file of an output is open to nobody else.
std::map<std::string, std::string> Listing()
{
    std::map<std::string, std::string> all;
    for (const auto& entry : fs::directory_iterator(".")) {
        if (entry.path().filename() == SPARE)
            continue;
        all[entry.path().filename().string()] =
            entry.is_directory() ? (fs::is_empty(entry.path()) ? "empty" : "full")
                                 : ReadBytes(entry.path().string());
    }
    return all;
}

struct Named
{
    Named()
    {
        fs::remove_all(DIRECTORY);
        fs::create_directory(DIRECTORY);
        fs::permissions(FILE_NAME, fs::perms::owner_write, fs::perm_options::add, missing);
        WriteBytes(FILE_NAME, CONTENT);
        file.vv_Set(&name, 0);
        stream.vv_Set(&name, 1024);
        before = Listing();
    }
    ~Named() { fs::current_path(here); }

    const fs::path here = fs::current_path();
    std::error_code missing;
    const OtherName directory{DIRECTORY};
    const OtherName fresh{"directory-with-a-name-that-takes-some-room/fresh-one"};
    const CT_UString spare_name = Name(SPARE);
    CT_WinFile file, spare{&spare_name, 0};
    CT_FileOutput kept{&spare};
    CT_StdFile stream;
    const CT_UString name = Name(FILE_NAME);
    CT_MappedFileInput input{1024, &name};
    forms::Made<CT_FileOutput> output;
    struct _stat facts = {};
    unsigned result = 7;
    std::map<std::string, std::string> before;
};

struct Row
{
    const char* name;
    void (*run)(Named&);
    unsigned done, failed; // the result
    bool wide = false;     // the name is converted on the wide road, too
};

void SetResult(Named& state, int b_Result)
{
    state.result = b_Result ? 1 : 0;
}

const Row ROWS[] = {
    {"existence", [](Named& s) { SetResult(s, s.file.b_IsExistent()); }, 1, 0},
    {"attributes", [](Named& s) { SetResult(s, s.file.n_GetAttributes() != 0xFFFFFFFF); }, 1, 0},
    {"open",
     [](Named& s) {
         s.file.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareNone, 1, 0);
         SetResult(s, s.file.b_IsOpen());
     },
     1, 0},
    {"create",
     [](Named& s) {
         s.file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone, 1, 0);
         SetResult(s, s.file.b_IsOpen());
     },
     1, 0},
    // The second attempt may open it.
    {"append",
     [](Named& s) {
         s.file.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenAppend, CT_File::e_ShareNone, 1, 0);
     },
     7, 7},
    {"size", [](Named& s) { s.result = s.file.vn_GetSize(); }, 100, 0},
    {"end of a closed file", [](Named& s) { SetResult(s, s.file.vb_IsEof()); }, 0, 1},
    {"remove", [](Named& s) { s.file.vv_Remove(); }, 7, 7},
    {"existence of a stream's file", [](Named& s) { SetResult(s, s.stream.b_IsExistent()); }, 1, 0},
    {"facts",
     [](Named& s) {
         s.stream.v_GetFileInformation(&s.facts);
         s.result = static_cast<unsigned>(s.facts.st_size);
     },
     100, 0},
    {"permission", [](Named& s) { s.stream.v_Chmod(CT_StdFile::e_PermissionRead); }, 7, 7},
    {"remove a stream's file", [](Named& s) { s.stream.vv_Remove(); }, 7, 7},
    {"enter", [](Named& s) { SetResult(s, CT_FileSystem::sb_ChangePath(s.directory.Get())); }, 1, 0,
     true},
    {"make", [](Named& s) { SetResult(s, CT_FileSystem::sb_MakePath(s.fresh.Get())); }, 1, 0, true},
    {"leave", [](Named& s) { SetResult(s, CT_FileSystem::sb_RemovePath(s.directory.Get())); }, 1, 0,
     true},
    {"mapped input",
     [](Named& s) {
         s.input.vv_Open();
         s.result = s.input.vn_GetSize();
     },
     100, 0},
    {"output to another file", [](Named& s) { s.kept.v_Set(&s.file); }, 7, 7},
    {"output", [](Named& s) { s.output.Make(static_cast<CT_File*>(&s.file)); }, 7, 7},
};

void SweepNames(const Row& row)
{
    Sweep(
        forms::anywhere, [] { return std::make_unique<Named>(); }, row.run,
        [&](Named& state, bool failed) {
            fs::current_path(state.here);
            // What was measured in vain may be open.
            state.input.vv_Close();
            EXPECT_EQ(state.result, failed ? row.failed : row.done);
            if (failed) {
                EXPECT_EQ(Listing(), state.before);
            }
        });
}
} // namespace

TEST(NamesSweep, ANameReachesTheSystemOrTheFailureIsTold)
{
    for (const bool wide : {true, false}) {
        const RoadSwitch road(wide);
        for (const Row& row : ROWS) {
            if (wide && !row.wide)
                continue;
            SCOPED_TRACE(row.name);
            SweepNames(row);
        }
    }
}

namespace
{
void OpenStream(Named& state)
{
    state.stream.vv_Open(CT_File::e_AccessRead, CT_File::e_OpenExisting, CT_File::e_ShareNone, 1,
                         0);
    state.result = state.stream.b_IsOpen() ? 100 : 0;
}

void CreateStream(Named& state)
{
    state.stream.vv_Open(CT_File::e_AccessWrite, CT_File::e_OpenCreate, CT_File::e_ShareNone, 1, 0);
    state.result = state.stream.b_IsOpen() ? 100 : 0;
}

void MeasureStream(Named& state)
{
    state.result = state.stream.vn_GetSize();
}
} // namespace

// On some hosts the stream's buffer comes from the same heap, and is told by the library's number.
TEST(NamesSweep, AStreamHasTheFileOfItsNameOrTheFailureIsTold)
{
    const RoadSwitch road(false);
    for (void (*const run)(Named&) : {OpenStream, CreateStream, MeasureStream}) {
        MeasureStream(*std::make_unique<Named>());
        unsigned failures = 0;
        for (unsigned number = 1, failing = 1; failing > 0; ++number) {
            FailingHeap::Track();
            {
                Named state;
                FailingHeap::Arm(number, FailingHeap::ONCE);
                run(state);
                failing = FailingHeap::Disarm();
                const Failure failure = TakeFailure();
                EXPECT_EQ(failure == Failure(), failing == 0);
                EXPECT_TRUE(!failing || failure.code == 60006 || failure.code == ENOMEM)
                    << failure.code;
                EXPECT_EQ(state.result, failing ? 0U : 100U);
                failures += failing;
            }
            TakeFailure();
            EXPECT_EQ(FailingHeap::Live(), 0U);
            ASSERT_FALSE(HasFailure());
        }
        EXPECT_GT(failures, 0U);
        SweepRun::Count(1, failures);
    }
}

// There is a report behind every call, whatever the system said.
TEST(NamesSweep, AttributesAreSetForThatNameOrNone)
{
    const RoadSwitch road(false);
    Sweep(
        forms::anywhere, [] { return std::make_unique<Named>(); },
        [](Named& state) {
            state.file.v_SetAttributes(FILE_ATTRIBUTE_READONLY);
            const unsigned code = Errors().n_GetErrorCode();
            if (code != 60006 && code != 4711)
                Errors().v_ClearError();
        },
        [](Named& state, bool failed) {
            const unsigned attributes = state.file.n_GetAttributes();
            EXPECT_EQ(attributes & FILE_ATTRIBUTE_READONLY, failed ? 0U : 1U);
            state.file.v_SetAttributes(FILE_ATTRIBUTE_NORMAL);
            TakeFailure();
        });
}

namespace
{
struct Search
{
    Search()
    {
        WriteBytes("a-file-whose-name-takes-some-room.1", "");
        WriteBytes("a-file-whose-name-takes-some-room.2", "");
        find.b_FindFirst(&first, &attributes);
    }
    // The class closes no search.
    ~Search() { FindClose(reinterpret_cast<HANDLE>(find.*Private(NamedSearch()))); }

    CT_UString pattern = Name("a-file*");
    CT_FindFile find{&pattern, 0, 0, 0};
    CT_UString first, name;
    unsigned attributes = 0;
    int found = 7;
};
} // namespace

TEST(NamesSweep, WhatIsFoundNextHasItsNameOrTheFailureIsTold)
{
    Sweep(
        forms::anywhere, [] { return std::make_unique<Search>(); },
        [](Search& state) { state.found = state.find.b_FindNext(&state.name, &state.attributes); },
        [](Search& state, bool failed) {
            EXPECT_EQ(state.found, 1);
            EXPECT_TRUE(Get(state.name) == "a-file-whose-name-takes-some-room.2" ||
                        (failed && state.name.vn_GetLength() == 0));
        });
}
