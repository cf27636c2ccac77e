// tests/Ostra/Buffer/BufferChangeTest.cpp: overwriting, inserting, removing, moving.
#include "Ostra/Buffer/BufferText.h"

#include <cstring>

namespace
{
constexpr unsigned ALL = 0xFFFFFFFF;
const std::string twenty = "0123456789ABCDEFGHIJ";
} // namespace

// ---- Replace --------------------------------------------------------------------------------

TEST(BufferChange, ReplaceOverwritesAndNeverShrinks)
{
    CT_Buffer buffer("abcdef", 6, 32);
    buffer.v_Replace("XY", 2, 1);
    EXPECT_EQ(Bytes(buffer), "aXYdef");
    buffer.v_Replace("UVW", 3, 5);
    EXPECT_EQ(Bytes(buffer), "aXYdeUVW");
    buffer.v_Replace('-', 3, 0);
    EXPECT_EQ(Bytes(buffer), "---deUVW");
    buffer.v_Replace("", 0, 3);
    EXPECT_EQ(Bytes(buffer), "---deUVW");
}

TEST(BufferChange, ReplaceGrowsTheBlock)
{
    CT_Buffer buffer(twenty.data(), 20, 32);
    const unsigned count = CT_Buffer::sn_GetAllocCount();
    buffer.v_Replace("xyz", 3, 18);
    EXPECT_EQ(Bytes(buffer), twenty.substr(0, 18) + "xyz");
    EXPECT_EQ(buffer.n_GetMaximumSize(), 52U);
    buffer.v_Replace('+', 40, 21);
    EXPECT_EQ(Bytes(buffer), twenty.substr(0, 18) + "xyz" + std::string(40, '+'));
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count + 2);
}

TEST(BufferChange, ReplaceGrowsASharedBlockInOneStep)
{
    CT_Buffer buffer(twenty.data(), 20, 32);
    const CT_Buffer other(&buffer);
    const unsigned count = CT_Buffer::sn_GetAllocCount();
    buffer.v_Replace("xyz", 3, 18);
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count + 1);
    EXPECT_EQ(Bytes(other), twenty);
    EXPECT_EQ(other.n_GetUseCount(), 1U);
}

TEST(BufferChange, ReplaceWithCountMinusOneGoesToTheUsedEnd)
{
    CT_Buffer buffer("abcdef", 6, 32);
    buffer.v_Replace("UVWXYZ", ALL, 4);
    EXPECT_EQ(Bytes(buffer), "abcdUV");
    buffer.v_Replace('-', ALL, 1);
    EXPECT_EQ(Bytes(buffer), "a-----");
    CT_Buffer empty;
    empty.v_Replace("abc", ALL, 0);
    EXPECT_EQ(empty.qcv_Get(), nullptr);
}

TEST(BufferChange, ReplaceOfNothingBehindTheUsedEndRaisesTheUsedSize)
{
    CT_Buffer buffer("abc", 3, 32);
    buffer.v_Replace("", 0, 5);
    EXPECT_EQ(buffer.n_GetUsedSize(), 5U);
    EXPECT_EQ(Bytes(buffer).substr(0, 3), "abc");
    buffer.v_Replace("x", 1, 30);
    EXPECT_EQ(buffer.n_GetUsedSize(), 31U);
    EXPECT_EQ(Bytes(buffer).back(), 'x');
}

TEST(BufferChange, ReplaceFromARangeOfAnotherBuffer)
{
    CT_Buffer buffer("abcdef", 6, 32);
    const CT_Buffer other("UVWXYZ", 6, 32);
    buffer.v_Replace(&other, 1, 2, 3);
    EXPECT_EQ(Bytes(buffer), "abcVWf");
    buffer.v_Replace(&other, 4, ALL, 5);
    EXPECT_EQ(Bytes(buffer), "abcVWYZ");
    buffer.v_Replace(&other, 6, ALL, 0);
    EXPECT_EQ(Bytes(buffer), "abcVWYZ");
}

