// tests/Ostra/Output/HugeOutputTest.cpp
#include <Ostra/Output/HugeOutput.h>

#include <Ostra/Output/FileOutput.h>
#include <Ostra/Output/MemoryOutput.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>
#include <string>

#include "../File/MemoryFile.h"
#include "OutputProbe.h"

namespace
{
// A block with its bytes and its size; freed here.
struct Given
{
    std::string bytes;
    SIZE_T size;
};

Given Take(HGLOBAL handle, unsigned used)
{
    Given given = {"", GlobalSize(handle)};
    if (const void* memory = GlobalLock(handle))
        given.bytes.assign(static_cast<const char*>(memory), used);
    EXPECT_EQ(GlobalUnlock(handle), FALSE) << "nobody else has it locked";
    EXPECT_EQ(GlobalFree(handle), nullptr);
    return given;
}

Given Take(CT_HugeOutput& output)
{
    return Take(output.h_GiveBuffer(), output.vn_GetSize());
}

HGLOBAL Block(const std::string& bytes, SIZE_T size)
{
    const HGLOBAL handle = GlobalAlloc(GMEM_MOVEABLE, size);
    std::memcpy(GlobalLock(handle), bytes.data(), bytes.size());
    GlobalUnlock(handle);
    return handle;
}

// Whether a handle is one still.
bool IsBlock(HGLOBAL handle)
{
    return GlobalSize(handle) != 0;
}
} // namespace

TEST(HugeOutput, GrowsByWholeStepsAndOneMore)
{
    CT_HugeOutput ten(nullptr, 0, 1024);
    EXPECT_EQ(ten.vn_GetSize(), 0u);
    Append(ten, "0123456789");
    EXPECT_EQ(ten.vn_GetSize(), 10u);
    const Given small = Take(ten);
    EXPECT_EQ(small.bytes, "0123456789");
    EXPECT_EQ(small.size, 1024u);
    CT_HugeOutput large(nullptr, 0, 1024);
    Append(large, std::string(2048, 'x'));
    EXPECT_EQ(large.vn_GetSize(), 2048u);
    EXPECT_EQ(Take(large).size, 3072u);
}

TEST(HugeOutput, StepsAreCountedForAllNewBytes)
{
    CT_HugeOutput output(nullptr, 0, 1024);
    Append(output, std::string(1000, 'a'));
    Append(output, std::string(24, 'b'));
    Append(output, std::string(1025, 'c'));
    const Given given = Take(output);
    EXPECT_EQ(given.size, 1024u + 2 * 1024u) << "one byte more than was there";
    EXPECT_EQ(given.bytes, std::string(1000, 'a') + std::string(24, 'b') + std::string(1025, 'c'));
}

TEST(HugeOutput, WhatFitsNeedsNoGrowth)
{
    CT_HugeOutput output(nullptr, 0, 64);
    Append(output, "a");
    Append(output, std::string(63, 'b'));
    EXPECT_EQ(Take(output).size, 64u);
}

TEST(HugeOutput, NothingIsMadeForNothing)
{
    CT_HugeOutput output(nullptr, 0, 64);
    output.vv_Append(nullptr, 0);
    EXPECT_EQ(output.h_GiveBuffer(), nullptr);
    Append(output, "abc");
    EXPECT_EQ(Take(output).bytes, "abc") << "nothing was given away";
}

TEST(HugeOutput, ABlockIsAdoptedWithItsBytes)
{
    const HGLOBAL handle = Block("abcde", 64);
    CT_HugeOutput output(handle, 3, 32);
    EXPECT_EQ(output.vn_GetSize(), 3u);
    Append(output, "XYZ");
    EXPECT_EQ(output.h_GiveBuffer(), handle) << "which had the room";
    EXPECT_EQ(Take(handle, 6).bytes, "abcXYZ");
}

TEST(HugeOutput, AnAdoptedBlockIsReplacedByALargerOne)
{
    const HGLOBAL handle = Block("abcde", 64);
    CT_HugeOutput output(handle, 5, 32);
    Append(output, std::string(60, 'x'));
    EXPECT_FALSE(IsBlock(handle));
    const Given given = Take(output);
    EXPECT_EQ(given.bytes, "abcde" + std::string(60, 'x'));
    EXPECT_EQ(given.size, 64u + 64u);
}

TEST(HugeOutput, ABlockThatSomebodyElseHasLockedStays)
{
    const HGLOBAL handle = Block("abcde", 64);
    const void* memory = GlobalLock(handle);
    {
        CT_HugeOutput output(handle, 5, 32);
        Append(output, std::string(60, 'x'));
        EXPECT_TRUE(IsBlock(handle)) << "though the bytes are elsewhere now";
    }
    EXPECT_EQ(std::memcmp(memory, "abcde", 5), 0);
    EXPECT_EQ(GlobalUnlock(handle), FALSE);
    {
        GlobalLock(handle);
        const CT_HugeOutput output(handle, 5, 32);
    }
    EXPECT_TRUE(IsBlock(handle)) << "also when the output goes";
    EXPECT_EQ(GlobalUnlock(handle), FALSE);
    GlobalFree(handle);
}

