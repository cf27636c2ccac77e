// tests/Ostra/Buffer/BufferTest.cpp: blocks, sizes, sharing; access and search.
#define OSTRA_RAW_COPIES
#include <Ostra/Buffer/Buffer.h>

#include "Ostra/Buffer/BufferText.h"

#include <memory>
#include <thread>

// ---- Construction ---------------------------------------------------------------------------

TEST(Buffer, DefaultHasGrowth32AndNoBlock)
{
    const CT_Buffer buffer;
    EXPECT_EQ(buffer.n_GetGrowth(), 32U);
    EXPECT_EQ(buffer.qcv_Get(), nullptr);
    EXPECT_EQ(buffer.n_GetUsedSize(), 0U);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 0U);
    EXPECT_EQ(buffer.n_GetUseCount(), 1U);
}

TEST(Buffer, SizeZeroMakesNoBlock)
{
    const unsigned count = CT_Buffer::sn_GetAllocCount();
    const CT_Buffer buffer(0, 64);
    EXPECT_EQ(buffer.qcv_Get(), nullptr);
    EXPECT_EQ(buffer.n_GetGrowth(), 64U);
    EXPECT_EQ(buffer.n_GetUseCount(), 1U);
    const CT_Buffer bytes("abc", 0, 64);
    EXPECT_EQ(bytes.qcv_Get(), nullptr);
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count);
}

TEST(Buffer, BlockSizeIsTheLeastMultipleOfTheGrowthThatHoldsBytesAndHeader)
{
    const struct
    {
        unsigned size;
        unsigned growth;
        unsigned maximum;
    } rows[] = {
        {1, 32, 20},
        {20, 32, 20},
        {21, 32, 52},
        {52, 32, 52},
        {53, 32, 84},
        {1, 1, 1},
        {100, 1, 100},
        {1, 12, 12},
        {12, 12, 12},
        {13, 12, 24},
        {1, 13, 1},
        {2, 13, 14},
        {1, 5, 3},
        {3, 5, 3},
        {4, 5, 8},
        {1, 1000, 988},
        {988, 1000, 988},
        {989, 1000, 1988},
        {65536, 4096, 69620},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.size) + " bytes by " + std::to_string(row.growth));
        const CT_Buffer buffer(row.size, row.growth);
        EXPECT_EQ(buffer.n_GetMaximumSize(), row.maximum);
        EXPECT_EQ(buffer.n_GetUsedSize(), 0U);
        EXPECT_NE(buffer.qcv_Get(), nullptr);
    }
}

TEST(Buffer, BytesAreCopiedIn)
{
    const std::string bytes("a\0b", 3);
    const CT_Buffer buffer(bytes.data(), 3, 16);
    EXPECT_EQ(Bytes(buffer), bytes);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 4U);
    EXPECT_EQ(buffer.n_GetGrowth(), 16U);
}

TEST(Buffer, HeaderLiesInFrontOfTheData)
{
    CT_Buffer buffer("abc", 3, 32);
    const CT_Buffer other(&buffer);
    unsigned header[3];
    std::memcpy(header, static_cast<const char*>(buffer.qcv_Get()) - 12, 12);
    EXPECT_EQ(header[0], 2U);
    EXPECT_EQ(header[1], 20U);
    EXPECT_EQ(header[2], 3U);
}

TEST(Buffer, ObjectIsGrowthAndPointer)
{
    EXPECT_EQ(sizeof(CT_Buffer), 2 * sizeof(void*));
    const CT_Buffer buffer(1, 77);
    unsigned growth;
    std::memcpy(&growth, &buffer, sizeof(growth));
    EXPECT_EQ(growth, 77U);
}

TEST(Buffer, ObjectsAreMadeWithNewAndInPlace)
{
    CT_Buffer* buffer = new CT_Buffer("abc", 3, 32);
    EXPECT_EQ(Bytes(*buffer), "abc");
    delete buffer;
    alignas(CT_Buffer) char place[sizeof(CT_Buffer)];
    CT_Buffer* placed = new (place) CT_Buffer("def", 3, 32);
    EXPECT_EQ(Bytes(*placed), "def");
    placed->~CT_Buffer();
}

