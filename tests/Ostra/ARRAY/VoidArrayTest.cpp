// tests/Ostra/ARRAY/VoidArrayTest.cpp
#include <Ostra/ARRAY/VoidArray.h>

#include <gtest/gtest.h>

#include <Support/Directory.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace
{
typedef std::vector<int> Items;

void Fill(CT_VoidArray& array, const Items& items)
{
    for (int item : items)
        array.v_Insert(&item);
}

Items Read(const CT_VoidArray& array)
{
    Items items(array.n_GetCount());
    for (unsigned index = 1; index <= items.size(); ++index)
        array.v_GetAt(&items[index - 1], static_cast<int>(index));
    return items;
}

// The room that the buffer's rule gives a block for that many bytes.
unsigned Room(unsigned bytes, unsigned growth)
{
    return (growth + bytes + 11) / growth * growth - 12;
}
} // namespace

// ---- Construction -------------------------------------------------------------------------

TEST(VoidArray, ANewArrayIsEmptyWithAGrowthOfEightItemsAndNoBlock)
{
    const unsigned before = CT_Buffer::sn_GetAllocCount();
    CT_VoidArray array(8);
    EXPECT_EQ(array.n_GetCount(), 0u);
    EXPECT_EQ(array.n_GetMaxItems(), 0u);
    EXPECT_EQ(array.n_GetGrowth(), 8u);
    EXPECT_EQ(array.n_GetItemSize(), 8u);
    EXPECT_EQ(array.pcco_GetBuffer()->n_GetGrowth(), 64u);
    EXPECT_EQ(array.pcco_GetBuffer()->qcv_Get(), nullptr);
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before);
}

TEST(VoidArray, AnArrayWithASizeHasRoomAndNoItems)
{
    CT_VoidArray array(4, 16, 10);
    EXPECT_EQ(array.n_GetCount(), 0u);
    EXPECT_EQ(array.n_GetGrowth(), 16u);
    EXPECT_EQ(array.pcco_GetBuffer()->n_GetMaximumSize(), Room(40, 64));
    EXPECT_EQ(array.n_GetMaxItems(), Room(40, 64) / 4);
}

TEST(VoidArray, AnArrayOfAnArraySharesItsBlockUntilOneIsWritten)
{
    CT_VoidArray first(4, 5, 0);
    Fill(first, {1, 2, 3});
    CT_VoidArray second(&first);
    EXPECT_EQ(second.n_GetItemSize(), 4u);
    EXPECT_EQ(second.n_GetGrowth(), 5u);
    EXPECT_EQ(second.pcco_GetBuffer()->qcv_Get(), first.pcco_GetBuffer()->qcv_Get());
    EXPECT_EQ(first.pcco_GetBuffer()->n_GetUseCount(), 2u);

    const int seven = 7;
    second.v_SetAt(&seven, 2);
    EXPECT_EQ(Read(first), (Items{1, 2, 3}));
    EXPECT_EQ(Read(second), (Items{1, 7, 3}));
    EXPECT_EQ(first.pcco_GetBuffer()->n_GetUseCount(), 1u);
}

TEST(VoidArray, AnArrayOfABufferReadsItsBytesAsItems)
{
    CT_Buffer buffer("abcdefgh", 8, 40);
    CT_VoidArray array(&buffer, 2);
    EXPECT_EQ(array.n_GetCount(), 4u);
    EXPECT_EQ(array.n_GetGrowth(), 20u);
    EXPECT_EQ(array.pcco_GetBuffer()->qcv_Get(), buffer.qcv_Get());
    char item[2];
    array.v_GetAt(item, 3);
    EXPECT_EQ(std::string(item, 2), "ef");
}

TEST(VoidArray, TheHeapGivesAndTakesArrays)
{
    std::unique_ptr<CT_VoidArray> array(new CT_VoidArray(4));
    Fill(*array, {1});
    EXPECT_EQ(array->n_GetCount(), 1u);
    alignas(CT_VoidArray) char place[sizeof(CT_VoidArray)];
    CT_VoidArray* placed = new (place) CT_VoidArray(2);
    EXPECT_EQ(static_cast<void*>(placed), static_cast<void*>(place));
    placed->~CT_VoidArray();
}

// ---- v_Set --------------------------------------------------------------------------------