TEST(HugeOutput, TheBlockGoesWithTheOutput)
{
    const HGLOBAL handle = Block("abcde", 64);
    {
        const CT_HugeOutput output(handle, 5, 32);
        EXPECT_TRUE(IsBlock(handle));
    }
    EXPECT_FALSE(IsBlock(handle));
}

TEST(HugeOutput, AGivenBlockBelongsToTheCaller)
{
    HGLOBAL handle;
    {
        CT_HugeOutput output(nullptr, 0, 32);
        Append(output, "abc");
        handle = output.h_GiveBuffer();
        EXPECT_EQ(output.vn_GetSize(), 3u) << "stays as it was";
        EXPECT_EQ(output.h_GiveBuffer(), nullptr);
        Append(output, "d");
        EXPECT_EQ(TakeBare(), Bare(ERROR_INVALID_HANDLE, {HUGE_OUTPUT_PLACE}));
    }
    EXPECT_EQ(Take(handle, 3).bytes, "abc");
}

TEST(HugeOutput, BytesOfItsOwnMayBeAppended)
{
    CT_HugeOutput output(nullptr, 0, 4);
    Append(output, "abcd");
    const HGLOBAL handle = output.h_GiveBuffer();
    CT_HugeOutput adopted(handle, 4, 4);
    const char* memory = static_cast<const char*>(GlobalLock(handle));
    GlobalUnlock(handle);
    adopted.vv_Append(memory + 1, 3);
    adopted.vv_Append(memory + 1, 0);
    EXPECT_EQ(Take(adopted).bytes, "abcdbcd");
}

TEST(HugeOutput, WhatItCannotTakeChangesNothing)
{
    CT_HugeOutput output(nullptr, 0, 32);
    Append(output, "abc");
    CT_MemoryOutput memory;
    Append(memory, "xyz");
    MemoryFile file;
    CT_FileOutput other(&file);
    file.TakeCalls();
    output.vv_Append('x', 5);
    output.vv_Append(memory);
    output.vv_Append(other);
    EXPECT_EQ(TakeFailure(), Failure());
    EXPECT_EQ(file.TakeCalls(), Calls());
    EXPECT_EQ(output.vn_GetSize(), 3u);
    output.vv_Replace("XY", 2, 0);
    EXPECT_EQ(TakeBare(), Bare(ERROR_NOT_SUPPORTED, {HUGE_OUTPUT_PLACE}));
    EXPECT_EQ(Take(output).bytes, "abc");
}

TEST(HugeOutput, ABlockOfMoreThan32BitsIsRefused)
{
    const HGLOBAL handle = Block("abc", 64);
    CT_HugeOutput output(handle, 3, 0xFFFFFFFF);
    Append(output, std::string(70, 'x'));
    EXPECT_EQ(TakeFailure(),
              (Failure{60006, "(60006): Out of memory", {HUGE_OUTPUT_PLACE, HUGE_OUTPUT_PLACE}}));
    EXPECT_EQ(output.vn_GetSize(), 3u);
    Append(output, std::string(61, 'y'));
    EXPECT_EQ(TakeFailure(), Failure()) << "what fits is taken";
    EXPECT_EQ(output.h_GiveBuffer(), handle);
    EXPECT_EQ(Take(handle, 64).bytes, "abc" + std::string(61, 'y'));
}

TEST(HugeOutput, AGrowthOfNothingCountsAs32)
{
    CT_HugeOutput output(nullptr, 0, 0);
    Append(output, "abc");
    EXPECT_EQ(Take(output).size, 32u);
}

TEST(HugeOutput, ABlockWithoutMemoryIsReplaced)
{
    // One of no bytes can't be locked.
    CT_HugeOutput output(GlobalAlloc(GMEM_MOVEABLE, 0), 0, 32);
    Append(output, "abc");
    EXPECT_EQ(Take(output).bytes, "abc");
}

TEST(HugeOutput, AnErrorThatStandsStopsNothing)
{
    CT_HugeOutput output(nullptr, 0, 32);
    Errors().v_SetError(1234, Units(u"first"));
    Append(output, "abc");
    EXPECT_EQ(TakeFailure(), (Failure{1234, "(1234): first", {}}));
    EXPECT_EQ(Take(output).bytes, "abc");
}

TEST(HugeOutput, ObjectsLiveOnTheHeapToo)
{
    CT_Output* output = new CT_HugeOutput(nullptr, 0, 32);
    Append(*output, "abc");
    EXPECT_EQ(output->vn_GetSize(), 3u);
    delete output;
}