TEST(Buffer, TheBlockIsTheLeastMultipleOfTheGrowthForEachGrowth)
{
    for (unsigned growth : {1u, 2u, 3u, 7u, 8u, 12u, 31u, 32u, 33u, 48u, 64u, 1000u, 1024u}) {
        for (unsigned size = 1; size < 130; ++size) {
            unsigned total = growth;
            while (total < size + 12)
                total += growth;
            CT_Buffer buffer(size, growth);
            ASSERT_EQ(buffer.n_GetMaximumSize(), total - 12) << size << " by " << growth;
        }
    }
}

// ---- Sharing --------------------------------------------------------------------------------

TEST(Buffer, PointerFormsShareBlockAndGrowth)
{
    const CT_Buffer source("abc", 3, 16);
    const unsigned count = CT_Buffer::sn_GetAllocCount();
    const CT_Buffer copy(&source);
    CT_Buffer set("x", 1, 32);
    set.v_Set(&source);
    CT_Buffer replaced("y", 1, 64);
    replaced.v_Replace(&source);
    for (const CT_Buffer* buffer : {&source, &copy, const_cast<const CT_Buffer*>(&set),
                                    const_cast<const CT_Buffer*>(&replaced)}) {
        EXPECT_EQ(buffer->qcv_Get(), source.qcv_Get());
        EXPECT_EQ(buffer->n_GetUseCount(), 4U);
        EXPECT_EQ(buffer->n_GetGrowth(), 16U);
        EXPECT_EQ(Bytes(*buffer), "abc");
    }
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count + 2);
}

TEST(Buffer, SharingNoBlockCountsNothing)
{
    const CT_Buffer source(0, 16);
    const CT_Buffer copy(&source);
    EXPECT_EQ(copy.n_GetGrowth(), 16U);
    EXPECT_EQ(copy.n_GetUseCount(), 1U);
    EXPECT_EQ(copy.qcv_Get(), nullptr);
}

TEST(Buffer, LastHolderFreesTheBlock)
{
    auto first = std::make_unique<CT_Buffer>("abc", 3, 32);
    const CT_Buffer second(first.get());
    first.reset();
    EXPECT_EQ(second.n_GetUseCount(), 1U);
    EXPECT_EQ(Bytes(second), "abc");
}

TEST(Buffer, AppendToSharedBlockLeavesTheOtherHolder)
{
    CT_Buffer buffer("abc", 3, 32);
    const CT_Buffer other(&buffer);
    const unsigned count = CT_Buffer::sn_GetAllocCount();
    buffer.v_Append('d');
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count + 1);
    EXPECT_EQ(Bytes(buffer), "abcd");
    EXPECT_EQ(Bytes(other), "abc");
    EXPECT_EQ(buffer.n_GetUseCount(), 1U);
    EXPECT_EQ(other.n_GetUseCount(), 1U);
}

TEST(Buffer, EveryChangeUnsharesFirst)
{
    void (*const changes[])(CT_Buffer&) = {
        [](CT_Buffer& b) { b.v_SetUsedSize(2); },
        [](CT_Buffer& b) { b.v_CopyWeWrite(); },
        [](CT_Buffer& b) { b.v_Replace('x', 1, 0); },
        [](CT_Buffer& b) { b.v_Replace("x", 1, 0); },
        [](CT_Buffer& b) { b.v_Insert('x', 1, 0); },
        [](CT_Buffer& b) { b.v_Insert("x", 1, 0); },
        [](CT_Buffer& b) { b.v_Append('x'); },
        [](CT_Buffer& b) { b.v_Append("x", 1); },
        [](CT_Buffer& b) { b.v_Remove(1, 0); },
        [](CT_Buffer& b) { b.v_Remove(0xFFFFFFFF, 1); },
        [](CT_Buffer& b) { b.v_AtInsertCopy(0, 1, 1); },
        [](CT_Buffer& b) { b.v_AtInsertMove(0, 1, 2); },
        [](CT_Buffer& b) { b.v_SetSize(20, 1); },
        [](CT_Buffer& b) { b.v_SetSize(20, 0); },
        [](CT_Buffer& b) { b.v_Set(5, 0xFFFFFFFF, 1); },
        [](CT_Buffer& b) { b.v_Replace("", 0, 0); },
        [](CT_Buffer& b) { b.v_Insert("", 0, 0); },
    };
    for (const auto& change : changes) {
        SCOPED_TRACE(&change - changes);
        CT_Buffer buffer("abc", 3, 32);
        const CT_Buffer other(&buffer);
        const void* block = other.qcv_Get();
        const unsigned count = CT_Buffer::sn_GetAllocCount();
        change(buffer);
        EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count + 1);
        EXPECT_EQ(other.qcv_Get(), block);
        EXPECT_EQ(Bytes(other), "abc");
        EXPECT_NE(buffer.qcv_Get(), block);
        EXPECT_EQ(buffer.n_GetUseCount(), 1U);
        EXPECT_EQ(other.n_GetUseCount(), 1U);
        EXPECT_EQ(buffer.n_GetMaximumSize(), 20U);
    }
}