TEST(VoidArray, SetWithKeepEmptiesTheArrayAndLeavesTheBlock)
{
    CT_VoidArray array(4, 8, 20);
    Fill(array, {1, 2, 3});
    const void* block = array.pcco_GetBuffer()->qcv_Get();
    array.v_Set(3, array.n_GetMaxItems(), 1);
    EXPECT_EQ(array.n_GetCount(), 0u);
    EXPECT_EQ(array.n_GetGrowth(), 3u);
    EXPECT_EQ(array.pcco_GetBuffer()->qcv_Get(), block);
}

TEST(VoidArray, SetWithKeepTakesALargerBlockWhereItMust)
{
    CT_VoidArray array(4, 8, 1);
    Fill(array, {1});
    array.v_Set(8, array.n_GetMaxItems() + 1, 1);
    EXPECT_EQ(array.n_GetCount(), 0u);
    EXPECT_EQ(array.pcco_GetBuffer()->n_GetMaximumSize(), Room((Room(4, 32) / 4 + 1) * 4, 32));
}

TEST(VoidArray, SetWithoutKeepSetsTheRoomAnew)
{
    CT_VoidArray array(4, 8, 100);
    Fill(array, {1, 2});
    array.v_Set(4, 2, 0);
    EXPECT_EQ(array.n_GetCount(), 0u);
    EXPECT_EQ(array.pcco_GetBuffer()->n_GetMaximumSize(), Room(8, 16));
    array.v_Set(8, 0, 0);
    EXPECT_EQ(array.pcco_GetBuffer()->qcv_Get(), nullptr);
    EXPECT_EQ(array.n_GetGrowth(), 8u);
}

TEST(VoidArray, SetWithKeepOfASharedBlockLeavesTheOtherHolder)
{
    CT_VoidArray first(4);
    Fill(first, {1, 2});
    CT_VoidArray second(&first);
    second.v_Set(8, 0, 1);
    EXPECT_EQ(second.n_GetCount(), 0u);
    EXPECT_EQ(Read(first), (Items{1, 2}));
}

TEST(VoidArray, SetFromAnArrayOrABufferSharesAndKeepsTheItemSize)
{
    CT_VoidArray bytes(1), numbers(4, 3, 0);
    Fill(numbers, {0x64636261});
    bytes.v_Set(&numbers);
    EXPECT_EQ(bytes.n_GetItemSize(), 1u);
    EXPECT_EQ(bytes.n_GetCount(), 4u);
    EXPECT_EQ(bytes.n_GetGrowth(), 12u);
    EXPECT_EQ(bytes.pcco_GetBuffer()->qcv_Get(), numbers.pcco_GetBuffer()->qcv_Get());

    CT_Buffer buffer("xyz", 3, 32);
    bytes.v_Set(&buffer);
    EXPECT_EQ(bytes.n_GetCount(), 3u);
    EXPECT_EQ(bytes.pcco_GetBuffer()->qcv_Get(), buffer.qcv_Get());
    EXPECT_EQ(numbers.pcco_GetBuffer()->n_GetUseCount(), 1u);
}

// ---- Access -------------------------------------------------------------------------------

TEST(VoidArray, ItemsOfEverySizeComeOutAsTheyWentIn)
{
    for (unsigned size : {1u, 2u, 3u, 4u, 5u, 8u, 12u, 33u}) {
        SCOPED_TRACE(size);
        CT_VoidArray array(size);
        std::vector<std::string> items;
        for (char item = 'a'; item < 'g'; ++item) {
            std::string text(size, item);
            if (size > 1)
                text.back() = 'z'; // differs in front alone
            items.push_back(text);
            array.v_Insert(text.data());
        }
        std::string changed(size, '#');
        array.v_SetAt(changed.data(), 2);
        items[1] = changed;
        for (int index = 1; index <= 6; ++index) {
            std::string read(size, 0);
            array.v_GetAt(read.data(), index);
            EXPECT_EQ(read, items[static_cast<unsigned>(index) - 1]);
        }
        EXPECT_EQ(array.n_Find(items[4].data()), 5u);
        EXPECT_EQ(array.n_Find(std::string(size, '?').data()), 0u);
    }
}

TEST(VoidArray, AnIndexOutsideTheRoomCopiesNothing)
{
    CT_VoidArray array(4);
    int item = 5;
    array.v_GetAt(&item, 1);
    array.v_SetAt(&item, 1);
    EXPECT_EQ(item, 5);
    Fill(array, {1});
    for (int index : {0, -1, static_cast<int>(array.n_GetMaxItems()) + 1}) {
        array.v_SetAt(&item, index);
        array.v_GetAt(&item, index);
        EXPECT_EQ(item, 5);
    }
    EXPECT_EQ(Read(array), (Items{1}));
}