TEST(BufferChange, ReplaceCopiesAnOverlappingRangeOfItself)
{
    CT_Buffer buffer("abcdef", 6, 32);
    buffer.v_Replace(&buffer, 0, 5, 1);
    EXPECT_EQ(Bytes(buffer), "aabcde");
    buffer.v_Replace(static_cast<const char*>(buffer.qcv_Get()) + 2, 4, 0);
    EXPECT_EQ(Bytes(buffer), "bcdede");
}

TEST(BufferChange, ReplaceFromARangeTakesNoMoreThanTheOtherBufferHas)
{
    CT_Buffer other("UVWXYZ", 6, 32);
    other.v_SetUsedSize(4);
    CT_Buffer buffer("abcdef", 6, 32);
    buffer.v_Replace(&other, 2, 40, 0);
    EXPECT_EQ(Bytes(buffer), "WXcdef");
    buffer.v_Replace(&other, 3, 0xFFFFFFFE, 5);
    EXPECT_EQ(Bytes(buffer), "WXcdeX");
    buffer.v_Replace(&other, 1000000000, 40, 0);
    EXPECT_EQ(Bytes(buffer), "WXcdeX");
    const CT_Buffer empty;
    buffer.v_Replace(&empty, 2, 40, 0);
    EXPECT_EQ(Bytes(buffer), "WXcdeX");
}

TEST(BufferChange, ReplaceByItsOwnBytesThatGrowsTakesWhatWasMeant)
{
    CT_Buffer buffer(twenty.data(), 20, 32);
    buffer.v_Replace(static_cast<const char*>(buffer.qcv_Get()) + 5, 10, 18);
    EXPECT_EQ(Bytes(buffer), "0123456789ABCDEFGH56789ABCDE");
    CT_Buffer shared(twenty.data(), 20, 32);
    const CT_Buffer other(&shared);
    shared.v_Replace(static_cast<const char*>(other.qcv_Get()) + 5, 3, 30);
    EXPECT_EQ(Bytes(shared), twenty + std::string(10, '\0') + "567");
    EXPECT_EQ(Bytes(other), twenty);
    // Behind the used end come the bytes of the room.
    CT_Buffer short_one("abcdef", 6, 32);
    char* bytes = static_cast<char*>(const_cast<void*>(short_one.qcv_Get()));
    std::memset(bytes + 6, 'x', 14);
    short_one.v_Replace(bytes + 4, 10, 0);
    EXPECT_EQ(Bytes(short_one), "efxxxxxxxx");
}

// ---- Insert and append ----------------------------------------------------------------------

TEST(BufferChange, InsertShiftsTheTail)
{
    CT_Buffer buffer("abc", 3, 32);
    buffer.v_Insert("XY", 2, 1);
    EXPECT_EQ(Bytes(buffer), "aXYbc");
    buffer.v_Insert("12", 2, 0);
    EXPECT_EQ(Bytes(buffer), "12aXYbc");
    buffer.v_Insert("!", 1, 7);
    EXPECT_EQ(Bytes(buffer), "12aXYbc!");
    buffer.v_Insert('-', 3, 2);
    EXPECT_EQ(Bytes(buffer), "12---aXYbc!");
    buffer.v_Insert('+', 2, 11);
    EXPECT_EQ(Bytes(buffer), "12---aXYbc!++");
}

TEST(BufferChange, InsertGrowsTheBlock)
{
    CT_Buffer buffer(twenty.data(), 20, 32);
    buffer.v_Insert("xyz", 3, 10);
    EXPECT_EQ(Bytes(buffer), "0123456789xyzABCDEFGHIJ");
    EXPECT_EQ(buffer.n_GetMaximumSize(), 52U);
    CT_Buffer empty;
    empty.v_Insert('x', 21, 0);
    EXPECT_EQ(Bytes(empty), std::string(21, 'x'));
    EXPECT_EQ(empty.n_GetMaximumSize(), 52U);
}

TEST(BufferChange, InsertOfNothingIntoNoBlockStoresNothing)
{
    CT_Buffer empty;
    const unsigned count = CT_Buffer::sn_GetAllocCount();
    empty.v_Insert("abc", 0, 0);
    empty.v_Insert('a', 0, 0);
    empty.v_Append("abc", 0);
    EXPECT_EQ(empty.qcv_Get(), nullptr);
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count);
}