TEST(Buffer, UnsharedCopyKeepsTheMaximumSizeWhateverTheGrowth)
{
    CT_Buffer buffer("abc", 3, 32);
    CT_Buffer other(&buffer);
    other.v_SetGrowth(1000);
    other.v_CopyWeWrite();
    EXPECT_EQ(other.n_GetMaximumSize(), 20U);
    EXPECT_EQ(other.n_GetGrowth(), 1000U);
    EXPECT_EQ(buffer.n_GetGrowth(), 32U);
}

TEST(Buffer, CopyWeWriteOnAnUnsharedBufferAllocatesNothing)
{
    CT_Buffer buffer("abc", 3, 32);
    CT_Buffer empty;
    const unsigned count = CT_Buffer::sn_GetAllocCount();
    const void* block = buffer.qcv_Get();
    buffer.v_CopyWeWrite();
    empty.v_CopyWeWrite();
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count);
    EXPECT_EQ(buffer.qcv_Get(), block);
    EXPECT_EQ(empty.qcv_Get(), nullptr);
}

TEST(Buffer, SetToItselfItStaysAsItIs)
{
    CT_Buffer buffer("abc", 3, 16);
    const void* const block = buffer.qcv_Get();
    buffer.v_Set(&buffer);
    EXPECT_EQ(Bytes(buffer), "abc");
    EXPECT_EQ(buffer.qcv_Get(), block);
    EXPECT_EQ(buffer.n_GetGrowth(), 16U);
    EXPECT_EQ(buffer.n_GetUseCount(), 1U);
    buffer.v_Replace(&buffer);
    EXPECT_EQ(Bytes(buffer), "abc");
    CT_Buffer empty(0, 64);
    empty.v_Set(&empty);
    EXPECT_EQ(empty.qcv_Get(), nullptr);
    EXPECT_EQ(empty.n_GetGrowth(), 64U);
    CT_Buffer shared("abc", 3, 16);
    const CT_Buffer other(&shared);
    shared.v_Set(&shared);
    EXPECT_EQ(Bytes(shared), "abc");
    EXPECT_EQ(other.n_GetUseCount(), 2U);
}

TEST(Buffer, AssignmentCopiesTheMembersWithoutAUse)
{
    CT_Buffer source("abc", 3, 16);
    alignas(CT_Buffer) char place[sizeof(CT_Buffer)];
    CT_Buffer* copy = new (place) CT_Buffer;
    *copy = source;
    EXPECT_EQ(copy->qcv_Get(), source.qcv_Get());
    EXPECT_EQ(copy->n_GetGrowth(), 16U);
    EXPECT_EQ(source.n_GetUseCount(), 1U);
    // The copy is never destructed: it has no hold.
}