TEST(VoidArray, FindGivesTheFirstEqualItemOrZero)
{
    CT_VoidArray array(4);
    const int two = 2, nine = 9;
    EXPECT_EQ(array.n_Find(&two), 0u);
    Fill(array, {1, 2, 3, 2});
    EXPECT_EQ(array.n_Find(&two), 2u);
    EXPECT_EQ(array.n_Find(&nine), 0u);
}

TEST(VoidArray, FindMeetsItemsOnlyAtTheirPlaces)
{
    CT_Buffer buffer("aababb", 6, 32);
    CT_VoidArray pairs(&buffer, 2), triples(&buffer, 3);
    EXPECT_EQ(pairs.n_Find("ab"), 0u);
    EXPECT_EQ(pairs.n_Find("ba"), 2u);
    EXPECT_EQ(triples.n_Find("abb"), 2u);
    EXPECT_EQ(triples.n_Find("aba"), 0u);
}

TEST(VoidArray, EqualityAsksForCountItemSizeAndBytes)
{
    CT_VoidArray first(4), second(4), bytes(1), empty(1);
    EXPECT_FALSE(first.b_IsEqual(&bytes));
    EXPECT_TRUE(first.b_IsEqual(&second));
    Fill(first, {1, 2});
    EXPECT_FALSE(first.b_IsEqual(&second));
    Fill(second, {1, 3});
    EXPECT_FALSE(first.b_IsEqual(&second));
    const int two = 2;
    second.v_SetAt(&two, 2);
    EXPECT_TRUE(first.b_IsEqual(&second));
    bytes.v_Set(first.pcco_GetBuffer());
    EXPECT_FALSE(first.b_IsEqual(&bytes));
    EXPECT_TRUE(bytes.b_IsEqual(&bytes));
    EXPECT_TRUE(empty.b_IsEqual(&empty));
}

// ---- Growth -------------------------------------------------------------------------------

TEST(VoidArray, AFullArrayAsksForItsCapacityPlusItsGrowth)
{
    for (unsigned size : {4u, 8u, 12u}) {
        SCOPED_TRACE(size);
        CT_VoidArray array(size, 5, 0);
        const std::string item(size, 'x');
        unsigned room = 0;
        for (unsigned count = 0; count < 100; ++count) {
            if (count == room / size)
                room = Room((room / size + 5) * size, 5 * size);
            array.v_Insert(item.data());
            ASSERT_EQ(array.pcco_GetBuffer()->n_GetMaximumSize(), room) << count;
        }
    }
}

TEST(VoidArray, InsertAtGrowsLikeInsert)
{
    CT_VoidArray front(4, 3, 0), back(4, 3, 0);
    for (int item = 0; item < 50; ++item) {
        front.v_InsertAt(&item, 1);
        back.v_Insert(&item);
        ASSERT_EQ(front.n_GetMaxItems(), back.n_GetMaxItems());
    }
    EXPECT_EQ(Read(front).front(), 49);
    EXPECT_EQ(Read(front).back(), 0);
}

TEST(VoidArray, CopiesOfAnItemAskForJustTheirRoom)
{
    // 13 bytes an item and a growth of one byte each: the block is as large as asked for.
    CT_Buffer buffer(13 * 8, 1);
    CT_VoidArray array(&buffer, 13);
    buffer.v_Set(0u, 1, 0);
    ASSERT_EQ(array.n_GetMaxItems(), 8u);
    const std::string item(13, 'x');
    array.v_Insert(item.data(), 7);
    ASSERT_EQ(array.n_GetCount(), 7u);
    array.v_Insert(item.data(), 3);
    EXPECT_EQ(array.n_GetCount(), 10u);
    EXPECT_EQ(array.n_GetMaxItems(), 10u);
}

TEST(VoidArray, CopiesThatFitLeaveTheRoom)
{
    CT_VoidArray array(4, 8, 20);
    const unsigned room = array.n_GetMaxItems();
    const int seven = 7;
    array.v_Insert(&seven, room);
    EXPECT_EQ(array.n_GetMaxItems(), room);
    EXPECT_EQ(Read(array), Items(room, 7));
    array.v_Insert(&seven, 0);
    EXPECT_EQ(array.n_GetCount(), room);
}

