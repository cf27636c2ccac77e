// tests/Ostra/Input/MappedFileInputTest.cpp
#include <Ostra/Input/MappedFileInput.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <string>

#include "InputProbe.h"
#include "Support/Directory.h"

namespace fs = std::filesystem;

namespace
{
using Opened = OpenedInput<CT_MappedFileInput>;
} // namespace

TEST(MappedFileInput, NothingHappensBeforeTheOpen)
{
    WriteBytes("file", INPUT_TEXT);
    const CT_UString name = Name("file");
    CT_MappedFileInput input(100, &name);
    EXPECT_EQ(input.n_GetBuffer(), 100u);
    EXPECT_EQ(input.pcco_GetFile()->b_IsOpen(), 0);
    EXPECT_EQ(input.pcco_GetFile()->n_GetBufferSize(), 16384u);
    EXPECT_EQ(Get(*input.pcco_GetFile()->pcco_GetFullName()), "file");
    EXPECT_EQ(input.vn_GetSize(), 0u);
    EXPECT_EQ(input.vn_GetOffset(), 0u);
    EXPECT_EQ(input.vb_IsEmpty(), 1);
    EXPECT_EQ(Next(input), NO_BLOCK);
    EXPECT_EQ(Copy(input, 2), (Copied{0, "??"}));
    EXPECT_EQ(input.vb_Skip(2), 0);
    input.vv_Close();
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(MappedFileInput, BlocksLieInTheView)
{
    Opened input(std::string(250, 'x'), 100);
    EXPECT_EQ(input.File().b_IsOpen(), 1);
    EXPECT_EQ(input.File().b_GetMapping(), 1);
    EXPECT_EQ(input.File().ec_GetOpenAccess(), CT_File::e_AccessRead);
    EXPECT_EQ(input.File().ec_GetOpenModi(), CT_File::e_OpenExisting);
    EXPECT_EQ(input.File().ec_GetOpenShare(), CT_File::e_ShareNone);
    EXPECT_EQ(input.File().n_GetOpenAttribut(), 1u);
    EXPECT_EQ(input.vn_GetSize(), 250u);
    const auto view = static_cast<const unsigned char*>(input.File().pv_GetMapping());
    const unsigned char* data = nullptr;
    unsigned size = 0;
    for (const unsigned expected : {100u, 100u, 50u}) {
        const unsigned before = input.vn_GetOffset();
        EXPECT_EQ(input.vb_IsEmpty(), 0);
        EXPECT_EQ(input.vb_GetNextBuffer(&data, &size), 1);
        EXPECT_EQ(data, view + before);
        EXPECT_EQ(size, expected);
    }
    EXPECT_EQ(input.vb_IsEmpty(), 1);
    EXPECT_EQ(input.vb_GetNextBuffer(&data, &size), 0);
    EXPECT_EQ(data, view + 200) << "left alone";
    EXPECT_EQ(size, 50u);
    input.vv_Close();
    EXPECT_EQ(input.File().b_IsOpen(), 0);
    EXPECT_EQ(input.File().b_GetMapping(), 0);
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(MappedFileInput, TheSizeOfACallGovernsThatCall)
{
    Opened input(INPUT_TEXT, 4);
    EXPECT_EQ(Next(input), "0123");
    EXPECT_EQ(Next(input, 7), "456789a");
    EXPECT_EQ(Next(input, 0), "");
    EXPECT_EQ(Next(input), "bcde");
    input.v_SetBuffer(1);
    EXPECT_EQ(Next(input), "f");
    EXPECT_EQ(Next(input, 0xFFFFFFFF), "ghij");
    EXPECT_EQ(Next(input, 0), NO_BLOCK);
}

TEST(MappedFileInput, AMissingFileIsReported)
{
    const CT_UString name = Name("missing");
    CT_MappedFileInput input(8, &name);
    input.vv_Open();
    EXPECT_EQ(TakeSystem(),
              (SystemFailure{2,
                             "missing",
                             {WINFILE_PLACE, WINFILE_PLACE, WINFILE_PLACE, MAPPED_INPUT_PLACE}}));
    EXPECT_EQ(Next(input), NO_BLOCK);
    WriteBytes("missing", "here");
    input.vv_Open();
    EXPECT_EQ(Next(input), "here");
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(MappedFileInput, AnEmptyFileIsRefusedAndStaysOpen)
{
    Opened input("");
    const SystemFailure failure = TakeSystem();
    EXPECT_NE(failure.code, 0xFFFFFFFF);
    EXPECT_EQ(failure.names, "file");
    EXPECT_EQ(failure.trail, (Trail{WINFILE_PLACE, WINFILE_PLACE, MAPPED_INPUT_PLACE}));
    EXPECT_EQ(input.File().b_IsOpen(), 1);
    EXPECT_EQ(input.File().b_GetMapping(), 0);
    EXPECT_EQ(input.vb_IsEmpty(), 1);
    EXPECT_EQ(input.vn_GetSize(), 0u);
    EXPECT_EQ(Next(input), NO_BLOCK);
    input.vv_Close();
    EXPECT_EQ(input.File().b_IsOpen(), 0);
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(MappedFileInput, AnOpenInputOpensAnew)
{
    ExpectOpensAnew<CT_MappedFileInput>();
}

// The failure has left the file open.
TEST(MappedFileInput, AFailedOpenCanBeRepeated)
{
    WriteBytes("file", INPUT_TEXT);
    const CT_UString name = Name("file");
    CT_MappedFileInput input(8, &name);
    Errors().v_SetError(1234, Units(u"first"));
    input.vv_Open();
    TakeFailure();
    input.vv_Open();
    EXPECT_EQ(Next(input), "01234567");
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(MappedFileInput, AnErrorThatStandsStopsTheOpen)
{
    WriteBytes("file", INPUT_TEXT);
    const CT_UString name = Name("file");
    CT_MappedFileInput input(8, &name);
    Errors().v_SetError(1234, Units(u"first"));
    input.vv_Open();
    EXPECT_EQ(TakeFailure(), (Failure{1234, "(1234): first", {MAPPED_INPUT_PLACE}}));
    EXPECT_EQ(input.pcco_GetFile()->b_IsOpen(), 1) << "found when the file is open";
    EXPECT_EQ(input.vb_IsEmpty(), 1);
}

TEST(MappedFileInput, ACopyEndsAtTheEnd)
{
    Opened input;
    EXPECT_EQ(Copy(input, 5), (Copied{1, "01234"}));
    EXPECT_EQ(Copy(input, 0), (Copied{1, ""}));
    EXPECT_EQ(Copy(input, 18), (Copied{0, "56789abcdefghij???"}));
    EXPECT_EQ(input.vn_GetOffset(), 20u);
    EXPECT_EQ(input.vb_IsEmpty(), 1);
    EXPECT_EQ(Copy(input, 1), (Copied{0, "?"}));
    EXPECT_EQ(input.File().b_IsOpen(), 1) << "nothing closes the file";
    input.vv_Close();
    Opened whole;
    EXPECT_EQ(Copy(whole, 20), (Copied{1, INPUT_TEXT}));
}

TEST(MappedFileInput, ASkipTellsWhetherSomethingWasLeftBeforeIt)
{
    Opened input;
    EXPECT_EQ(input.vb_Skip(5), 1);
    EXPECT_EQ(Next(input, 2), "56");
    EXPECT_EQ(input.vb_Skip(0xFFFFFFFF), 1);
    EXPECT_EQ(input.vn_GetOffset(), 20u);
    EXPECT_EQ(Next(input), NO_BLOCK);
    EXPECT_EQ(input.vb_Skip(1), 0);
}

TEST(MappedFileInput, IsUnicodeDisturbsNothing)
{
    Opened marked("\xFF\xFE" + INPUT_TEXT, 4);
    EXPECT_EQ(Next(marked), "\xFF\xFE"
                            "01");
    EXPECT_EQ(marked.vb_IsUnicode(), 1) << "blocks don't move the file";
    EXPECT_EQ(marked.vn_GetOffset(), 4u);
    EXPECT_EQ(Next(marked), "2345");
    EXPECT_EQ(marked.vb_IsUnicode(), 1);
    marked.vv_Close();
    EXPECT_EQ(Opened("\xFE\xFF\x01\x02").vb_IsUnicode(), 0);
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(MappedFileInput, SetTakesAnotherFile)
{
    Opened input;
    EXPECT_EQ(Next(input), "01234567");
    WriteBytes("other", "other");
    const CT_CString name("other");
    input.v_Set(3, &name);
    EXPECT_EQ(input.File().b_IsOpen(), 0);
    EXPECT_EQ(input.n_GetBuffer(), 3u);
    EXPECT_EQ(input.vn_GetSize(), 0u);
    EXPECT_EQ(input.vn_GetOffset(), 0u);
    EXPECT_EQ(Next(input), NO_BLOCK);
    input.vv_Open();
    EXPECT_EQ(Next(input), "oth");
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
    fs::rename("file", "renamed");
}

TEST(MappedFileInput, SizeAndOffsetStayBehindTheClose)
{
    Opened input;
    EXPECT_EQ(Next(input), "01234567");
    input.vv_Close();
    EXPECT_EQ(input.vn_GetSize(), 20u);
    EXPECT_EQ(input.vn_GetOffset(), 8u);
    input.vv_Open();
    EXPECT_EQ(input.vn_GetOffset(), 0u);
    EXPECT_EQ(Next(input), "01234567");
}

TEST(MappedFileInput, TheDestructorClosesTheFile)
{
    {
        Opened input;
        EXPECT_EQ(Next(input), "01234567");
    }
    fs::remove("file");
    EXPECT_FALSE(fs::exists("file"));
}

TEST(MappedFileInput, AHandleThatIsGoneIsReportedByTheClose)
{
    {
        Opened input;
        ASSERT_TRUE(CloseHandle(input.File().h_GetHandle()));
        input.vv_Close();
        EXPECT_EQ(TakeSystem(), (SystemFailure{6, "file", {WINFILE_PLACE, MAPPED_INPUT_PLACE}}));
    }
    EXPECT_EQ(TakeSystem().code, 6u);
}

TEST(MappedFileInput, AFileThatOthersHaveClosedHasNoMore)
{
    Opened input;
    EXPECT_EQ(Next(input), "01234567");
    const_cast<CT_File*>(input.pcco_GetFile())->vv_Close();
    EXPECT_EQ(Next(input), NO_BLOCK);
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(MappedFileInput, ObjectsLiveOnTheHeapToo)
{
    WriteBytes("file", INPUT_TEXT);
    const CT_UString name = Name("file");
    CT_Input* input = new CT_MappedFileInput(4, &name);
    input->vv_Open();
    EXPECT_EQ(Next(*input), "0123");
    delete input;
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}