TEST(Buffer, CopyByReferenceIsNoHoldOnTheBlock)
{
    const CT_Buffer source("abc", 3, 16);
    alignas(CT_Buffer) char place[sizeof(CT_Buffer)];
    const CT_Buffer* copy = new (place) CT_Buffer(source);
    EXPECT_EQ(copy->qcv_Get(), source.qcv_Get());
    EXPECT_EQ(copy->n_GetUsedSize(), 3U);
    EXPECT_EQ(copy->n_GetGrowth(), 16U);
    EXPECT_EQ(source.n_GetUseCount(), 1U);
}

TEST(Buffer, TwoThreadsShareReadWriteAndRelease)
{
    constexpr int ROUNDS = 2000;
    for (int round = 0; round < ROUNDS; ++round) {
        auto mine = std::make_unique<CT_Buffer>("0123456789", 10, 32);
        auto theirs = std::make_unique<CT_Buffer>(mine.get());
        std::thread other([&theirs, round] {
            CT_Buffer third(theirs.get());
            EXPECT_EQ(Bytes(third), "0123456789");
            if (round % 2)
                theirs->v_Append('x');
            third.v_Replace('y', 1, 0);
            EXPECT_EQ(Bytes(third), "y123456789");
            theirs.reset();
        });
        if (round % 3)
            mine->v_Append('z');
        EXPECT_EQ(Bytes(*mine), round % 3 ? "0123456789z" : "0123456789");
        mine.reset();
        other.join();
    }
}

// ---- Sizes ----------------------------------------------------------------------------------

TEST(Buffer, SetSizeZeroLetsGoOfTheBlock)
{
    CT_Buffer buffer("abc", 3, 32);
    const CT_Buffer other(&buffer);
    buffer.v_SetSize(0, 1);
    EXPECT_EQ(buffer.qcv_Get(), nullptr);
    EXPECT_EQ(buffer.n_GetGrowth(), 32U);
    EXPECT_EQ(other.n_GetUseCount(), 1U);
    EXPECT_EQ(Bytes(other), "abc");
}

TEST(Buffer, SetSizeToTheSameRoundedSizeKeepsTheBlock)
{
    CT_Buffer buffer("abc", 3, 32);
    const void* block = buffer.qcv_Get();
    const unsigned count = CT_Buffer::sn_GetAllocCount();
    buffer.v_SetSize(17, 1);
    EXPECT_EQ(buffer.qcv_Get(), block);
    EXPECT_EQ(Bytes(buffer), "abc");
    buffer.v_SetSize(1, 0);
    EXPECT_EQ(buffer.qcv_Get(), block);
    EXPECT_EQ(buffer.n_GetUsedSize(), 0U);
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count);
}

TEST(Buffer, SetSizeGrowsAndShrinks)
{
    const std::string bytes(50, 'x');
    CT_Buffer buffer(bytes.data(), 50, 32);
    const unsigned count = CT_Buffer::sn_GetAllocCount();
    buffer.v_SetSize(100, 1);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 116U);
    EXPECT_EQ(Bytes(buffer), bytes);
    buffer.v_SetSize(10, 1);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 20U);
    EXPECT_EQ(Bytes(buffer), bytes.substr(0, 20));
    buffer.v_SetSize(100, 0);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 116U);
    EXPECT_EQ(buffer.n_GetUsedSize(), 0U);
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count + 3);
}

TEST(Buffer, SetSizeFollowsTheGrowthOfThatTime)
{
    CT_Buffer buffer("abc", 3, 32);
    buffer.v_SetGrowth(100);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 20U);
    buffer.v_SetSize(3, 1);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 88U);
    EXPECT_EQ(Bytes(buffer), "abc");
}

TEST(Buffer, SetMinSizeWithRoomEnoughLeavesTheBlockAlone)
{
    CT_Buffer buffer("abc", 3, 32);
    const void* block = buffer.qcv_Get();
    for (const unsigned size : {0U, 1U, 20U})
        buffer.v_SetMinSize(size, 0);
    EXPECT_EQ(buffer.qcv_Get(), block);
    EXPECT_EQ(Bytes(buffer), "abc");
    buffer.v_SetMinSize(21, 1);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 52U);
    EXPECT_EQ(Bytes(buffer), "abc");
    buffer.v_SetMinSize(53, 0);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 84U);
    EXPECT_EQ(buffer.n_GetUsedSize(), 0U);
}