TEST(VoidArray, SetSizeSetsTheRoomAndDropsWhatNoLongerFits)
{
    CT_VoidArray array(4, 8, 0);
    Fill(array, {1, 2, 3, 4, 5, 6, 7, 8, 9});
    array.v_SetSize(40);
    EXPECT_EQ(array.pcco_GetBuffer()->n_GetMaximumSize(), Room(160, 32));
    EXPECT_EQ(array.n_GetCount(), 9u);
    array.v_SetSize(2);
    EXPECT_EQ(array.n_GetMaxItems(), Room(8, 32) / 4);
    EXPECT_EQ(Read(array), (Items{1, 2, 3, 4, 5}));
    array.v_SetSize(0);
    EXPECT_EQ(array.pcco_GetBuffer()->qcv_Get(), nullptr);
}

TEST(VoidArray, SetSizeToTheSameRoomAllocatesNothing)
{
    CT_VoidArray array(4, 8, 6), other(&array);
    const unsigned before = CT_Buffer::sn_GetAllocCount();
    array.v_SetSize(array.n_GetMaxItems());
    EXPECT_EQ(CT_Buffer::sn_GetAllocCount(), before);
    EXPECT_EQ(array.pcco_GetBuffer()->qcv_Get(), other.pcco_GetBuffer()->qcv_Get());
}

TEST(VoidArray, AGrowthOfZeroCountsAs32Bytes)
{
    CT_VoidArray numbers(4, 0, 0);
    EXPECT_EQ(numbers.n_GetGrowth(), 8u);
    for (unsigned n = 0; n < 100; ++n)
        numbers.v_Insert(&n);
    EXPECT_EQ(numbers.n_GetCount(), 100u);
    numbers.v_SetGrowth(0);
    numbers.v_SetSize(200);
    EXPECT_GE(numbers.n_GetMaxItems(), 200u);
    // Items larger than that come one step at a time.
    const char item[40] = "item";
    CT_VoidArray large(40, 5, 1);
    large.v_Set(0, 1, 0);
    for (unsigned n = 0; n < 10; ++n)
        large.v_Insert(item);
    EXPECT_EQ(large.n_GetCount(), 10u);
    EXPECT_EQ(large.n_Find(item), 1u);
}

TEST(VoidArray, TheGrowthIsCountedInItems)
{
    CT_VoidArray array(12);
    array.v_SetGrowth(3);
    EXPECT_EQ(array.n_GetGrowth(), 3u);
    EXPECT_EQ(array.pcco_GetBuffer()->n_GetGrowth(), 36u);
}

// ---- Ranges -------------------------------------------------------------------------------

TEST(VoidArray, RangesOfAnotherArrayAreInsertedAppendedAndReplaced)
{
    CT_VoidArray source(4), array(4);
    Fill(source, {10, 20, 30, 40});
    Fill(array, {1, 2, 3});
    array.v_Insert(&source, 2, 2, 2);
    EXPECT_EQ(Read(array), (Items{1, 20, 30, 2, 3}));
    array.v_Append(&source, 4, 1);
    EXPECT_EQ(Read(array), (Items{1, 20, 30, 2, 3, 40}));
    array.v_Replace(&source, 1, 2, 1);
    EXPECT_EQ(Read(array), (Items{10, 20, 30, 2, 3, 40}));
    array.v_Replace(&source, 1, 3, 5);
    EXPECT_EQ(Read(array), (Items{10, 20, 30, 2, 10, 20, 30}));
    array.v_Insert(&source, 1, 0, 1);
    EXPECT_EQ(array.n_GetCount(), 7u);
}

TEST(VoidArray, ACountOfMinusOneMeansAllItemsOfTheOther)
{
    CT_VoidArray source(4), array(4), empty(4);
    Fill(source, {10, 20});
    Fill(array, {1, 2});
    array.v_Insert(&source, 1, 0xFFFFFFFF, 2);
    EXPECT_EQ(Read(array), (Items{1, 10, 20, 2}));
    array.v_Append(&source, 1, 0xFFFFFFFF);
    EXPECT_EQ(Read(array), (Items{1, 10, 20, 2, 10, 20}));
    array.v_Replace(&source, 1, 0xFFFFFFFF, 1);
    EXPECT_EQ(Read(array), (Items{10, 20, 20, 2, 10, 20}));
    array.v_Append(&empty, 1, 0xFFFFFFFF);
    EXPECT_EQ(array.n_GetCount(), 6u);
}

