// tests/Ostra/ARRAY/ArrayTest.cpp
#include <Ostra/ARRAY/Array.h>

#include <gtest/gtest.h>

#include <Support/Directory.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace
{
struct Pair
{
    int first;
    char second;
};

std::vector<int> Read(const CT_Array<int>& array)
{
    std::vector<int> items;
    for (unsigned index = 1; index <= array.n_GetCount(); ++index) {
        int item;
        array.v_GetAt(&item, static_cast<int>(index));
        items.push_back(item);
    }
    return items;
}

void Fill(CT_Array<int>& array, const std::vector<int>& items)
{
    for (int item : items)
        array.v_Insert(&item);
}
} // namespace

TEST(Array, ItemsHaveTheSizeOfTheirType)
{
    EXPECT_EQ(CT_Array<char>().n_GetItemSize(), 1u);
    EXPECT_EQ(CT_Array<Pair>().n_GetItemSize(), sizeof(Pair));
    EXPECT_EQ(CT_Array<Pair*>().n_GetItemSize(), sizeof(void*));
    CT_Array<Pair> array(3, 2);
    EXPECT_EQ(array.n_GetGrowth(), 3u);
    EXPECT_GE(array.n_GetMaxItems(), 2u);
}

TEST(Array, PointersAndStructuresAreCopiedByTheirBytes)
{
    Pair pair = {7, 'x'};
    Pair* pointer = &pair;
    CT_Array<Pair*> pointers;
    pointers.v_Insert(&pointer);
    Pair* read = 0;
    pointers.v_GetAt(&read, 1);
    EXPECT_EQ(read, &pair);
    EXPECT_EQ(pointers.n_Find(&pointer), 1u);

    CT_Array<Pair> pairs;
    pairs.v_Insert(&pair, 2);
    pair.first = 8;
    pairs.v_SetAt(&pair, 2);
    Pair out = {0, 0};
    pairs.v_GetAt(&out, 1);
    EXPECT_EQ(out.first, 7);
    pairs.v_GetAt(&out, 2);
    EXPECT_EQ(out.first, 8);
    EXPECT_EQ(out.second, 'x');
}

TEST(Array, TypedArraysShareLikeUntypedOnes)
{
    CT_Array<int> first;
    Fill(first, {1, 2, 3});
    CT_Array<int> second(&first), third, fourth(first.pcco_GetBuffer());
    third.v_Set(&first);
    EXPECT_EQ(first.pcco_GetBuffer()->n_GetUseCount(), 4u);
    EXPECT_TRUE(second.b_IsEqual(&third));
    third.v_Set(8, 0, 0);
    EXPECT_EQ(third.n_GetCount(), 0u);
    third.v_Set(first.pcco_GetBuffer());
    EXPECT_EQ(Read(third), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(Read(fourth), (std::vector<int>{1, 2, 3}));
}

TEST(Array, RangesAndMovesWorkAsInTheUntypedArray)
{
    CT_Array<int> array, other;
    Fill(array, {1, 2});
    Fill(other, {7, 8, 9});
    const int five = 5;
    array.v_InsertAt(&five, 2);
    array.v_Insert(&other, 1, 1, 1);
    array.v_Append(&other, 2, 2);
    EXPECT_EQ(Read(array), (std::vector<int>{7, 1, 5, 2, 8, 9}));
    array.v_Replace(&other, 3, 1, 2);
    array.v_AtInsertCopy(1, 6, 6);
    array.v_AtInsertMove(8, 1, 2);
    EXPECT_EQ(Read(array), (std::vector<int>{9, 5, 2, 8, 9, 9, 7}));
    array.v_AtInsertCopy(1, 1, 2, &other);
    array.v_AtInsertMove(1, 3, 3, &other);
    EXPECT_EQ(Read(array), (std::vector<int>{9, 7, 8, 9, 5, 2, 8, 9, 9, 7}));
    array.v_RemoveAt(1);
    array.v_Remove(2, 9);
    EXPECT_EQ(Read(array), (std::vector<int>{7}));
    EXPECT_EQ(Read(other), (std::vector<int>{7, 8}));
}

// ---- Model --------------------------------------------------------------------------------

namespace
{
// The room, the blocks tried and the holders of an array whose items come one by one.
struct Rule
{
    unsigned item, growth;
    unsigned room = 0, used = 0, blocks = 0;
    bool shared = false;

    void Insert()
    {
        if (used / item == room / item) {
            const unsigned bytes = (room / item + growth / item) * item;
            const unsigned wanted = (growth + bytes + 11) / growth * growth - 12;
            blocks += shared || wanted != room;
            room = wanted;
        } else {
            blocks += shared;
        }
        shared = false;
        used += item;
    }
};

template <class T>
void CompareWithRule(unsigned growth, std::mt19937& random)
{
    SCOPED_TRACE(std::to_string(sizeof(T)) + " bytes, growth " + std::to_string(growth));
    CT_Array<T> array(growth, 0);
    std::unique_ptr<CT_Array<T>> holder;
    Rule rule{sizeof(T), growth * unsigned{sizeof(T)}};
    std::vector<T> model;
    for (unsigned step = 0; step < 150; ++step) {
        if (random() % 8 == 0) {
            holder.reset(new CT_Array<T>(&array));
            rule.shared = rule.room > 0;
        }
        model.push_back(static_cast<T>(random()));
        const unsigned before = CT_Buffer::sn_GetAllocCount() - rule.blocks;
        array.v_Insert(&model.back());
        rule.Insert();
        ASSERT_EQ(CT_Buffer::sn_GetAllocCount() - before, rule.blocks);
        ASSERT_EQ(array.pcco_GetBuffer()->n_GetMaximumSize(), rule.room);
        ASSERT_EQ(array.pcco_GetBuffer()->n_GetUsedSize(), rule.used);
        ASSERT_EQ(array.pcco_GetBuffer()->n_GetUseCount(), 1u);
        ASSERT_EQ(std::memcmp(array.pcco_GetBuffer()->qcv_Get(), model.data(), rule.used), 0);
        const unsigned held = holder ? holder->pcco_GetBuffer()->n_GetUsedSize() : 0;
        ASSERT_LT(held, rule.used);
    }
}
} // namespace

TEST(Array, ItemsThatComeOneByOneTakeTheRoomAndTheBlocksOfTheRule)
{
    std::mt19937 random(Seed(19970502));
    for (unsigned growth : {1u, 2u, 3u, 8u, 31u}) {
        CompareWithRule<unsigned char>(growth, random);
        CompareWithRule<unsigned short>(growth, random);
        CompareWithRule<unsigned>(growth, random);
        CompareWithRule<unsigned long long>(growth, random);
    }
}