TEST(Buffer, SetMinSizeWithoutABlockMakesOne)
{
    CT_Buffer buffer;
    buffer.v_SetMinSize(0, 1);
    EXPECT_EQ(buffer.qcv_Get(), nullptr);
    buffer.v_SetMinSize(1, 1);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 20U);
}

TEST(Buffer, SetUsedSizeIsNotCheckedAndNeedsABlock)
{
    CT_Buffer buffer("abc", 3, 32);
    buffer.v_SetUsedSize(20);
    EXPECT_EQ(buffer.n_GetUsedSize(), 20U);
    buffer.v_SetUsedSize(21);
    EXPECT_EQ(buffer.n_GetUsedSize(), 21U);
    buffer.v_SetUsedSize(1);
    EXPECT_EQ(Bytes(buffer), "a");
    CT_Buffer empty;
    empty.v_SetUsedSize(5);
    EXPECT_EQ(empty.n_GetUsedSize(), 0U);
}

TEST(Buffer, SetWithoutKeepMakesANewBlock)
{
    CT_Buffer buffer("abc", 3, 32);
    const unsigned count = CT_Buffer::sn_GetAllocCount();
    buffer.v_Set(3, 0xFFFFFFFF, 0);
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count + 1);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 20U);
    EXPECT_EQ(buffer.n_GetUsedSize(), 0U);
    buffer.v_Set(3, 100, 0);
    EXPECT_EQ(buffer.n_GetGrowth(), 100U);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 88U);
    buffer.v_Set(0, 100, 0);
    EXPECT_EQ(buffer.qcv_Get(), nullptr);
}

TEST(Buffer, SetWithKeepKeepsALargeEnoughBlock)
{
    CT_Buffer buffer("abc", 3, 32);
    const void* block = buffer.qcv_Get();
    const unsigned count = CT_Buffer::sn_GetAllocCount();
    buffer.v_Set(20, 0xFFFFFFFF, 1);
    EXPECT_EQ(buffer.qcv_Get(), block);
    EXPECT_EQ(buffer.n_GetUsedSize(), 0U);
    buffer.v_Set(1, 16, 1);
    EXPECT_EQ(buffer.qcv_Get(), block);
    EXPECT_EQ(buffer.n_GetGrowth(), 16U);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 20U);
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count);
}

TEST(Buffer, SetWithKeepRoundsTheTotalTwice)
{
    CT_Buffer buffer;
    buffer.v_Set(10, 32, 1);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 52U);
    EXPECT_EQ(buffer.n_GetUsedSize(), 0U);
    CT_Buffer small("abc", 3, 32);
    small.v_Set(21, 0xFFFFFFFF, 1);
    EXPECT_EQ(small.n_GetMaximumSize(), 84U);
    CT_Buffer nothing;
    nothing.v_Set(0, 32, 1);
    EXPECT_EQ(nothing.n_GetMaximumSize(), 52U);
}

TEST(Buffer, SetWithKeepOnASharedBlockMakesAPlainNewOne)
{
    CT_Buffer buffer("abc", 3, 32);
    const CT_Buffer other(&buffer);
    buffer.v_Set(10, 0xFFFFFFFF, 1);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 20U);
    EXPECT_EQ(buffer.n_GetUsedSize(), 0U);
    EXPECT_EQ(other.n_GetUseCount(), 1U);
    EXPECT_EQ(Bytes(other), "abc");
}

TEST(Buffer, SetBytesTakesOrKeepsTheGrowth)
{
    CT_Buffer buffer("abc", 3, 32);
    buffer.v_Set("defg", 4, 0xFFFFFFFF);
    EXPECT_EQ(Bytes(buffer), "defg");
    EXPECT_EQ(buffer.n_GetGrowth(), 32U);
    buffer.v_Set("hi", 2, 64);
    EXPECT_EQ(Bytes(buffer), "hi");
    EXPECT_EQ(buffer.n_GetGrowth(), 64U);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 52U);
    buffer.v_Set("", 0, 0xFFFFFFFF);
    EXPECT_EQ(buffer.qcv_Get(), nullptr);
}