TEST(VoidArray, ACountOfMinusOneIsTheOthersNumberWhateverTheFirstIs)
{
    CT_VoidArray source(4), array(4);
    Fill(source, {10, 20, 30});
    array.v_Append(&source, 2, 0xFFFFFFFF);
    EXPECT_EQ(Read(array), (Items{20, 30, 0}));
    array.v_Insert(&source, 3, 0xFFFFFFFF, 1);
    EXPECT_EQ(Read(array), (Items{30, 0, 0, 20, 30, 0}));
    array.v_Replace(&source, 2, 0xFFFFFFFF, 5);
    EXPECT_EQ(Read(array), (Items{30, 0, 0, 20, 20, 30, 0}));
}

TEST(VoidArray, ItemsAreRemovedOneByOneAndByRange)
{
    CT_VoidArray array(4);
    Fill(array, {1, 2, 3, 4, 5, 6});
    array.v_RemoveAt(1);
    EXPECT_EQ(Read(array), (Items{2, 3, 4, 5, 6}));
    array.v_RemoveAt(5);
    EXPECT_EQ(Read(array), (Items{2, 3, 4, 5}));
    array.v_Remove(2, 3);
    EXPECT_EQ(Read(array), (Items{2, 5}));
    array.v_Remove(1, 2);
    EXPECT_EQ(array.n_GetCount(), 0u);
}

TEST(VoidArray, AnArrayWithoutABlockTakesEveryOperation)
{
    CT_VoidArray array(4), other(4);
    array.v_Remove(1, 0);
    array.v_SetSize(0);
    array.v_SetGrowth(4);
    array.v_Append(&other, 1, 0xFFFFFFFF);
    array.v_Insert(&other, 1, 0, 1);
    array.v_Replace(&other, 1, 0, 1);
    array.v_AtInsertCopy(1, 1, 0);
    array.v_AtInsertCopy(1, 1, 0, &other);
    array.v_AtInsertMove(1, 1, 0);
    array.v_AtInsertMove(1, 1, 0, &other);
    EXPECT_EQ(array.n_GetCount(), 0u);
    EXPECT_EQ(array.n_GetMaxItems(), 0u);
}

TEST(VoidArray, AtInsertCopyCopiesWithinAndBetweenArrays)
{
    CT_VoidArray array(4), other(4);
    Fill(array, {1, 2, 3, 4});
    array.v_AtInsertCopy(1, 3, 4);
    EXPECT_EQ(Read(array), (Items{3, 4, 1, 2, 3, 4}));
    array.v_AtInsertCopy(7, 1, 1);
    EXPECT_EQ(Read(array), (Items{3, 4, 1, 2, 3, 4, 3}));
    Fill(other, {8, 9});
    array.v_AtInsertCopy(2, 1, 2, &other);
    EXPECT_EQ(Read(array), (Items{3, 8, 9, 4, 1, 2, 3, 4, 3}));
    EXPECT_EQ(Read(other), (Items{8, 9}));
}

TEST(VoidArray, AtInsertMoveMovesWithinTheArray)
{
    const struct
    {
        unsigned at, first, last;
        Items expected;
    } cases[] = {
        {3, 3, 5, {1, 2, 3, 4, 5, 6}}, // where the range begins
        {6, 3, 5, {1, 2, 3, 4, 5, 6}}, // just behind the range
        {1, 3, 5, {3, 4, 5, 1, 2, 6}}, {7, 3, 5, {1, 2, 6, 3, 4, 5}},
        {5, 1, 2, {3, 4, 1, 2, 5, 6}}, {2, 6, 6, {1, 6, 2, 3, 4, 5}},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.at << " " << row.first << " " << row.last);
        CT_VoidArray array(4);
        Fill(array, {1, 2, 3, 4, 5, 6});
        array.v_AtInsertMove(row.at, row.first, row.last);
        EXPECT_EQ(Read(array), row.expected);
    }
}

TEST(VoidArray, AMoveToItsOwnPlaceLeavesASharedBlockShared)
{
    CT_VoidArray array(4);
    Fill(array, {1, 2, 3, 4, 5, 6});
    CT_VoidArray other(&array);
    array.v_AtInsertMove(3, 3, 5);
    array.v_AtInsertMove(6, 3, 5);
    EXPECT_EQ(array.pcco_GetBuffer()->n_GetUseCount(), 2u);
}

