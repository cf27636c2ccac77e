// tests/Ostra/Output/MemoryOutputTest.cpp
#include <Ostra/Output/MemoryOutput.h>

#include <Ostra/File/WinFile.h>
#include <Ostra/Output/FileOutput.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <memory>
#include <string>

#include "../File/MemoryFile.h"
#include "OutputProbe.h"
#include "Support/Directory.h"

namespace
{
Failure GivenAway()
{
    return Bare(ERROR_INVALID_HANDLE, {MEMORY_OUTPUT_PLACE});
}
} // namespace

TEST(MemoryOutput, BeginsWithAnEmptyBuffer)
{
    const CT_MemoryOutput output;
    EXPECT_EQ(output.vn_GetSize(), 0u);
    EXPECT_EQ(output.pcco_GetMemory()->n_GetUsedSize(), 0u);
    EXPECT_EQ(output.pcco_GetMemory()->n_GetMaximumSize(), 0u);
    EXPECT_EQ(output.pcco_GetMemory()->n_GetGrowth(), 32u);
}

TEST(MemoryOutput, AppendsBytes)
{
    CT_MemoryOutput output;
    Append(output, "abc");
    Append(output, "");
    Append(output, std::string("d\0e", 3));
    EXPECT_EQ(Text(output.pcco_GetMemory()), std::string("abcd\0e", 6));
    EXPECT_EQ(output.vn_GetSize(), 6u);
}

TEST(MemoryOutput, AppendsARunOfOneByte)
{
    CT_MemoryOutput output;
    Append(output, "a");
    output.vv_Append(static_cast<unsigned char>(0xE9), 3);
    output.vv_Append('x', 0);
    output.vv_Append('-', 1);
    EXPECT_EQ(Text(output.pcco_GetMemory()), "a\xE9\xE9\xE9-");
}

TEST(MemoryOutput, ARunComesFromABlockOfItsOwn)
{
    CT_MemoryOutput output;
    output.vv_Append('x', 10);
    const unsigned before = CT_Buffer::sn_GetAllocCount();
    output.vv_Append('y', 10);
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before + 1) << "the target had the room";
    EXPECT_EQ(output.pcco_GetMemory()->n_GetMaximumSize(), 20u);
}

TEST(MemoryOutput, SharesTheBufferThatItGoesOnWith)
{
    CT_Buffer buffer("abc", 3, 64);
    CT_MemoryOutput output(&buffer);
    EXPECT_EQ(buffer.n_GetUseCount(), 2u);
    EXPECT_EQ(output.pcco_GetMemory()->qcv_Get(), buffer.qcv_Get());
    EXPECT_EQ(output.pcco_GetMemory()->n_GetGrowth(), 64u);
    EXPECT_EQ(output.vn_GetSize(), 3u);
    Append(output, "de");
    EXPECT_EQ(buffer.n_GetUseCount(), 1u);
    EXPECT_EQ(Text(&buffer), "abc");
    EXPECT_EQ(Text(output.pcco_GetMemory()), "abcde");
}

TEST(MemoryOutput, SetBeginsAnew)
{
    CT_Buffer buffer("abc", 3, 64);
    CT_MemoryOutput output;
    Append(output, "other");
    output.v_Set(&buffer);
    EXPECT_EQ(buffer.n_GetUseCount(), 2u);
    EXPECT_EQ(Text(output.pcco_GetMemory()), "abc");
    output.v_Set(output.pcco_GetMemory());
    EXPECT_EQ(Text(output.pcco_GetMemory()), "abc") << "with its own buffer, too";
    EXPECT_EQ(buffer.n_GetUseCount(), 2u);
    output.v_Set();
    EXPECT_EQ(buffer.n_GetUseCount(), 1u);
    EXPECT_EQ(output.vn_GetSize(), 0u);
    EXPECT_EQ(output.pcco_GetMemory()->n_GetGrowth(), 32u);
}