TEST(Buffer, SetBytesTakesBytesOfItsOwnBlock)
{
    CT_Buffer buffer("abcdefghijklmnopqrstuvwxyz", 26, 32);
    const CT_Buffer other(&buffer);
    buffer.v_Set(static_cast<const char*>(buffer.qcv_Get()) + 2, 20, 16);
    EXPECT_EQ(Bytes(buffer), "cdefghijklmnopqrstuv");
    EXPECT_EQ(buffer.n_GetGrowth(), 16U);
    EXPECT_EQ(other.n_GetUseCount(), 1U);
    buffer.v_Set(static_cast<const char*>(buffer.qcv_Get()) + 17, 3, 0xFFFFFFFF);
    EXPECT_EQ(Bytes(buffer), "tuv");
    buffer.v_Set(buffer.qcv_Get(), 0, 0xFFFFFFFF);
    EXPECT_EQ(buffer.qcv_Get(), nullptr);
}

TEST(Buffer, AGrowthOfZeroCountsAs32)
{
    CT_Buffer buffer("abc", 3, 0);
    EXPECT_EQ(buffer.n_GetGrowth(), 32U);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 20U);
    CT_Buffer room(21, 0);
    EXPECT_EQ(room.n_GetMaximumSize(), 52U);
    room.v_SetGrowth(64);
    room.v_SetGrowth(0);
    room.v_SetSize(53, 1);
    EXPECT_EQ(room.n_GetMaximumSize(), 84U);
    room.v_SetGrowth(64);
    room.v_Set(10, 0, 1);
    EXPECT_EQ(room.n_GetGrowth(), 32U);
    room.v_SetGrowth(64);
    room.v_Set("abc", 3, 0);
    EXPECT_EQ(room.n_GetGrowth(), 32U);
    EXPECT_EQ(room.n_GetMaximumSize(), 20U);
    CT_Buffer empty(0, 0);
    empty.v_Append('x');
    EXPECT_EQ(Bytes(empty), "x");
    EXPECT_EQ(CT_Buffer(&empty).n_GetGrowth(), 32U);
}

TEST(Buffer, FillingByteByByteCountsOneAllocationAStep)
{
    CT_Buffer buffer;
    const unsigned count = CT_Buffer::sn_GetAllocCount();
    for (unsigned n = 0; n < 1000; ++n) {
        buffer.v_Append(static_cast<unsigned char>(n));
        ASSERT_EQ(buffer.n_GetMaximumSize(), (n + 1 + 12 + 31) / 32 * 32 - 12);
        ASSERT_EQ(CT_Buffer::sn_GetAllocCount(), count + (buffer.n_GetMaximumSize() + 12) / 32);
    }
}

// ---- Comparison and search ------------------------------------------------------------------

TEST(Buffer, EqualComparesAtTheOffset)
{
    const CT_Buffer buffer("abcdef", 6, 32);
    EXPECT_TRUE(buffer.b_IsEqual("abcdef", 6, 0));
    EXPECT_TRUE(buffer.b_IsEqual("cd", 2, 2));
    EXPECT_FALSE(buffer.b_IsEqual("cx", 2, 2));
    EXPECT_TRUE(buffer.b_IsEqual("xyz", 0, 2));
}

TEST(Buffer, EqualOfALongerCandidateComparesOnlyWhatRemains)
{
    const CT_Buffer buffer("abcdef", 6, 32);
    EXPECT_TRUE(buffer.b_IsEqual("efgh", 4, 4));
    EXPECT_FALSE(buffer.b_IsEqual("exgh", 4, 4));
    EXPECT_TRUE(buffer.b_IsEqual("anything", 8, 6));
    EXPECT_TRUE(buffer.b_IsEqual("abcdef and more", 0xFFFFFFFF, 0));
}

TEST(Buffer, EqualWithNoBlock)
{
    const CT_Buffer empty;
    EXPECT_TRUE(empty.b_IsEqual("abc", 3, 0));
    EXPECT_TRUE(empty.b_IsEqual("abc", 0, 0));
    EXPECT_FALSE(empty.b_IsEqual("abc", 3, 1));
}