TEST(VoidArray, AtInsertMoveBetweenArraysTakesTheItemsAway)
{
    CT_VoidArray array(4), other(4);
    Fill(array, {1, 2});
    Fill(other, {7, 8, 9});
    array.v_AtInsertMove(2, 2, 3, &other);
    EXPECT_EQ(Read(array), (Items{1, 8, 9, 2}));
    EXPECT_EQ(Read(other), (Items{7}));
}

// ---- The array's own items ----------------------------------------------------------------

namespace
{
// 1 to 5, with room for that many items more at once, or for none.
std::unique_ptr<CT_VoidArray> OneToFive(bool room)
{
    auto array = std::make_unique<CT_VoidArray>(4, 1, 0);
    Fill(*array, {1, 2, 3, 4, 5});
    array->v_SetSize(room ? 30 : 5);
    return array;
}

const int* ItemAt(const CT_VoidArray& array, unsigned index)
{
    return static_cast<const int*>(array.pcco_GetBuffer()->qcv_Get()) + (index - 1);
}
} // namespace

TEST(VoidArray, ReplaceFromItselfTakesTheItemsAsTheyWere)
{
    for (const bool room : {false, true}) {
        const auto down = OneToFive(room);
        down->v_Replace(down.get(), 2, 4, 1);
        EXPECT_EQ(Read(*down), (Items{2, 3, 4, 5, 5}));
        const auto up = OneToFive(room);
        up->v_Replace(up.get(), 1, 4, 3);
        EXPECT_EQ(Read(*up), (Items{1, 2, 1, 2, 3, 4}));
        // As many as the array has, from the second on: one lies behind the last.
        const auto all = OneToFive(room);
        all->v_Replace(all.get(), 2, -1, 1);
        EXPECT_EQ(Read(*all), (Items{2, 3, 4, 5, 0}));
        const auto behind = OneToFive(room);
        behind->v_Replace(behind.get(), 4, 3, 4);
        EXPECT_EQ(Read(*behind), (Items{1, 2, 3, 4, 5, 0}));
        const auto none = OneToFive(room);
        none->v_Replace(none.get(), 7, 2, 2);
        EXPECT_EQ(Read(*none), (Items{1, 0, 0, 4, 5}));
    }
}

TEST(VoidArray, InsertOfItselfTakesTheItemsAsTheyWere)
{
    for (const bool room : {false, true}) {
        for (unsigned at = 1; at <= 6; ++at) {
            SCOPED_TRACE(at);
            const auto array = OneToFive(room);
            array->v_Insert(array.get(), 2, 3, at);
            Items expected = {1, 2, 3, 4, 5};
            const Items range = {2, 3, 4};
            expected.insert(expected.begin() + (at - 1), range.begin(), range.end());
            EXPECT_EQ(Read(*array), expected);
            const auto copied = OneToFive(room);
            copied->v_AtInsertCopy(at, 2, 4, copied.get());
            EXPECT_EQ(Read(*copied), expected);
            const auto within = OneToFive(room);
            within->v_AtInsertCopy(at, 2, 4);
            EXPECT_EQ(Read(*within), expected);
        }
        const auto all = OneToFive(room);
        all->v_Insert(all.get(), 3, -1, 4);
        EXPECT_EQ(Read(*all), (Items{1, 2, 3, 3, 4, 5, 0, 0, 4, 5}));
        const auto twice = OneToFive(room);
        twice->v_Append(twice.get(), 1, -1);
        EXPECT_EQ(Read(*twice), (Items{1, 2, 3, 4, 5, 1, 2, 3, 4, 5}));
    }
}

TEST(VoidArray, AMoveFromItselfIsAMoveWithin)
{
    for (const bool room : {false, true}) {
        for (unsigned at = 1; at <= 6; ++at) {
            SCOPED_TRACE(at);
            const auto array = OneToFive(room), expected = OneToFive(room);
            array->v_AtInsertMove(at, 2, 3, array.get());
            expected->v_AtInsertMove(at, 2, 3);
            EXPECT_EQ(Read(*array), Read(*expected));
        }
    }
}