TEST(BufferChange, InsertFromARangeOfAnotherBuffer)
{
    CT_Buffer buffer("abc", 3, 32);
    const CT_Buffer other("UVWXYZ", 6, 32);
    buffer.v_Insert(&other, 1, 2, 1);
    EXPECT_EQ(Bytes(buffer), "aVWbc");
    buffer.v_Insert(&other, 4, ALL, 5);
    EXPECT_EQ(Bytes(buffer), "aVWbcYZ");
    buffer.v_AtInsertCopy(&other, 0, 1, 0);
    EXPECT_EQ(Bytes(buffer), "UaVWbcYZ");
    buffer.v_AtInsertCopy(&other, 5, ALL, 1);
    EXPECT_EQ(Bytes(buffer), "UZaVWbcYZ");
    EXPECT_EQ(Bytes(other), "UVWXYZ");
}

TEST(BufferChange, InsertFromARangeTakesNoMoreThanTheOtherBufferHas)
{
    CT_Buffer abc("abc", 3, 32);
    CT_Buffer buffer("xy", 2, 32);
    buffer.v_Insert(&abc, 0, 40, 0);
    EXPECT_EQ(Bytes(buffer), "abcxy");
    buffer.v_Insert(&abc, 2, 1000000000, 5);
    EXPECT_EQ(Bytes(buffer), "abcxyc");
    buffer.v_AtInsertCopy(&abc, 1, 0xFFFFFFFE, 0);
    EXPECT_EQ(Bytes(buffer), "bcabcxyc");
    buffer.v_Append(&abc, 1, 40);
    EXPECT_EQ(Bytes(buffer), "bcabcxycbc");
    buffer.v_Append(&abc, 3, 40);
    buffer.v_Append(&abc, 1000000000, 40);
    EXPECT_EQ(Bytes(buffer), "bcabcxycbc");
    const CT_Buffer empty;
    buffer.v_Insert(&empty, 0, 40, 1);
    buffer.v_Insert(&empty, 3, ALL, 1);
    EXPECT_EQ(Bytes(buffer), "bcabcxycbc");
}

TEST(BufferChange, InsertOfItsOwnRangeTakesWhatWasMeant)
{
    const struct
    {
        unsigned from;
        unsigned count;
        unsigned offset;
        const char* result;
    } rows[] = {
        {2, 3, 0, "cdeabcdef"},    {0, 3, 5, "abcdeabcf"},    {2, 3, 3, "abccdedef"},
        {0, 6, 3, "abcabcdefdef"}, {4, ALL, 1, "aefbcdef"},   {4, 40, 6, "abcdefef"},
        {6, 4, 2, "abcdef"},       {1, 4, 100, "abcdefbcde"}, {0, 6, 0, "abcdefabcdef"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.result);
        for (const unsigned growth : {32U, 1U}) {
            CT_Buffer buffer("abcdef", 6, growth);
            buffer.v_Insert(&buffer, row.from, row.count, row.offset);
            EXPECT_EQ(Bytes(buffer), row.result);
            CT_Buffer shared("abcdef", 6, growth);
            const CT_Buffer other(&shared);
            shared.v_AtInsertCopy(&other, row.from, row.count, row.offset);
            EXPECT_EQ(Bytes(shared), row.result);
            EXPECT_EQ(Bytes(other), "abcdef");
            if (row.count > 6 - row.from)
                continue;
            CT_Buffer by_pointer("abcdef", 6, growth);
            by_pointer.v_Insert(static_cast<const char*>(by_pointer.qcv_Get()) + row.from,
                                row.count, row.offset);
            EXPECT_EQ(Bytes(by_pointer), row.result);
        }
    }
}