TEST(Buffer, EqualWithARangeOfAnotherBuffer)
{
    const CT_Buffer buffer("abcdef", 6, 32);
    const CT_Buffer other("xxcdexx", 7, 32);
    EXPECT_TRUE(buffer.b_IsEqual(&other, 2, 3, 2));
    EXPECT_FALSE(buffer.b_IsEqual(&other, 2, 4, 2));
    EXPECT_FALSE(buffer.b_IsEqual(&other, 2, 0xFFFFFFFF, 2));
    const CT_Buffer tail("xxdef", 5, 32);
    EXPECT_TRUE(buffer.b_IsEqual(&tail, 2, 0xFFFFFFFF, 3));
    const CT_Buffer empty;
    EXPECT_TRUE(buffer.b_IsEqual(&empty, 0, 0xFFFFFFFF, 0));
}

// No byte behind the other's used end is looked at, whatever its room holds.
TEST(Buffer, EqualWithARangeThatPassesTheOtherBuffersEndComparesWhatItHas)
{
    const CT_Buffer buffer("abcdef", 6, 32);
    CT_Buffer other("xxbcd", 5, 32);
    other.v_SetUsedSize(4);
    EXPECT_TRUE(buffer.b_IsEqual(&other, 2, 40, 1));
    EXPECT_TRUE(buffer.b_IsEqual(&other, 2, 0xFFFFFFFE, 1));
    EXPECT_FALSE(buffer.b_IsEqual(&other, 1, 40, 1));
    EXPECT_TRUE(buffer.b_IsEqual(&other, 4, 40, 1));
    EXPECT_TRUE(buffer.b_IsEqual(&other, 1000000000, 40, 1));
    const CT_Buffer empty;
    EXPECT_TRUE(buffer.b_IsEqual(&empty, 3, 40, 0));
}

TEST(Buffer, FindByte)
{
    const CT_Buffer buffer("abcabc\xFF", 7, 32);
    EXPECT_EQ(buffer.n_Find('a', 0), 0U);
    EXPECT_EQ(buffer.n_Find('a', 1), 3U);
    EXPECT_EQ(buffer.n_Find('a', 4), 0xFFFFFFFFU);
    EXPECT_EQ(buffer.n_Find(0xFF), 6U);
    EXPECT_EQ(buffer.n_Find('\0', 0), 0xFFFFFFFFU);
    EXPECT_EQ(buffer.n_Find('a', 7), 0xFFFFFFFFU);
    EXPECT_EQ(CT_Buffer().n_Find('a', 0), 0xFFFFFFFFU);
}

TEST(Buffer, FindBytes)
{
    const CT_Buffer buffer("aabaabaaab", 10, 32);
    EXPECT_EQ(buffer.n_Find("aab", 3, 0), 0U);
    EXPECT_EQ(buffer.n_Find("aab", 3, 1), 3U);
    EXPECT_EQ(buffer.n_Find("aab", 3, 4), 7U);
    EXPECT_EQ(buffer.n_Find("aab", 3, 8), 0xFFFFFFFFU);
    EXPECT_EQ(buffer.n_Find("aaab", 4), 6U);
    EXPECT_EQ(buffer.n_Find("abc", 3), 0xFFFFFFFFU);
    EXPECT_EQ(buffer.n_Find("xb", 2), 0xFFFFFFFFU);
    EXPECT_EQ(buffer.n_Find("aabaabaaabx", 11), 0xFFFFFFFFU);
    EXPECT_EQ(buffer.n_Find("aabaabaaab", 10), 0U);
    EXPECT_EQ(CT_Buffer().n_Find("a", 1, 0), 0xFFFFFFFFU);
}

TEST(Buffer, FindOfNoBytesFindsTheFirstOne)
{
    const CT_Buffer buffer("abc", 3, 32);
    EXPECT_EQ(buffer.n_Find("b", 0, 0), 1U);
    EXPECT_EQ(buffer.n_Find("x", 0, 0), 0xFFFFFFFFU);
}