TEST(VoidArray, AnItemInItsOwnBlockIsInsertedAsItWas)
{
    for (const bool room : {false, true}) {
        for (unsigned from = 1; from <= 5; ++from) {
            SCOPED_TRACE(from);
            const int item = static_cast<int>(from);
            const auto last = OneToFive(room);
            last->v_Insert(ItemAt(*last, from));
            EXPECT_EQ(Read(*last), (Items{1, 2, 3, 4, 5, item}));
            const auto many = OneToFive(room);
            many->v_Insert(ItemAt(*many, from), 20);
            Items copies = {1, 2, 3, 4, 5};
            copies.insert(copies.end(), 20, item);
            EXPECT_EQ(Read(*many), copies);
            for (unsigned at = 1; at <= 6; ++at) {
                const auto array = OneToFive(room);
                array->v_InsertAt(ItemAt(*array, from), at);
                Items expected = {1, 2, 3, 4, 5};
                expected.insert(expected.begin() + (at - 1), item);
                EXPECT_EQ(Read(*array), expected);
            }
        }
    }
}

TEST(VoidArray, EveryChangeOfASharedBlockLeavesTheOtherHolder)
{
    void (*const changes[])(CT_VoidArray&) = {
        [](CT_VoidArray& array) {
            const int item = 9;
            array.v_Insert(&item);
        },
        [](CT_VoidArray& array) {
            const int item = 9;
            array.v_Insert(&item, 2);
        },
        [](CT_VoidArray& array) {
            const int item = 9;
            array.v_InsertAt(&item, 2);
        },
        [](CT_VoidArray& array) {
            const int item = 9;
            array.v_SetAt(&item, 2);
        },
        [](CT_VoidArray& array) { array.v_RemoveAt(2); },
        [](CT_VoidArray& array) { array.v_Remove(1, 2); },
        [](CT_VoidArray& array) { array.v_AtInsertCopy(1, 2, 3); },
        [](CT_VoidArray& array) { array.v_AtInsertMove(1, 2, 3); },
        [](CT_VoidArray& array) { array.v_SetSize(1); },
        [](CT_VoidArray& array) {
            CT_VoidArray source(4);
            Fill(source, {9});
            array.v_Replace(&source, 1, 1, 1);
        },
    };
    unsigned row = 0;
    for (const auto change : changes) {
        SCOPED_TRACE(row++);
        CT_VoidArray array(4), source(4);
        Fill(array, {1, 2, 3});
        CT_VoidArray holder(&array);
        change(array);
        EXPECT_EQ(Read(holder), (Items{1, 2, 3}));
        EXPECT_EQ(holder.pcco_GetBuffer()->n_GetUseCount(), 1u);
    }
}

// ---- Model --------------------------------------------------------------------------------

namespace
{
// A random operation on an array and on the vector that models it.
void Step(std::mt19937& random, CT_VoidArray& array, Items& model, const CT_VoidArray& source,
          const Items& items)
{
    const auto below = [&random](std::size_t count) {
        return static_cast<unsigned>(random() % count);
    };
    const auto place = [&model](unsigned offset) {
        return model.begin() + offset;
    };
    const int item = static_cast<int>(random() % 20);
    const unsigned at = below(model.size() + 1);
    unsigned first = 0, last = 0;
    if (!model.empty()) {
        first = below(model.size());
        last = first + below(model.size() - first);
    }
    const Items range = model.empty() ? Items() : Items(place(first), place(last + 1));
    switch (random() % 9) {
    case 0:
        array.v_Insert(&item);
        model.push_back(item);
        break;
    case 1:
        array.v_InsertAt(&item, at + 1);
        model.insert(place(at), item);
        break;
    case 2:
        array.v_Insert(&item, 3);
        model.insert(model.end(), 3, item);
        break;
    case 3:
        array.v_Insert(&source, 2, 3, at + 1);
        model.insert(place(at), items.begin() + 1, items.begin() + 4);
        break;
    case 4:
        if (!model.empty()) {
            array.v_SetAt(&item, static_cast<int>(first) + 1);
            model[first] = item;
        }
        break;
    case 5:
    case 6:
        if (!model.empty()) {
            array.v_Remove(first + 1, last + 1);
            model.erase(place(first), place(last + 1));
        }
        break;
    case 7:
        if (!model.empty() && model.size() < 200) {
            array.v_AtInsertCopy(at + 1, first + 1, last + 1);
            model.insert(place(at), range.begin(), range.end());
        }
        break;
    case 8:
        if (!model.empty() && (at <= first || at > last)) {
            array.v_AtInsertMove(at + 1, first + 1, last + 1);
            model.insert(place(at), range.begin(), range.end());
            const unsigned moved = at <= first ? last - first + 1 : 0;
            model.erase(place(first + moved), place(last + 1 + moved));
        }
        break;
    }
}
} // namespace