TEST(BufferChange, AppendOfItsOwnBytesThatGrowsTakesWhatWasMeant)
{
    CT_Buffer buffer(twenty.data(), 20, 32);
    std::string expected = twenty;
    for (int n = 0; n < 6; ++n) {
        buffer.v_Append(buffer.qcv_Get(), buffer.n_GetUsedSize());
        expected += expected;
    }
    EXPECT_EQ(Bytes(buffer), expected);
    const CT_Buffer other(&buffer);
    buffer.v_Append(static_cast<const char*>(other.qcv_Get()) + 7, 5);
    EXPECT_EQ(Bytes(buffer), expected + "789AB");
    EXPECT_EQ(Bytes(other), expected);
    // Of bytes behind the used end the room is taken and left as it is.
    CT_Buffer short_one("abc", 3, 32);
    short_one.v_Append(static_cast<const char*>(short_one.qcv_Get()) + 1, 30);
    EXPECT_EQ(short_one.n_GetUsedSize(), 33U);
    EXPECT_EQ(Bytes(short_one).substr(0, 5), "abcbc");
}

TEST(BufferChange, InsertFromABufferOnTheSameBlock)
{
    CT_Buffer buffer(twenty.data(), 20, 32);
    const CT_Buffer other(&buffer);
    buffer.v_Insert(&other, 0, ALL, 10);
    EXPECT_EQ(Bytes(buffer), "0123456789" + twenty + "ABCDEFGHIJ");
    EXPECT_EQ(Bytes(other), twenty);
}

TEST(BufferChange, InsertOfItselfThatGrows)
{
    CT_Buffer buffer(twenty.data(), 20, 32);
    buffer.v_Append(&buffer, 0, ALL);
    EXPECT_EQ(Bytes(buffer), twenty + twenty);
}

TEST(BufferChange, AppendAddsAtTheUsedEnd)
{
    CT_Buffer buffer;
    buffer.v_Append('a');
    buffer.v_Append("bc", 2);
    const CT_Buffer other("UVWXYZ", 6, 32);
    buffer.v_Append(&other, 2, 3);
    buffer.v_Append(&other, 4, ALL);
    EXPECT_EQ(Bytes(buffer), "abcWXYYZ");
    buffer.v_SetUsedSize(2);
    buffer.v_Append(static_cast<unsigned char>(0xFF));
    EXPECT_EQ(Bytes(buffer), "ab\xFF");
}

TEST(BufferChange, AppendOfAByteToAFullBlockAllocatesOnce)
{
    CT_Buffer buffer(twenty.data(), 20, 32);
    const CT_Buffer other(&buffer);
    const unsigned count = CT_Buffer::sn_GetAllocCount();
    buffer.v_Append('x');
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count + 1);
    EXPECT_EQ(Bytes(buffer), twenty + "x");
    EXPECT_EQ(Bytes(other), twenty);
}

// ---- Remove ---------------------------------------------------------------------------------

TEST(BufferChange, RemoveMovesTheTailDown)
{
    CT_Buffer buffer("abcdef", 6, 32);
    buffer.v_Remove(2, 1);
    EXPECT_EQ(Bytes(buffer), "adef");
    buffer.v_Remove(2, 2);
    EXPECT_EQ(Bytes(buffer), "ad");
    buffer.v_Remove(0, 1);
    EXPECT_EQ(Bytes(buffer), "ad");
    buffer.v_Remove(2, 0);
    EXPECT_EQ(Bytes(buffer), "");
    EXPECT_EQ(buffer.n_GetMaximumSize(), 20U);
}

TEST(BufferChange, RemoveOfAllMakesTheOffsetTheUsedSize)
{
    CT_Buffer buffer("abcdef", 6, 32);
    buffer.v_Remove(ALL, 4);
    EXPECT_EQ(Bytes(buffer), "abcd");
    buffer.v_Remove(ALL, 2);
    EXPECT_EQ(buffer.n_GetUsedSize(), 2U);
    buffer.v_Remove(ALL, 3);
    EXPECT_EQ(buffer.n_GetUsedSize(), 3U);
    EXPECT_EQ(Bytes(buffer), "abc");
    CT_Buffer empty;
    empty.v_Remove(ALL, 3);
    EXPECT_EQ(empty.n_GetUsedSize(), 0U);
}