TEST(MemoryOutput, AppendsAnotherMemory)
{
    CT_MemoryOutput first;
    CT_MemoryOutput second;
    first.vv_Append(second);
    EXPECT_EQ(first.vn_GetSize(), 0u);
    Append(first, "abc");
    Append(second, "xyz");
    first.vv_Append(second);
    EXPECT_EQ(Text(first.pcco_GetMemory()), "abcxyz");
    EXPECT_EQ(Text(second.pcco_GetMemory()), "xyz") << "whose content stays";
    first.vv_Append(first);
    EXPECT_EQ(Text(first.pcco_GetMemory()), "abcxyzabcxyz");
}

TEST(MemoryOutput, ReplacesAsABufferDoes)
{
    CT_MemoryOutput output;
    Append(output, "abcdef");
    output.vv_Replace("XY", 2, 1);
    EXPECT_EQ(Text(output.pcco_GetMemory()), "aXYdef");
    output.vv_Replace("1234", 4, 5);
    EXPECT_EQ(Text(output.pcco_GetMemory()), "aXYde1234") << "grows behind its end";
    output.vv_Replace("", 0, 0);
    EXPECT_EQ(output.vn_GetSize(), 9u);
    Append(output, "!");
    EXPECT_EQ(Text(output.pcco_GetMemory()), "aXYde1234!");
}

TEST(MemoryOutput, GivesItsBufferAway)
{
    CT_MemoryOutput output;
    Append(output, "abc");
    const CT_Buffer* memory = output.pcco_GetMemory();
    const std::unique_ptr<CT_Buffer> given(output.pco_GiveMemory());
    EXPECT_EQ(given.get(), memory);
    EXPECT_EQ(Text(given.get()), "abc");
    EXPECT_EQ(output.pcco_GetMemory(), nullptr);
    EXPECT_EQ(output.pco_GiveMemory(), nullptr);
    EXPECT_EQ(output.vn_GetSize(), 0u);
    output.v_Set();
    Append(output, "new");
    EXPECT_EQ(Text(output.pcco_GetMemory()), "new");
    EXPECT_EQ(Text(given.get()), "abc");
}

TEST(MemoryOutput, WithoutABufferEachChangeIsReported)
{
    CT_MemoryOutput output;
    CT_MemoryOutput other;
    MemoryFile file;
    file.v_SetOpen(1);
    CT_FileOutput from(&file);
    delete output.pco_GiveMemory();
    const Failure expected = GivenAway();
    Append(output, "abc");
    EXPECT_EQ(TakeBare(), expected);
    output.vv_Append('x', 3);
    EXPECT_EQ(TakeBare(), expected);
    output.vv_Append(other);
    EXPECT_EQ(TakeBare(), expected);
    output.vv_Replace("abc", 3, 0);
    EXPECT_EQ(TakeBare(), expected);
    file.TakeCalls();
    output.vv_Append(from);
    EXPECT_EQ(TakeBare(), expected);
    EXPECT_EQ(file.TakeCalls(), Calls()) << "the other one is let alone";
    other.vv_Append(output);
    EXPECT_EQ(TakeBare(), expected);
    EXPECT_EQ(other.vn_GetSize(), 0u);
}

// ---- Files -------------------------------------------------------------------------------------

TEST(MemoryOutput, TakesAFileInWhole)
{
    const CT_UString name = Name("file");
    const std::string text(100000, 'x');
    CT_FileOutput from(&name);
    Append(from, text + "end");
    CT_MemoryOutput output;
    Append(output, "begin");
    output.vv_Append(from);
    EXPECT_EQ(Text(output.pcco_GetMemory()), "begin" + text + "end");
    EXPECT_EQ(from.pcco_GetFile()->b_IsOpen(), 0) << "and leaves it closed";
    EXPECT_EQ(ReadBytes("file"), text + "end");
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
    output.vv_Append(from);
    EXPECT_EQ(output.vn_GetSize(), 5u + 2 * 100003u) << "a closed one is opened as well";
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
}