TEST(VoidArray, RandomOperationsAgreeWithAVector)
{
    const unsigned seed = Seed(19970101);
    SCOPED_TRACE(testing::Message() << "OSTRA_SEED=" << seed);
    std::mt19937 random(seed);
    const Items items = {100, 101, 102, 103, 104};
    CT_VoidArray source(4);
    Fill(source, items);
    for (int round = 0; round < 20; ++round) {
        CT_VoidArray array(4, 1 + random() % 9, random() % 5);
        Items model;
        std::unique_ptr<CT_VoidArray> holder;
        for (int step = 0; step < 200; ++step) {
            if (random() % 10 == 0)
                holder.reset(new CT_VoidArray(&array));
            Step(random, array, model, source, items);
            ASSERT_EQ(Read(array), model) << "round " << round << " step " << step;
            const int wanted = static_cast<int>(random() % 20);
            const auto found = std::find(model.begin(), model.end(), wanted);
            const auto index = found == model.end() ? 0 : found - model.begin() + 1;
            ASSERT_EQ(array.n_Find(&wanted), static_cast<unsigned>(index));
        }
    }
}

TEST(VoidArray, AnItemThatWasRemovedIsInsertedFromWhereItLay)
{
    for (bool shared : {false, true}) {
        SCOPED_TRACE(shared);
        CT_VoidArray array(4);
        Fill(array, {1, 2, 3});
        const char* data = static_cast<const char*>(array.pcco_GetBuffer()->qcv_Get());
        array.v_RemoveAt(3);
        const std::unique_ptr<CT_VoidArray> holder(shared ? new CT_VoidArray(&array) : nullptr);
        array.v_InsertAt(data + 8, 3);
        EXPECT_EQ(Read(array), (Items{1, 2, 3}));
    }
}

TEST(VoidArray, AnItemOfASharedBlockIsInsertedIntoOneOfItsOwn)
{
    CT_VoidArray array(4);
    Fill(array, {1, 2, 3});
    const CT_VoidArray holder(&array);
    array.v_InsertAt(ItemAt(array, 2), 1);
    EXPECT_EQ(Read(array), (Items{2, 1, 2, 3}));
    EXPECT_EQ(Read(holder), (Items{1, 2, 3}));
}

// Such an array isn't full, and asks for no growth of its own.
TEST(VoidArray, AnItemBehindBytesThatAreNoWholeItemTakesTheBuffersGrowth)
{
    CT_VoidArray array(5);
    {
        const CT_Buffer bytes("0123456789ABCDEF", 16, 32);
        array.v_Set(&bytes);
    }
    ASSERT_EQ(array.pcco_GetBuffer()->n_GetMaximumSize(), 20U);
    array.v_Insert("vwxyz");
    EXPECT_TRUE(array.pcco_GetBuffer()->b_IsEqual("0123456789ABCDEFvwxyz", 21, 0));
    EXPECT_EQ(array.pcco_GetBuffer()->n_GetUsedSize(), 21U);
    EXPECT_EQ(array.n_GetCount(), 4U);
}

// By the second size nothing has to be divided.
TEST(VoidArray, AnItemLargerThanTheGrowthTakesTheRoomThatItNeeds)
{
    const char item[64] = "an item";
    for (const unsigned size : {40u, 64u}) {
        CT_VoidArray array(size);
        const CT_Buffer bytes(0, 32);
        array.v_Set(&bytes);
        EXPECT_EQ(array.n_GetGrowth(), 0U);
        for (unsigned count = 1; count <= 3; ++count) {
            array.v_Insert(item);
            EXPECT_EQ(array.n_GetCount(), count);
        }
        EXPECT_EQ(array.n_Find(item), 1U);
    }
}

TEST(VoidArray, AnItemThatBeginsBehindAnOddByteTakesTheBuffersGrowth)
{
    CT_VoidArray array(4);
    {
        const CT_Buffer bytes("0123456789ABCDEFGH", 18, 32);
        array.v_Set(&bytes);
    }
    ASSERT_EQ(array.pcco_GetBuffer()->n_GetMaximumSize(), 20U);
    array.v_Insert("wxyz");
    EXPECT_TRUE(array.pcco_GetBuffer()->b_IsEqual("0123456789ABCDEFGHwxyz", 22, 0));
    EXPECT_EQ(array.pcco_GetBuffer()->n_GetUsedSize(), 22U);
}