// ---- Ranges of the same buffer --------------------------------------------------------------

TEST(BufferChange, AtInsertCopyWithinTheRoom)
{
    const struct
    {
        unsigned from;
        unsigned count;
        unsigned to;
        const char* result;
    } rows[] = {
        {0, 2, 5, "ABCDEAB"},  {0, 2, 0, "ABABCDE"},    {3, 2, 0, "DEABCDE"}, {3, 2, 3, "ABCDEDE"},
        {1, 3, 2, "ABBCDCDE"}, {0, 5, 2, "ABABCDECDE"}, {2, 1, 4, "ABCDCE"},  {1, 0, 3, "ABCDE"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.result);
        CT_Buffer buffer("ABCDE", 5, 32);
        buffer.v_SetGrowth(64);
        const unsigned count = CT_Buffer::sn_GetAllocCount();
        buffer.v_AtInsertCopy(row.from, row.count, row.to);
        EXPECT_EQ(Bytes(buffer), row.result);
        EXPECT_EQ(buffer.n_GetGrowth(), 64U);
        EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count);
    }
}

TEST(BufferChange, AtInsertCopyThatGrowsLeavesTheGrowthAt32)
{
    for (const unsigned to : {0U, 5U, 18U, 20U}) {
        SCOPED_TRACE(to);
        CT_Buffer buffer(twenty.data(), 20, 16);
        const unsigned count = CT_Buffer::sn_GetAllocCount();
        buffer.v_AtInsertCopy(3, 4, to);
        EXPECT_EQ(Bytes(buffer), twenty.substr(0, to) + "3456" + twenty.substr(to));
        EXPECT_EQ(buffer.n_GetGrowth(), 32U);
        EXPECT_EQ(buffer.n_GetMaximumSize(), 52U);
        EXPECT_EQ(buffer.n_GetUseCount(), 1U);
        EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count + 1);
    }
}

TEST(BufferChange, AtInsertCopyThatGrowsASharedBlockAllocatesTwice)
{
    CT_Buffer buffer(twenty.data(), 20, 32);
    const CT_Buffer other(&buffer);
    const unsigned count = CT_Buffer::sn_GetAllocCount();
    buffer.v_AtInsertCopy(0, 1, 20);
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count + 2);
    EXPECT_EQ(Bytes(buffer), twenty + "0");
    EXPECT_EQ(Bytes(other), twenty);
}

TEST(BufferChange, AtInsertCopyNeverReadsBehindTheUsedSize)
{
    // The gap is opened in full; only what comes from the used bytes is defined.
    CT_Buffer buffer("ABCDE", 5, 32);
    buffer.v_AtInsertCopy(3, 10, 1);
    EXPECT_EQ(buffer.n_GetUsedSize(), 15U);
    EXPECT_EQ(Bytes(buffer).substr(0, 3), "ADE");
    EXPECT_EQ(Bytes(buffer).substr(11), "BCDE");
    buffer.v_Set("ABCDE", 5, 32);
    buffer.v_AtInsertCopy(3, 100, 1);
    EXPECT_EQ(buffer.n_GetUsedSize(), 105U);
    EXPECT_EQ(Bytes(buffer).substr(0, 3), "ADE");
    EXPECT_EQ(Bytes(buffer).substr(101), "BCDE");
}

// Within the room no gap is opened for it, in a larger block one is.
TEST(BufferChange, AtInsertCopyFromBehindTheUsedSizeCountsItsBytes)
{
    for (const unsigned from : {5U, 6U, 1000U}) {
        SCOPED_TRACE(from);
        CT_Buffer buffer("ABCDE", 5, 32);
        buffer.v_AtInsertCopy(from, 3, 2);
        EXPECT_EQ(buffer.n_GetUsedSize(), 8U);
        EXPECT_EQ(Bytes(buffer).substr(0, 5), "ABCDE");
        buffer.v_Set("ABCDE", 5, 64);
        buffer.v_AtInsertCopy(from, 100, 2);
        EXPECT_EQ(buffer.n_GetUsedSize(), 105U);
        EXPECT_EQ(buffer.n_GetGrowth(), 32U);
        EXPECT_EQ(Bytes(buffer).substr(0, 2), "AB");
        EXPECT_EQ(Bytes(buffer).substr(102), "CDE");
    }
}