TEST(MemoryOutput, WithoutABlockNothingIsTakenFromAFile)
{
    const CT_UString name = Name("file");
    CT_FileOutput from(&name);
    Append(from, "abc");
    CT_MemoryOutput output;
    output.vv_Append(from);
    EXPECT_EQ(output.vn_GetSize(), 0u);
    EXPECT_EQ(from.pcco_GetFile()->b_IsOpen(), 0);
    EXPECT_EQ(ReadBytes("file"), "abc");
    EXPECT_EQ(TakeSystem(), NO_FAILURE);
    // Room that was reserved before is enough.
    const CT_Buffer room(1000, 32);
    output.v_Set(&room);
    output.vv_Append(from);
    EXPECT_EQ(Text(output.pcco_GetMemory()), "abc");
}

TEST(MemoryOutput, AFileIsReadInPiecesOfTheOwnRoom)
{
    MemoryFile file;
    file.v_SetOpen(1);
    file.data = std::string(100, 'x');
    CT_FileOutput from(&file);
    const CT_Buffer room(20, 32); // which is all that a block of 32 bytes has
    CT_MemoryOutput output(&room);
    file.TakeCalls();
    output.vv_Append(from);
    EXPECT_EQ(Text(output.pcco_GetMemory()), std::string(100, 'x'));
    const Calls expected = {"close",   "open 1 1 0 1 0", "read 20",  "read 20",
                            "read 52", "read 116",       "read 116", "close"};
    EXPECT_EQ(file.TakeCalls(), expected);
}

TEST(MemoryOutput, FailuresWhileAFileIsTaken)
{
    struct Case
    {
        int good;
        Trail trail;
        int open;
        unsigned size; // of what was taken
    };
    const Case cases[] = {
        {0, {"MemoryFile", MEMORY_OUTPUT_PLACE}, 1, 3}, // close; the open sees it
        {1, {"MemoryFile", MEMORY_OUTPUT_PLACE}, 0, 3}, // open
        {2, {"MemoryFile", FILE_PLACE}, 0, 3},          // read, which ends as the file does
        {3, {"MemoryFile", FILE_PLACE}, 0, 23},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.good);
        MemoryFile file;
        file.v_SetOpen(1);
        file.data = std::string(100, 'x');
        CT_FileOutput from(&file);
        const CT_Buffer begin("abc", 3, 32);
        CT_MemoryOutput output(&begin);
        file.good = row.good;
        output.vv_Append(from);
        EXPECT_EQ(TakeFailure(), (Failure{4711, "(4711): failed", row.trail}));
        EXPECT_EQ(file.b_IsOpen(), row.open);
        EXPECT_EQ(output.vn_GetSize(), row.size);
    }
}

TEST(MemoryOutput, AFileThatIsGoneIsReported)
{
    const CT_UString name = Name("file");
    CT_FileOutput from(&name);
    CT_MemoryOutput output;
    Append(output, "abc");
    std::unique_ptr<CT_File> file(from.pco_GiveFile());
    output.vv_Append(from);
    EXPECT_EQ(TakeBare(), Bare(ERROR_INVALID_HANDLE, {FILE_OUTPUT_PLACE}));
    file->vv_Remove();
    from.v_Set(file.get());
    file->vv_Close();
    file->vv_Remove();
    output.vv_Append(from);
    EXPECT_EQ(TakeSystem(), (SystemFailure{2, "file", {WINFILE_PLACE, MEMORY_OUTPUT_PLACE}}));
    EXPECT_EQ(Text(output.pcco_GetMemory()), "abc");
    from.pco_GiveFile(); // it goes first
}

TEST(MemoryOutput, ObjectsLiveOnTheHeapToo)
{
    CT_Output* output = new CT_MemoryOutput;
    Append(*output, "abc");
    EXPECT_EQ(output->vn_GetSize(), 3u);
    delete output;
}
