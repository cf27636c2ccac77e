// tests/Ostra/Input/FileInputTest.cpp
#include <Ostra/Input/FileInput.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <string>

#include "InputProbe.h"
#include "Support/Directory.h"

namespace fs = std::filesystem;

namespace
{
using Opened = OpenedInput<CT_FileInput>;
} // namespace

TEST(FileInput, NothingHappensBeforeTheOpen)
{
    WriteBytes("file", INPUT_TEXT);
    const CT_UString name = Name("file");
    CT_FileInput input(100, &name);
    EXPECT_EQ(input.n_GetBuffer(), 100u);
    EXPECT_EQ(input.pcco_GetFile()->b_IsOpen(), 0);
    EXPECT_EQ(input.pcco_GetFile()->n_GetBufferSize(), 16384u);
    EXPECT_EQ(Get(*input.pcco_GetFile()->pcco_GetFullName()), "file");
    EXPECT_EQ(input.pcco_GetBuffer()->n_GetMaximumSize(), 0u);
    EXPECT_EQ(input.pcco_GetBuffer()->n_GetGrowth(), 32u);
    EXPECT_EQ(input.vn_GetSize(), 0u);
    EXPECT_EQ(input.vn_GetOffset(), 0u);
    EXPECT_EQ(input.vb_IsEmpty(), 1);
    EXPECT_EQ(Next(input), NO_BLOCK);
    EXPECT_EQ(Copy(input, 2), (Copied{0, "??"}));
    EXPECT_EQ(input.vb_Skip(2), 0);
    input.vv_Close();
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(FileInput, BlocksComeInOneBuffer)
{
    Opened input(INPUT_TEXT, 8);
    EXPECT_EQ(input.File().b_IsOpen(), 1);
    EXPECT_EQ(input.File().ec_GetOpenAccess(), CT_File::e_AccessRead);
    EXPECT_EQ(input.File().ec_GetOpenModi(), CT_File::e_OpenExisting);
    EXPECT_EQ(input.File().ec_GetOpenShare(), CT_File::e_ShareNone);
    EXPECT_EQ(input.File().n_GetOpenAttribut(), 1u);
    EXPECT_EQ(input.File().n_GetOpenFlag(), 0u);
    EXPECT_EQ(input.vn_GetSize(), 20u);
    const unsigned room = input.pcco_GetBuffer()->n_GetMaximumSize();
    EXPECT_GE(room, 8u);
    EXPECT_EQ(Next(input), "01234567");
    const unsigned char* data = nullptr;
    unsigned size = 0;
    EXPECT_EQ(input.vb_GetNextBuffer(&data, &size), 1);
    EXPECT_EQ(data, input.pcco_GetBuffer()->qcv_Get());
    EXPECT_EQ(input.pcco_GetBuffer()->n_GetUsedSize(), 8u);
    EXPECT_EQ(input.vn_GetOffset(), 16u);
    EXPECT_EQ(Next(input), "ghij");
    EXPECT_EQ(input.pcco_GetBuffer()->n_GetMaximumSize(), room) << "reused";
    EXPECT_EQ(input.vb_IsEmpty(), 1);
    EXPECT_EQ(Next(input), NO_BLOCK);
    EXPECT_EQ(input.File().b_IsOpen(), 1) << "the end that is known closes nothing";
    input.vv_Close();
    EXPECT_EQ(input.File().b_IsOpen(), 0);
    input.vv_Close();
    EXPECT_EQ(TakeSystem(), NO_FAILURE) << "a closed file is let alone";
}

TEST(FileInput, ALargerBlockMakesTheBufferGrow)
{
    const std::string text(5000, 'x');
    Opened input(text + "y", 16);
    EXPECT_EQ(Next(input, 5000), text);
    EXPECT_GE(input.pcco_GetBuffer()->n_GetMaximumSize(), 5000u);
    EXPECT_EQ(Next(input), "y");
    EXPECT_GE(input.pcco_GetBuffer()->n_GetMaximumSize(), 5000u);
}

TEST(FileInput, TheSizeOfACallGovernsThatCall)
{
    Opened input(INPUT_TEXT, 4);
    EXPECT_EQ(Next(input), "0123");
    EXPECT_EQ(Next(input, 7), "456789a");
    EXPECT_EQ(Next(input), "bcde");
    input.v_SetBuffer(1);
    EXPECT_EQ(Next(input), "f");
    EXPECT_EQ(Next(input, 100), "ghij");
    EXPECT_EQ(Next(input), NO_BLOCK);
}

TEST(FileInput, ABlockThatSomebodyHoldsStays)
{
    Opened input(INPUT_TEXT, 4);
    EXPECT_EQ(Next(input), "0123");
    const CT_Buffer held(input.pcco_GetBuffer());
    EXPECT_EQ(Next(input), "4567");
    EXPECT_EQ(std::string(static_cast<const char*>(held.qcv_Get()), 4), "0123");
}

TEST(FileInput, AMissingFileFailsWhenItIsMeasured)
{
    const CT_UString name = Name("missing");
    CT_FileInput input(8, &name);
    input.vv_Open();
    EXPECT_EQ(TakeSystem(),
              (SystemFailure{
                  2, "missing", {WINFILE_PLACE, WINFILE_PLACE, WINFILE_PLACE, FILE_INPUT_PLACE}}));
    EXPECT_EQ(input.vn_GetSize(), 0u);
    EXPECT_EQ(input.pcco_GetFile()->b_IsOpen(), 0);
    EXPECT_EQ(Next(input), NO_BLOCK);
    WriteBytes("missing", "here");
    input.vv_Open();
    EXPECT_EQ(Next(input), "here") << "a failed open can be repeated";
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(FileInput, AnotherHolderOfTheFileIsInTheWay)
{
    WriteBytes("file", INPUT_TEXT);
    const CT_UString name = Name("file");
    CT_FileInput first(8, &name);
    CT_FileInput second(8, &name);
    first.vv_Open();
    second.vv_Open();
    EXPECT_EQ(TakeSystem(),
              (SystemFailure{
                  32, "file", {WINFILE_PLACE, WINFILE_PLACE, WINFILE_PLACE, FILE_INPUT_PLACE}}));
    first.vv_Close();
    second.vv_Open();
    EXPECT_EQ(Next(second), "01234567");
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(FileInput, AnOpenInputOpensAnew)
{
    ExpectOpensAnew<CT_FileInput>();
}

TEST(FileInput, AnErrorThatStandsStopsTheOpen)
{
    WriteBytes("file", INPUT_TEXT);
    const CT_UString name = Name("file");
    CT_FileInput input(8, &name);
    Errors().v_SetError(1234, Units(u"first"));
    input.vv_Open();
    EXPECT_EQ(TakeFailure(), (Failure{1234, "(1234): first", {FILE_INPUT_PLACE}}));
    EXPECT_EQ(input.pcco_GetFile()->b_IsOpen(), 0);
}

TEST(FileInput, AnErrorThatStandsEndsTheBlocks)
{
    Opened input;
    Errors().v_SetError(1234, Units(u"first"));
    EXPECT_EQ(Next(input), NO_BLOCK);
    EXPECT_EQ(TakeFailure(), (Failure{1234, "(1234): first", {FILE_PLACE, FILE_INPUT_PLACE}}));
    EXPECT_EQ(input.File().b_IsOpen(), 0) << "a read that brings nothing closes the file";
}

TEST(FileInput, AnEmptyFileHasNothing)
{
    Opened input("");
    EXPECT_EQ(input.File().b_IsOpen(), 1);
    EXPECT_EQ(input.vb_IsEmpty(), 1);
    EXPECT_EQ(Next(input), NO_BLOCK);
    EXPECT_EQ(input.vb_IsUnicode(), 0);
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

// The file stands at its end before the input has counted so far, as if it had been cut.
TEST(FileInput, AReadThatBringsNothingClosesTheFile)
{
    for (const bool copy : {false, true}) {
        SCOPED_TRACE(copy);
        Opened input;
        EXPECT_EQ(Next(input), "01234567");
        input.File().vv_SetOffset(CT_File::e_OriginEnd, 0);
        const unsigned char* data = nullptr;
        unsigned size = 4711;
        if (copy)
            EXPECT_EQ(Copy(input, 4), (Copied{0, "????"}));
        else {
            EXPECT_EQ(input.vb_GetNextBuffer(&data, &size), 0);
            EXPECT_EQ(data, nullptr) << "left alone";
            EXPECT_EQ(size, 0u);
        }
        EXPECT_EQ(TakeSystem(), NO_FAILURE);
        EXPECT_EQ(input.File().b_IsOpen(), 0);
        EXPECT_EQ(input.vb_IsEmpty(), 0) << "more was counted on";
        EXPECT_EQ(input.vn_GetOffset(), 8u);
        EXPECT_EQ(Next(input), NO_BLOCK) << "the file is closed";
        EXPECT_EQ(TakeSystem().code, 6u);
        input.vv_Open();
        EXPECT_EQ(input.vn_GetOffset(), 0u);
        EXPECT_EQ(Next(input), "01234567") << "and can be opened again";
    }
}

TEST(FileInput, ABlockOfNoBytesClosesTheFile)
{
    Opened input;
    EXPECT_EQ(Next(input, 0), NO_BLOCK);
    EXPECT_EQ(input.File().b_IsOpen(), 0);
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
    Opened other;
    EXPECT_EQ(Copy(other, 0), (Copied{0, ""}));
    EXPECT_EQ(other.File().b_IsOpen(), 0);
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(FileInput, AFileThatWasCutEnds)
{
    if (!HOST_PATHS)
        GTEST_SKIP() << "nobody can cut a file that another one has for itself";
    Opened input(std::string(100, 'x'), 64);
    fs::resize_file("file", 80);
    EXPECT_EQ(Next(input), std::string(64, 'x'));
    EXPECT_EQ(Next(input), std::string(16, 'x')) << "what there is";
    EXPECT_EQ(input.vb_IsEmpty(), 0);
    EXPECT_EQ(Next(input), NO_BLOCK);
    EXPECT_EQ(input.File().b_IsOpen(), 0);
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(FileInput, AShortCopyGivesItsBytesAndFalse)
{
    Opened input;
    EXPECT_EQ(Copy(input, 5), (Copied{1, "01234"}));
    EXPECT_EQ(input.vn_GetOffset(), 5u);
    EXPECT_EQ(Copy(input, 18), (Copied{0, "56789abcdefghij???"}));
    EXPECT_EQ(input.vn_GetOffset(), 20u);
    EXPECT_EQ(input.vb_IsEmpty(), 1);
    EXPECT_EQ(Copy(input, 1), (Copied{0, "?"}));
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
    input.vv_Close();
    Opened whole;
    EXPECT_EQ(Copy(whole, 20), (Copied{1, INPUT_TEXT}));
    EXPECT_EQ(whole.vb_IsEmpty(), 1);
}

TEST(FileInput, ASkipTellsWhetherSomethingWasLeftBeforeIt)
{
    Opened input;
    EXPECT_EQ(input.vb_Skip(5), 1);
    EXPECT_EQ(Next(input, 2), "56");
    EXPECT_EQ(input.vb_Skip(0), 1);
    EXPECT_EQ(input.vn_GetOffset(), 7u);
    EXPECT_EQ(input.vb_Skip(0xFFFFFFFF), 1) << "into the end";
    EXPECT_EQ(input.vn_GetOffset(), 20u);
    EXPECT_EQ(input.vb_IsEmpty(), 1);
    EXPECT_EQ(Next(input), NO_BLOCK);
    EXPECT_EQ(input.vb_Skip(1), 0);
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(FileInput, ASkipSeeksToWhatItHasCounted)
{
    Opened input;
    input.File().vv_SetOffset(CT_File::e_OriginBegin, 9);
    EXPECT_EQ(input.vb_Skip(2), 1);
    EXPECT_EQ(Next(input, 3), "234");
}

TEST(FileInput, IsUnicodeAsksForTheMarkAndRewinds)
{
    Opened marked("\xFF\xFE" + INPUT_TEXT, 4);
    EXPECT_EQ(marked.vb_IsUnicode(), 1);
    EXPECT_EQ(marked.vn_GetOffset(), 0u);
    EXPECT_EQ(Next(marked), "\xFF\xFE"
                            "01");
    // The test is made at the present place, and the next block is the first one again, while the
    // offset counts on.
    EXPECT_EQ(marked.vb_IsUnicode(), 0);
    EXPECT_EQ(marked.vn_GetOffset(), 4u);
    EXPECT_EQ(Next(marked), "\xFF\xFE"
                            "01");
    EXPECT_EQ(marked.vn_GetOffset(), 8u);
    marked.vv_Close();
    EXPECT_EQ(Opened("\xFE\xFF\x01\x02").vb_IsUnicode(), 0);
    EXPECT_EQ(Opened("\xFF").vb_IsUnicode(), 0);
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(FileInput, SetTakesAnotherFile)
{
    Opened input;
    EXPECT_EQ(Next(input), "01234567");
    WriteBytes("other", "other");
    const CT_CString name("other");
    input.v_Set(3, &name);
    EXPECT_EQ(input.File().b_IsOpen(), 0);
    EXPECT_EQ(Get(*input.File().pcco_GetFullName()), "other");
    EXPECT_EQ(input.File().n_GetBufferSize(), 16384u);
    EXPECT_EQ(input.n_GetBuffer(), 3u);
    EXPECT_EQ(input.vn_GetSize(), 0u);
    EXPECT_EQ(input.vn_GetOffset(), 0u);
    input.vv_Open();
    EXPECT_EQ(Next(input), "oth");
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
    fs::rename("file", "renamed"); // the first one is closed
}

TEST(FileInput, SetTakesTheSameFile)
{
    Opened input;
    EXPECT_EQ(Next(input), "01234567");
    input.v_Set(3, input.pcco_GetFile()->pcco_GetFullName());
    input.vv_Open();
    EXPECT_EQ(Next(input), "012");
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(FileInput, TheDestructorClosesTheFile)
{
    {
        Opened input;
        EXPECT_EQ(Next(input), "01234567");
    }
    fs::remove("file");
    EXPECT_FALSE(fs::exists("file"));
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(FileInput, AHandleThatIsGoneIsReportedByEachOperation)
{
    struct Case
    {
        const char* name;
        void (*run)(CT_FileInput&);
        Trail trail;
    };
    const Trail read = {WINFILE_PLACE,    FILE_PLACE,    WINFILE_PLACE,   FILE_PLACE,
                        FILE_INPUT_PLACE, WINFILE_PLACE, FILE_INPUT_PLACE};
    const Trail copy = {WINFILE_PLACE,    FILE_PLACE,    WINFILE_PLACE,
                        FILE_INPUT_PLACE, WINFILE_PLACE, FILE_INPUT_PLACE};
    const Case cases[] = {
        {"block", [](CT_FileInput& input) { EXPECT_EQ(Next(input), NO_BLOCK); }, read},
        {"copy",
         [](CT_FileInput& input) {
             EXPECT_EQ(Copy(input, 1), (Copied{0, "?"}));
         },
         copy},
        {"skip", [](CT_FileInput& input) { EXPECT_EQ(input.vb_Skip(1), 1); }, {WINFILE_PLACE}},
        {"close", [](CT_FileInput& input) { input.vv_Close(); }, {WINFILE_PLACE, FILE_INPUT_PLACE}},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        {
            Opened input;
            ASSERT_TRUE(CloseHandle(input.File().h_GetHandle()));
            row.run(input);
            EXPECT_EQ(TakeSystem(), (SystemFailure{6, "file", row.trail}));
        }
        EXPECT_EQ(TakeSystem(),
                  (SystemFailure{
                      6, "file", {WINFILE_PLACE, FILE_INPUT_PLACE, WINFILE_PLACE, WINFILE_PLACE}}))
            << "at the destructor";
    }
}

TEST(FileInput, ObjectsLiveOnTheHeapToo)
{
    WriteBytes("file", INPUT_TEXT);
    const CT_UString name = Name("file");
    CT_Input* input = new CT_FileInput(4, &name);
    input->vv_Open();
    EXPECT_EQ(Next(*input), "0123");
    delete input;
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}