// The caller's fault, which harms nothing.
TEST(BufferChange, AtInsertMoveFromOrToBehindTheUsedSizeMovesNothing)
{
    struct
    {
        unsigned from, count, to;
    } const rows[] = {{6, 1, 0}, {5, 1, 0},   {3, 3, 0},          {0, 6, 5},
                      {0, 1, 6}, {2, ALL, 0}, {0xFFFFFFFF, 1, 0}, {0, 1, 0xFFFFFFFF}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.from);
        CT_Buffer buffer("ABCDE", 5, 32);
        buffer.v_AtInsertMove(row.from, row.count, row.to);
        EXPECT_EQ(Bytes(buffer), "ABCDE");
    }
    CT_Buffer buffer("ABCDE", 5, 32);
    buffer.v_AtInsertMove(3, 2, 5);
    EXPECT_EQ(Bytes(buffer), "ABCDE") << "it stands there already";
    buffer.v_AtInsertMove(0, 2, 5);
    EXPECT_EQ(Bytes(buffer), "CDEAB");
}

TEST(BufferChange, AtInsertMoveLandsBeforeTheByteThatWasThere)
{
    const struct
    {
        unsigned from;
        unsigned count;
        unsigned to;
        const char* result;
    } rows[] = {
        {2, 2, 0, "CDABE"}, {0, 2, 4, "CDABE"}, {0, 1, 5, "BCDEA"},
        {4, 1, 0, "EABCD"}, {1, 3, 1, "ABCDE"}, {1, 2, 3, "ABCDE"},
        {1, 0, 4, "ABCDE"}, {3, 2, 1, "ADEBC"}, {0, 4, 5, "EABCD"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.from) + " " + std::to_string(row.count) + " " +
                     std::to_string(row.to));
        CT_Buffer roomy("ABCDE", 5, 32);
        roomy.v_AtInsertMove(row.from, row.count, row.to);
        EXPECT_EQ(Bytes(roomy), row.result);
        CT_Buffer full("ABCDE", 5, 1);
        ASSERT_EQ(full.n_GetMaximumSize(), 5U);
        full.v_AtInsertMove(row.from, row.count, row.to);
        EXPECT_EQ(Bytes(full), row.result);
    }
}

TEST(BufferChange, AtInsertMoveOfALongRangeGoesThroughTheHeapAndCountsNothing)
{
    std::string bytes;
    for (int n = 0; n < 100; ++n)
        bytes += static_cast<char>(n);
    for (const unsigned size : {32U, 33U, 60U}) {
        CT_Buffer buffer(bytes.data(), 100, 1);
        const unsigned count = CT_Buffer::sn_GetAllocCount();
        buffer.v_AtInsertMove(10, size, 5);
        EXPECT_EQ(Bytes(buffer), bytes.substr(0, 5) + bytes.substr(10, size) + bytes.substr(5, 5) +
                                     bytes.substr(10 + size));
        EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count);
        EXPECT_EQ(buffer.n_GetUsedSize(), 100U);
    }
}

TEST(BufferChange, AtInsertMoveToItsOwnPlaceLeavesASharedBlockShared)
{
    CT_Buffer buffer("ABCDE", 5, 32);
    const CT_Buffer other(&buffer);
    buffer.v_AtInsertMove(2, 2, 2);
    EXPECT_EQ(other.n_GetUseCount(), 2U);
}

TEST(BufferChange, AtInsertMoveBetweenBuffers)
{
    CT_Buffer buffer("abc", 3, 32);
    CT_Buffer other("UVWXYZ", 6, 32);
    buffer.v_AtInsertMove(&other, 1, 3, 2);
    EXPECT_EQ(Bytes(buffer), "abVWXc");
    EXPECT_EQ(Bytes(other), "UYZ");
    buffer.v_AtInsertMove(&other, 1, ALL, 0);
    EXPECT_EQ(Bytes(buffer), "YZabVWXc");
    EXPECT_EQ(Bytes(other), "U");
}

