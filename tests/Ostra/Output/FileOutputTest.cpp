// tests/Ostra/Output/FileOutputTest.cpp
#include <Ostra/Output/FileOutput.h>

#include <Ostra/File/StdFile.h>
#include <Ostra/File/WinFile.h>
#include <Ostra/Output/MemoryOutput.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <memory>
#include <string>

#include "../File/MemoryFile.h"
#include "OutputProbe.h"
#include "Support/Directory.h"

namespace fs = std::filesystem;

namespace
{
CT_WinFile& FileOf(const CT_FileOutput& output)
{
    return *static_cast<CT_WinFile*>(const_cast<CT_File*>(output.pcco_GetFile()));
}

// A file in memory, open at its beginning.
void Open(MemoryFile& file, const std::string& data)
{
    file.data = data;
    file.v_SetOpen(1);
}
} // namespace

// ---- Life --------------------------------------------------------------------------------------

TEST(FileOutput, AFileMadeByNameBeginsEmpty)
{
    WriteBytes("file", "old content");
    const CT_UString name = Name("file");
    {
        CT_FileOutput output(&name);
        EXPECT_EQ(output.pcco_GetFile()->b_IsOpen(), 1);
        EXPECT_EQ(output.pcco_GetFile()->n_GetBufferSize(), 16384u);
        EXPECT_EQ(output.pcco_GetFile()->ec_GetOpenAccess(), CT_File::e_AccessWrite);
        EXPECT_EQ(output.pcco_GetFile()->ec_GetOpenModi(), CT_File::e_OpenCreate);
        EXPECT_EQ(output.pcco_GetFile()->ec_GetOpenShare(), CT_File::e_ShareNone);
        EXPECT_EQ(output.pcco_GetFile()->n_GetOpenAttribut(), 1u);
        EXPECT_EQ(output.pcco_GetFile()->n_GetOpenFlag(), 0u);
        EXPECT_EQ(output.vn_GetSize(), 0u);
        Append(output, "new");
        EXPECT_EQ(output.vn_GetSize(), 3u);
    }
    EXPECT_EQ(ReadBytes("file"), "new");
    fs::rename("file", "renamed"); // the destructor has closed it
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(FileOutput, AFileThatCannotBeMadeIsReported)
{
    const CT_UString name = Name("missing/file");
    {
        CT_FileOutput output(&name);
        EXPECT_EQ(TakeSystem(),
                  (SystemFailure{3, "missing/file", {WINFILE_PLACE, FILE_OUTPUT_PLACE}}));
        EXPECT_EQ(output.pcco_GetFile()->b_IsOpen(), 0);
        Append(output, "lost");
        EXPECT_EQ(TakeSystem().code, 6u);
    }
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(FileOutput, AnErrorThatStandsStopsTheConstruction)
{
    const CT_UString name = Name("file");
    Errors().v_SetError(1234, Units(u"first"));
    const CT_FileOutput output(&name);
    EXPECT_EQ(TakeFailure(), (Failure{1234, "(1234): first", {FILE_OUTPUT_PLACE}}));
    EXPECT_EQ(output.pcco_GetFile()->b_IsOpen(), 0);
    EXPECT_FALSE(fs::exists("file"));
}

TEST(FileOutput, AnOpenFileIsAppendedToAndStaysOpen)
{
    WriteBytes("file", "old ");
    const CT_UString name = Name("file");
    CT_WinFile file(&name, 0);
    file.vv_Open(CT_File::e_AccessReadWrite, CT_File::e_OpenExisting, CT_File::e_ShareNone, 1, 0);
    {
        CT_FileOutput output(&file);
        EXPECT_EQ(output.pcco_GetFile(), &file);
        EXPECT_EQ(file.vn_GetOffset(), 4u);
        Append(output, "new");
    }
    EXPECT_EQ(file.b_IsOpen(), 1);
    EXPECT_EQ(file.vn_GetSize(), 7u);
    file.vv_Close();
    EXPECT_EQ(ReadBytes("file"), "old new");
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(FileOutput, AClosedFileIsEmptiedAndClosedAgain)
{
    WriteBytes("file", "old");
    const CT_UString name = Name("file");
    CT_WinFile file(&name, 0);
    {
        CT_FileOutput output(&file);
        EXPECT_EQ(file.b_IsOpen(), 1);
        EXPECT_EQ(file.ec_GetOpenModi(), CT_File::e_OpenCreate);
        EXPECT_EQ(output.vn_GetSize(), 0u);
        Append(output, "n");
    }
    EXPECT_EQ(file.b_IsOpen(), 0);
    EXPECT_EQ(ReadBytes("file"), "n");
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(FileOutput, TheOrderOfCallsAtBothEnds)
{
    MemoryFile closed;
    {
        const CT_FileOutput output(&closed);
        EXPECT_EQ(closed.TakeCalls(), (Calls{"open 2 2 0 1 0", "seek 2 0"}));
    }
    EXPECT_EQ(closed.TakeCalls(), Calls{"close"});
    MemoryFile open;
    Open(open, "abc");
    {
        const CT_FileOutput output(&open);
        EXPECT_EQ(open.TakeCalls(), Calls{"seek 2 0"});
    }
    EXPECT_EQ(open.TakeCalls(), Calls());
}

TEST(FileOutput, AnOpenThatFailsIsTheLastCall)
{
    MemoryFile file;
    {
        file.good = 0;
        const CT_FileOutput output(&file);
        EXPECT_EQ(TakeFailure(),
                  (Failure{4711, "(4711): failed", {"MemoryFile", FILE_OUTPUT_PLACE}}));
        EXPECT_EQ(file.TakeCalls(), Calls{"open 2 2 0 1 0"});
    }
    EXPECT_EQ(file.TakeCalls(), Calls()) << "and nothing is to be closed";
    Open(file, "abc");
    file.good = 0;
    const CT_FileOutput output(&file);
    EXPECT_EQ(TakeFailure(), (Failure{4711, "(4711): failed", {"MemoryFile", FILE_OUTPUT_PLACE}}))
        << "a seek that fails";
}

TEST(FileOutput, TheLastCloseAddsNoPlaceOfItsOwn)
{
    MemoryFile file;
    {
        const CT_FileOutput output(&file);
        file.good = 0;
    }
    EXPECT_EQ(TakeFailure(), (Failure{4711, "(4711): failed", {"MemoryFile"}}));
}

TEST(FileOutput, SetIsDoneWithTheOldFileFirst)
{
    const CT_UString name = Name("file");
    const CT_CString other("other");
    MemoryFile file;
    MemoryFile open;
    CT_FileOutput output(&name);
    Append(output, "abc");
    output.v_Set(&other);
    EXPECT_EQ(Get(*output.pcco_GetFile()->pcco_GetFullName()), "other");
    Append(output, "xyz");
    fs::rename("file", "renamed");
    output.v_Set(&file);
    EXPECT_EQ(ReadBytes("other"), "xyz");
    Append(output, "123");
    EXPECT_EQ(file.data, "123");
    output.v_Set(&name);
    EXPECT_EQ(file.b_IsOpen(), 0) << "it was opened here";
    open.v_SetOpen(1);
    output.v_Set(&open);
    output.v_Set(&file);
    EXPECT_EQ(open.b_IsOpen(), 1) << "it wasn't";
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(FileOutput, GivesItsFileAwayClosed)
{
    const CT_UString name = Name("file");
    std::unique_ptr<CT_File> given;
    {
        CT_FileOutput output(&name);
        Append(output, "abc");
        const CT_File* file = output.pcco_GetFile();
        given.reset(output.pco_GiveFile());
        EXPECT_EQ(given.get(), file);
        EXPECT_EQ(output.pcco_GetFile(), nullptr);
        EXPECT_EQ(output.pco_GiveFile(), nullptr);
    }
    EXPECT_EQ(given->b_IsOpen(), 0);
    EXPECT_EQ(Get(*given->pcco_GetFullName()), "file") << "it outlives the output";
    MemoryFile open;
    Open(open, "abc");
    CT_FileOutput output(&open);
    EXPECT_EQ(output.pco_GiveFile(), &open);
    EXPECT_EQ(open.b_IsOpen(), 0) << "whoever has opened it";
    output.v_Set(&name);
    Append(output, "x");
    EXPECT_EQ(output.vn_GetSize(), 1u);
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(FileOutput, AFileGivenAwayTellsItsClose)
{
    MemoryFile file;
    CT_FileOutput output(&file);
    file.good = 0;
    EXPECT_EQ(output.pco_GiveFile(), &file);
    EXPECT_EQ(TakeFailure(), (Failure{4711, "(4711): failed", {"MemoryFile", FILE_OUTPUT_PLACE}}));
    EXPECT_EQ(output.pcco_GetFile(), nullptr);
}

TEST(FileOutput, WithoutAFileEachOperationIsReported)
{
    MemoryFile file;
    CT_FileOutput output(&file);
    CT_MemoryOutput memory;
    MemoryFile other_file;
    CT_FileOutput other(&other_file);
    output.pco_GiveFile();
    other_file.TakeCalls();
    const Failure expected = Bare(ERROR_INVALID_HANDLE, {FILE_OUTPUT_PLACE});
    Append(output, "abc");
    EXPECT_EQ(TakeBare(), expected);
    output.vv_Append(memory);
    EXPECT_EQ(TakeBare(), expected);
    output.vv_Append(other);
    EXPECT_EQ(TakeBare(), expected);
    other.vv_Append(output);
    EXPECT_EQ(TakeBare(), expected);
    EXPECT_EQ(other_file.TakeCalls(), Calls());
    output.vv_Replace("abc", 3, 0);
    EXPECT_EQ(TakeBare(), expected);
    EXPECT_EQ(output.vn_GetSize(), 0u);
    EXPECT_EQ(TakeBare(), expected);
    delete memory.pco_GiveMemory();
    output.v_Set(&file);
    output.vv_Append(memory);
    EXPECT_EQ(TakeBare(), expected);
}

// ---- Appending ---------------------------------------------------------------------------------

TEST(FileOutput, EachAppendIsAWrite)
{
    MemoryFile file;
    CT_FileOutput output(&file);
    file.TakeCalls();
    Append(output, "abc");
    Append(output, "");
    output.vv_Append('x', 3);
    output.vv_Append('y', 0);
    CT_MemoryOutput memory;
    output.vv_Append(memory);
    Append(memory, "12");
    output.vv_Append(memory);
    EXPECT_EQ(file.TakeCalls(),
              (Calls{"write 3", "write 0", "write 3", "write 0", "write 0", "write 2"}));
    EXPECT_EQ(file.data, "abcxxx12");
    EXPECT_EQ(memory.vn_GetSize(), 2u) << "whose content stays";
    EXPECT_EQ(output.vn_GetSize(), 8u);
}

TEST(FileOutput, AFailedWriteIsReported)
{
    const auto fail = [](auto append, const Trail& trail) {
        MemoryFile file;
        CT_FileOutput output(&file);
        file.good = 0;
        append(output);
        EXPECT_EQ(TakeFailure(), (Failure{4711, "(4711): failed", trail}));
    };
    const Trail trail = {"MemoryFile", FILE_OUTPUT_PLACE};
    fail([](CT_Output& output) { Append(output, "abc"); }, trail);
    fail([](CT_Output& output) { output.vv_Append('x', 3); }, trail);
    CT_MemoryOutput memory;
    fail([&](CT_Output& output) { output.vv_Append(memory); }, trail);
}

// The write of a derived class takes the runs and the memory, too.
TEST(FileOutput, RunsAndMemoryGoThroughTheOwnWrite)
{
    class Counting : public CT_FileOutput
    {
    public:
        using CT_FileOutput::CT_FileOutput;
        using CT_FileOutput::vv_Append;
        void vv_Append(const void*, unsigned size) override { sizes.push_back(size); }
        std::vector<unsigned> sizes;
    };
    MemoryFile file;
    Counting output(&file);
    CT_MemoryOutput memory;
    Append(memory, "12");
    output.vv_Append('x', 3);
    output.vv_Append(memory);
    output.vv_Replace("abcd", 4, 0);
    EXPECT_EQ(output.sizes, (std::vector<unsigned>{3, 2, 4}));
    EXPECT_EQ(file.data, "");
}

TEST(FileOutput, ReplaceLeavesTheFileAtItsEnd)
{
    MemoryFile file;
    CT_FileOutput output(&file);
    Append(output, "abcdef");
    file.TakeCalls();
    output.vv_Replace("XY", 2, 1);
    EXPECT_EQ(file.TakeCalls(), (Calls{"seek 0 1", "write 2", "seek 2 0"}));
    Append(output, "!");
    EXPECT_EQ(file.data, "aXYdef!");
    output.vv_Replace("1234", 4, 5);
    Append(output, "?");
    EXPECT_EQ(file.data, "aXYde1234?") << "also when it has grown";
}

TEST(FileOutput, NoStepOfAReplaceIsAskedForItsFailure)
{
    const Calls all = {"seek 0 1", "write 2", "seek 2 0"};
    for (const int good : {0, 1, 2}) {
        SCOPED_TRACE(good);
        MemoryFile file;
        CT_FileOutput output(&file);
        Append(output, "abcdef");
        file.TakeCalls();
        file.good = good;
        output.vv_Replace("XY", 2, 1);
        EXPECT_EQ(file.TakeCalls(), all);
        const Failure failure = TakeFailure();
        EXPECT_EQ(failure.code, 4711u);
        EXPECT_EQ(failure.trail,
                  good < 2 ? (Trail{"MemoryFile", FILE_OUTPUT_PLACE}) : (Trail{"MemoryFile"}));
        EXPECT_EQ(file.data, good == 0   ? "abcdefXY"
                             : good == 1 ? "abcdef"
                                         : "aXYdef")
            << "bytes whose place can't be reached are written where the file stands";
    }
}

// ---- Joining -----------------------------------------------------------------------------------

TEST(FileOutput, JoinsTwoFiles)
{
    const CT_UString name = Name("file");
    const CT_UString other_name = Name("other");
    const std::string large(200000, 'x');
    CT_FileOutput output(&name);
    CT_FileOutput other(&other_name);
    Append(output, "abc");
    Append(other, large);
    output.vv_Append(other);
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
    for (const CT_FileOutput* joined : {&output, &other}) {
        EXPECT_EQ(joined->pcco_GetFile()->b_IsOpen(), 1);
        EXPECT_EQ(joined->pcco_GetFile()->ec_GetOpenModi(), CT_File::e_OpenExisting);
        EXPECT_EQ(joined->pcco_GetFile()->vn_GetOffset(), joined->vn_GetSize());
    }
    Append(output, "!");
    Append(other, "?");
    delete output.pco_GiveFile();
    delete other.pco_GiveFile();
    EXPECT_EQ(ReadBytes("file"), "abc" + large + "!");
    EXPECT_EQ(ReadBytes("other"), large + "?");
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

// They are opened for writing alone, which empties a file of the stream library.
TEST(FileOutput, AJoinEmptiesFilesOfTheStreamLibrary)
{
    const CT_UString name = Name("file");
    const CT_UString other_name = Name("other");
    CT_StdFile file(&name, 1024);
    CT_StdFile other_file(&other_name, 1024);
    {
        CT_FileOutput output(&file);
        CT_FileOutput other(&other_file);
        Append(output, "abc");
        Append(other, "xyz");
        output.vv_Append(other);
        EXPECT_EQ(output.vn_GetSize(), 0u);
        Append(output, "!");
    }
    EXPECT_EQ(ReadBytes("file"), "!");
    EXPECT_EQ(ReadBytes("other"), "");
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(FileOutput, TheOrderOfCallsOfAJoin)
{
    MemoryFile file;
    MemoryFile other_file;
    CT_FileOutput output(&file);
    CT_FileOutput other(&other_file);
    Append(other, "xyz");
    file.TakeCalls();
    other_file.TakeCalls();
    output.vv_Append(other);
    EXPECT_EQ(file.TakeCalls(),
              (Calls{"close", "open 2 3 0 1 0", "write 3", "close", "open 2 1 0 1 0", "seek 2 0"}));
    EXPECT_EQ(other_file.TakeCalls(), (Calls{"close", "open 1 1 0 1 0", "read 65536", "read 65536",
                                             "close", "open 2 1 0 1 0", "seek 2 0"}));
    EXPECT_EQ(file.data, "xyz");
}

TEST(FileOutput, NoFailureStopsAJoin)
{
    MemoryFile file;
    MemoryFile other_file;
    CT_FileOutput output(&file);
    CT_FileOutput other(&other_file);
    other_file.TakeCalls();
    file.good = 0;
    output.vv_Append(other);
    EXPECT_EQ(other_file.TakeCalls(), (Calls{"close", "open 2 1 0 1 0", "seek 2 0"}));
    const Failure failure = TakeFailure();
    EXPECT_EQ(failure.code, 4711u);
    EXPECT_EQ(failure.trail, (Trail{"MemoryFile", FILE_PLACE}));
    EXPECT_EQ(file.b_IsOpen(), 1);
    EXPECT_EQ(other_file.b_IsOpen(), 1);
}

TEST(FileOutput, AJoinThatFailsLeavesBothFilesOfUse)
{
    // A failure of each call of this file: its close, its open, its write.
    for (const int good : {0, 1, 2}) {
        SCOPED_TRACE(good);
        MemoryFile file;
        MemoryFile other_file;
        CT_FileOutput output(&file);
        CT_FileOutput other(&other_file);
        Append(output, "abc");
        Append(other, "xyz");
        file.good = good;
        output.vv_Append(other);
        EXPECT_EQ(TakeFailure().code, 4711u);
        Append(output, "!");
        Append(other, "?");
        EXPECT_EQ(TakeFailure(), Failure());
        EXPECT_EQ(file.data, "abc!");
        EXPECT_EQ(other_file.data, "xyz?");
    }
}

TEST(FileOutput, AClosedFileIsClosedOnceMoreForAJoin)
{
    const CT_UString name = Name("file");
    const CT_UString other_name = Name("other");
    CT_FileOutput output(&name);
    CT_FileOutput other(&other_name);
    FileOf(output).vv_Close();
    output.vv_Append(other);
    EXPECT_EQ(TakeSystem().trail.front(), WINFILE_PLACE) << "which the system refuses";
    EXPECT_EQ(output.pcco_GetFile()->b_IsOpen(), 1);
    EXPECT_EQ(other.pcco_GetFile()->b_IsOpen(), 1);
}

TEST(FileOutput, AFileCannotBeJoinedToItself)
{
    const CT_UString name = Name("file");
    CT_FileOutput output(&name);
    Append(output, "abc");
    output.vv_Append(output);
    EXPECT_EQ(TakeBare(), Bare(ERROR_SHARING_VIOLATION, {FILE_OUTPUT_PLACE}));
    EXPECT_EQ(output.pcco_GetFile()->b_IsOpen(), 1);
    Append(output, "d");
    delete output.pco_GiveFile();
    EXPECT_EQ(ReadBytes("file"), "abcd");
}

TEST(FileOutput, AHandleThatIsGoneIsReported)
{
    const CT_UString name = Name("file");
    {
        CT_FileOutput output(&name);
        Append(output, "a");
        ASSERT_TRUE(CloseHandle(FileOf(output).h_GetHandle()));
        Append(output, "abc");
        EXPECT_EQ(TakeSystem(), (SystemFailure{6, "file", {WINFILE_PLACE, FILE_OUTPUT_PLACE}}));
        EXPECT_EQ(output.vn_GetSize(), 0u);
        EXPECT_EQ(TakeSystem(), (SystemFailure{6, "file", {WINFILE_PLACE}}));
        output.v_Set(&name);
        EXPECT_EQ(TakeSystem().code, 6u) << "of the old file";
    }
    TakeSystem();
}

TEST(FileOutput, ObjectsLiveOnTheHeapToo)
{
    const CT_UString name = Name("file");
    CT_Output* output = new CT_FileOutput(&name);
    Append(*output, "abc");
    delete output;
    EXPECT_EQ(ReadBytes("file"), "abc");
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}