TEST(BufferChange, AtInsertMoveBetweenBuffersTakesNoMoreThanTheOtherHas)
{
    CT_Buffer buffer("abc", 3, 32);
    CT_Buffer other("UVWXYZ", 6, 32);
    buffer.v_AtInsertMove(&other, 4, 40, 0);
    EXPECT_EQ(Bytes(buffer), "YZabc");
    EXPECT_EQ(Bytes(other), "UVWX");
    buffer.v_AtInsertMove(&other, 4, 40, 0);
    buffer.v_AtInsertMove(&other, 7, ALL, 0);
    EXPECT_EQ(Bytes(buffer), "YZabc");
    EXPECT_EQ(Bytes(other), "UVWX");
}

TEST(BufferChange, AtInsertMoveFromItselfMovesTheRangeThatWasMeant)
{
    const struct
    {
        unsigned from;
        unsigned count;
        unsigned to;
        const char* result;
    } rows[] = {
        {2, 2, 0, "CDABE"}, {0, 2, 4, "CDABE"}, {3, ALL, 1, "ADEBC"}, {3, 40, 0, "DEABC"},
        {1, 3, 2, "ABCDE"}, {1, 3, 1, "ABCDE"}, {0, 1, 5, "BCDEA"},   {5, 2, 0, "ABCDE"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.result);
        for (const unsigned growth : {32U, 1U}) {
            CT_Buffer buffer("ABCDE", 5, growth);
            buffer.v_AtInsertMove(&buffer, row.from, row.count, row.to);
            EXPECT_EQ(Bytes(buffer), row.result);
        }
    }
}

TEST(BufferChange, AtInsertMoveFromAHolderOfTheSameBlock)
{
    CT_Buffer buffer("ABCDE", 5, 32);
    CT_Buffer other(&buffer);
    const unsigned count = CT_Buffer::sn_GetAllocCount();
    buffer.v_AtInsertMove(&other, 1, 3, 2);
    EXPECT_EQ(Bytes(buffer), "ABBCDCDE");
    EXPECT_EQ(Bytes(other), "AE");
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), count + 1);
}

// Bytes that were put there through the address, behind the used ones.
TEST(BufferChange, BytesOfTheUnusedRoomAreTaken)
{
    for (const unsigned count : {3U, 60U}) {
        SCOPED_TRACE(count);
        CT_Buffer filled("UVW", 3, 128), replaced(100, 128), appended("A", 1, 128);
        for (CT_Buffer* buffer : {&filled, &replaced, &appended})
            std::memset(static_cast<char*>(const_cast<void*>(buffer->qcv_Get())) + 20, 'x', count);
        filled.v_Insert(static_cast<const char*>(filled.qcv_Get()) + 20, count, 3);
        EXPECT_EQ(Bytes(filled), "UVW" + std::string(count, 'x'));
        replaced.v_Replace(static_cast<const char*>(replaced.qcv_Get()) + 20, count, 0);
        EXPECT_EQ(Bytes(replaced), std::string(count, 'x'));
        appended.v_Append(static_cast<const char*>(appended.qcv_Get()) + 20, count);
        EXPECT_EQ(Bytes(appended), "A" + std::string(count, 'x'));
    }
}

TEST(BufferChange, BytesOfTheUnusedRoomOfASharedBlockAreTaken)
{
    CT_Buffer buffer("UVW", 3, 64);
    CT_Buffer other(&buffer);
    const char* room = static_cast<const char*>(buffer.qcv_Get()) + 20;
    std::memcpy(const_cast<char*>(room), "xyz", 3);
    buffer.v_Append(room, 3);
    EXPECT_EQ(Bytes(buffer), "UVWxyz");
    EXPECT_EQ(Bytes(other), "UVW");
    other.v_Replace(room, 3, 1);
    EXPECT_EQ(Bytes(other), "Uxyz");
}
